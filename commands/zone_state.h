#pragma once
// Zone states: which output zones are switched on. The same record is sent to set zones, asked
// for and received from the server, and handed to zone-state listeners.
//
// Plain values, not thread safe. Reading throws the stream's exceptions and leaves the record
// unchanged then.
#include <string>
#include <string_view>
#include <unordered_map>

#include "commands/command.h"

// Zone name to state; inserting a zone again overwrites its state.
class VXZonesState {
 public:
  using Map = std::unordered_map<std::string, bool>;

  void set(std::string zone, bool state) { zones_.insert_or_assign(std::move(zone), state); }
  bool contains(std::string_view zone) const { return zones_.contains(std::string(zone)); }
  void remove(std::string_view zone) { zones_.erase(std::string(zone)); }
  // The state of the zone. A zone that is not there was not asked for: that is logged, and the
  // answer is false.
  bool get(std::string_view zone) const;

  const Map& getZones() const { return zones_; }
  std::size_t size() const { return zones_.size(); }
  bool operator==(const VXZonesState&) const = default;

  // The entry count (uint32), then each zone name (string) and its state (bool), in map order.
  // No object header and no base part: the record is embedded in what carries it.
  void write(AFCPersistentOutputStream& out) const;
  void read(AFCPersistentInputStream& in);

 private:
  Map zones_;
};

// Switches zones on or off.
class VXSetZoneStateCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXSetZoneStateCommand)
 public:
  VXSetZoneStateCommand() = default;
  VXSetZoneStateCommand(const VXSetZoneStateCommand&) = default;
  explicit VXSetZoneStateCommand(VXZonesState zones) : zones_(std::move(zones)) {}

  const VXZonesState& getZones() const { return zones_; }

  // The state held under the empty zone name moves to the given name.
  void bindDefaultName(std::string_view name) override;
  // "SetZone": the zones are not listed.
  std::string toString() const override { return "SetZone"; }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  VXZonesState zones_;
};
