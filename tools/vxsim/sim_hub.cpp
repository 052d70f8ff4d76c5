#include "tools/vxsim/sim_hub.h"

#include <algorithm>

#include "client/packet_frame.h"
#include "client/register.h"
#include "commands/misc_commands.h"
#include "foundation/attribute_string.h"
#include "foundation/errlog_event.h"
#include "tools/vxsim/sim_connection.h"

namespace {

constexpr const char* kArea = "vxsim";

}  // namespace

VXSimHub::VXSimHub(VXSimOptions options)
    : options_(std::move(options)), random_(std::random_device{}()) {
  // Clients' packets are read by class name: every class they may carry is known first.
  registerClientClasses();
}

void VXSimHub::log(const std::string& line) const {
  if (logSink_) logSink_(line);
}

void VXSimHub::attach(VXSimConnection& connection) { connections_.push_back(&connection); }

void VXSimHub::detach(VXSimConnection& connection) {
  std::erase(connections_, &connection);
  watches_.remove(connection);
}

std::vector<uint8_t> VXSimHub::makeChallenge() {
  std::uniform_int_distribution<int> byte(0, 255);
  std::vector<uint8_t> challenge(16);
  for (uint8_t& value : challenge) value = static_cast<uint8_t>(byte(random_));
  return challenge;
}

void VXSimHub::runAction(VXSimConnection& from, const VXAction& action) {
  if (logSink_) {  // made only when a sink reads it: text for every record is not free
    std::string line = "client " + std::to_string(from.getId()) + ": action on channel " +
                       std::to_string(action.getChannel()) + ":";
    for (const auto& record : action.getCommands()) line += " " + record->toString() + ";";
    log(line);
  }
  std::vector<int32_t> callbacks;
  for (const auto& record : action.getCommands()) {
    if (const auto* callback = dynamic_cast<const VXCallbackCommand*>(record.get())) {
      callbacks.push_back(callback->getCallbackId());
      continue;
    }
    try {
      scene_.apply(*record);
    } catch (const AFCException& e) {
      reportError(AFC_ERRLOG_ERROR, "client " + std::to_string(from.getId()) + ": " +
                                        record->toString() + " failed, " + e.what());
    }
  }
  notifyZoneChanges();
  notifyWatchers();
  for (int32_t id : callbacks) {
    AFCPersistentOutputStreamBuffer out(getCombinedVersion());
    out.writeInt32(id);
    from.send(VXPacketFrame::kCommandCallback, out.getBuffer());
  }
}

void VXSimHub::setZones(const VXZonesState& zones) {
  scene_.setZones(zones);
  notifyZoneChanges();
}

void VXSimHub::notifyZoneChanges() {
  const VXZonesState changes = scene_.takeZoneChanges();
  if (changes.size() == 0) return;
  for (VXSimConnection* connection : connections_) {
    VXZonesState wanted;
    for (const auto& [zone, state] : changes.getZones()) {
      if (connection->isRegisteredForZone(zone)) wanted.set(zone, state);
    }
    if (wanted.size() == 0) continue;
    AFCPersistentOutputStreamBuffer out(getCombinedVersion());
    wanted.write(out);
    connection->send(VXPacketFrame::kZoneState, out.getBuffer());
  }
}

void VXSimHub::notifyWatchers() {
  if (watches_.size() == 0) return;  // after every action: nothing to look up without watches
  const auto changes =
      watches_.takeChanges([this](const std::string& target) { return watchedValue(target); });
  for (const auto& [connection, text] : changes) {
    AFCPersistentOutputStreamBuffer out(getCombinedVersion());
    out.writeString(text);
    connection->send(VXPacketFrame::kServerMessage, out.getBuffer());
  }
}

std::string VXSimHub::watchedValue(const std::string& target) const {
  const std::size_t dot = target.rfind('.');
  const VXSimNode* node = scene_.find(std::string_view(target).substr(0, dot));
  if (node == nullptr) return "<undefined>";
  const auto found = node->attributes.find(target.substr(dot + 1));
  return found == node->attributes.end() ? "<undefined>" : found->second->toString();
}

void VXSimHub::reportError(unsigned level, const std::string& text) {
  log(afcErrLogLevelName(level) + " " + text);
  const AFCErrLogEvent entry(level, kArea, AFCTimestamp::now(), {}, 0, text);
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  out.writeObject(&entry);
  for (VXSimConnection* connection : connections_) {
    if (connection->isErrLogSubscriber())
      connection->send(VXPacketFrame::kErrLogEntry, out.getBuffer());
  }
}

void VXSimHub::broadcastMessage(const std::string& text) {
  broadcastText(VXPacketFrame::kServerMessage, text);
}

void VXSimHub::broadcastPickResult(const std::string& text) {
  broadcastText(VXPacketFrame::kPickResult, text);
}

void VXSimHub::broadcastText(uint32_t type, const std::string& text) {
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  out.writeString(text);
  for (VXSimConnection* connection : connections_) {
    if (connection->isLoggedIn()) connection->send(type, out.getBuffer());
  }
}
