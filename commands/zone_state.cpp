#include "commands/zone_state.h"

#include <utility>

#include "foundation/errlog.h"

AFC_IMPLEMENT_CLASS(VXSetZoneStateCommand, VXCommand)

bool VXZonesState::get(std::string_view zone) const {
  const auto found = zones_.find(std::string(zone));
  if (found != zones_.end()) return found->second;
  AFC_ERRLOG_STREAM(AFC_ERRLOG_WARNING, "libVX")
      << "VXZonesState::get: Get for zone " << zone << " was not prepared!" << '\n';
  return false;
}

void VXZonesState::write(AFCPersistentOutputStream& out) const {
  out.writeUInt32(static_cast<uint32_t>(zones_.size()));
  for (const auto& [zone, state] : zones_) {
    out.writeString(zone);
    out.writeBool(state);
  }
}

void VXZonesState::read(AFCPersistentInputStream& in) {
  // No reserve from the count: it comes off the wire, and every entry has to be there anyway.
  const uint32_t count = in.readUInt32();
  Map zones;
  for (uint32_t i = 0; i < count; ++i) {
    std::string zone = in.readString();
    zones.insert_or_assign(std::move(zone), in.readBool());
  }
  zones_ = std::move(zones);
}

void VXSetZoneStateCommand::bindDefaultName(std::string_view name) {
  const auto unnamed = zones_.getZones().find(std::string());
  if (unnamed == zones_.getZones().end()) return;
  const bool state = unnamed->second;
  zones_.remove("");
  zones_.set(std::string(name), state);
}

void VXSetZoneStateCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  zones_.write(out);
}

void VXSetZoneStateCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  zones_.read(in);
}
