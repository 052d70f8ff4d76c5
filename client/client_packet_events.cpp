// The asynchronous side of the packet session: listener registration, keeping the server's
// subscriptions in step with it across reconnects, and dispatching asynchronous packets.
#include <utility>

#include "client/client_packet.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/errlog.h"
#include "foundation/persistent_stream.h"

namespace {

constexpr uint32_t kErrLogMajor = 1878;
constexpr uint32_t kCommandCallbackMajor = 2014;
constexpr uint32_t kPickResultMajor = 2286;

template <class Listener>
Listener* checked(Listener* listener) {
  if (listener == nullptr) throw AFCNullPointerException("listener");
  return listener;
}

void logError(const std::string& text) { AFC_REPORT(AFC_ERRLOG_ERROR, "libVX", text); }

}  // namespace

void VXClientPacket::guardedCall(AFCObject& listener, const char* method, AFCAttribute& argument,
                                 const char* failureText, ForeignFailure foreign) {
  try {
    vxCallListener(listener, method, argument);
  } catch (const AFCException& e) {
    logError(std::string(failureText) + e.what());
  } catch (const std::exception& e) {
    logError(std::string(failureText) +
             (foreign == ForeignFailure::kUnknown ? "unknown excpetion" : e.what()));
  } catch (...) {
    logError(std::string(failureText) + "unknown excpetion");
  }
}

void VXClientPacket::sendZoneName(uint32_t type, const std::string& zone) {
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  out.writeString(zone);
  sendPacket(type, out.getBuffer());
}

void VXClientPacket::addZoneNotifyListener(const std::string& zone, VXZoneStateListener* listener) {
  checked(listener);
  debugLine("addZoneNotifyListener, zone=", zone);
  bool first;
  {
    std::lock_guard lock(listenerLock_);
    first = !zoneListeners_.contains(zone);
    zoneListeners_.emplace(zone, listener);
  }
  if (first && isOpen()) sendZoneName(kZoneRegister, zone);
}

void VXClientPacket::removeZoneNotifyListener(const std::string& zone,
                                              VXZoneStateListener* listener) {
  debugLine("removeZoneNotifyListener, zone=", zone);
  bool emptied = false;
  {
    std::lock_guard lock(listenerLock_);
    auto [it, end] = zoneListeners_.equal_range(zone);
    for (; it != end; ++it) {
      if (it->second == listener) {
        zoneListeners_.erase(it);
        emptied = !zoneListeners_.contains(zone);
        break;
      }
    }
  }
  if (emptied && isOpen()) sendZoneName(kZoneUnregister, zone);
}

void VXClientPacket::addErrLogListener(VXErrLogListener* listener) {
  if (!addTo(errLogListeners_, checked(listener)) || !isOpen()) return;
  if (getServerVersionMajor() >= kErrLogMajor) {
    debugLine("addErrLogListener");
    sendPacket(kErrLogSubscribe, AFCBuffer());
  } else {
    debugLine("ErrLogListeners not supported by server");
  }
}

void VXClientPacket::removeErrLogListener(VXErrLogListener* listener) {
  if (removeFrom(errLogListeners_, listener) && isOpen() &&
      getServerVersionMajor() >= kErrLogMajor) {
    sendPacket(kErrLogUnsubscribe, AFCBuffer());
  }
}

void VXClientPacket::addDisconnectListener(VXDisconnectListener* listener) {
  debugLine("addDisconnectListener");
  addTo(disconnectListeners_, checked(listener));
}

void VXClientPacket::removeDisconnectListener(VXDisconnectListener* listener) {
  removeFrom(disconnectListeners_, listener);
}

void VXClientPacket::addConnectListener(VXConnectListener* listener) {
  debugLine("addConnectListener");
  addTo(connectListeners_, checked(listener));
}

void VXClientPacket::removeConnectListener(VXConnectListener* listener) {
  removeFrom(connectListeners_, listener);
}

void VXClientPacket::addCommandCallbackListener(VXCallbackCommandListener* listener) {
  debugLine("addCommandCallbackListener");
  const uint32_t major = getServerVersionMajor();
  if (major > 0 && major < kCommandCallbackMajor) {
    logError("CallbackCommands not supported by server");
  }
  addTo(commandCallbackListeners_, checked(listener));
}

void VXClientPacket::removeCommandCallbackListener(VXCallbackCommandListener* listener) {
  removeFrom(commandCallbackListeners_, listener);
}

void VXClientPacket::addPickResultListener(VXPickResultListener* listener) {
  debugLine("addPickResultListener");
  const uint32_t major = getServerVersionMajor();
  if (major > 0 && major < kPickResultMajor) logError("PickResults not supported by server");
  addTo(pickResultListeners_, checked(listener));
}

void VXClientPacket::removePickResultListener(VXPickResultListener* listener) {
  removeFrom(pickResultListeners_, listener);
}

void VXClientPacket::addServerMessageListener(VXServerMessageListener* listener) {
  debugLine("addServerMessageListener");
  addTo(serverMessageListeners_, checked(listener));
}

void VXClientPacket::removeServerMessageListener(VXServerMessageListener* listener) {
  removeFrom(serverMessageListeners_, listener);
}

void VXClientPacket::reapplyErrLogListeners() {
  debugLine("reapplyErrLogListeners");
  if (snapshot(errLogListeners_).empty()) return;
  if (getServerVersionMajor() >= kErrLogMajor) {
    sendPacket(kErrLogSubscribe, AFCBuffer());
  } else {
    debugLine("ErrLogListeners not supported by server");
  }
}

void VXClientPacket::reapplyZoneNotifyListeners() {
  std::vector<std::string> zones;
  {
    std::lock_guard lock(listenerLock_);
    for (auto it = zoneListeners_.begin(); it != zoneListeners_.end();
         it = zoneListeners_.upper_bound(it->first)) {
      zones.push_back(it->first);
    }
  }
  debugLine("reapplyZoneNotifyListeners for ", zones.size());
  for (const std::string& zone : zones) sendZoneName(kZoneRegister, zone);
}

void VXClientPacket::callZoneNotifyListeners(const VXZonesState& zones) {
  std::vector<std::pair<std::string, VXZoneStateListener*>> entries;
  {
    std::lock_guard lock(listenerLock_);
    entries.assign(zoneListeners_.begin(), zoneListeners_.end());
  }
  VXZonesStateObject object(zones);
  VXObjectAttribute argument(&object);
  for (const auto& [zone, listener] : entries) {
    debugLine("calling ZoneNotifyListener, zone=", zone, ", state=", object.toString());
    guardedCall(*listener, "onZoneStateChange", argument, "VXClientPacket: zone listener failed, ");
  }
}

void VXClientPacket::callErrLogListeners(const AFCErrLogEvent& entry) {
  VXObjectAttribute argument(const_cast<AFCErrLogEvent*>(&entry));
  for (VXErrLogListener* listener : snapshot(errLogListeners_)) {
    debugLine("calling ErrLogListener");
    guardedCall(*listener, "onNewErrLog", argument, "VXClientPacket: ErrLogListener failed, ");
  }
}

void VXClientPacket::callCommandCallbackListeners(int32_t callbackId) {
  AFCAttributeInt32 argument(callbackId);
  for (VXCallbackCommandListener* listener : snapshot(commandCallbackListeners_)) {
    debugLine("calling CallbackCommand listener ", callbackId);
    guardedCall(*listener, "onCommandCallback", argument,
                "VXClientPacket: Server CallbackCommand Listener failed, ");
  }
}

void VXClientPacket::callPickResultListeners(const std::string& result) {
  AFCAttributeString argument(result);
  for (VXPickResultListener* listener : snapshot(pickResultListeners_)) {
    debugLine("calling PickResult listener ", result);
    guardedCall(*listener, "onPickResult", argument,
                "VXClientPacket: Server PickResult Listener failed, ");
  }
}

void VXClientPacket::callServerMessageListeners(const std::string& message) {
  AFCAttributeString argument(message);
  for (VXServerMessageListener* listener : snapshot(serverMessageListeners_)) {
    debugLine("onMessage: ", message);
    guardedCall(*listener, "onMessage", argument, "VXClientPacket: Server Message Listener failed, ",
                ForeignFailure::kUnknown);
  }
}

void VXClientPacket::callConnectListeners() {
  AFCAttributeInt32 argument(clientIndex_);
  for (VXConnectListener* listener : snapshot(connectListeners_)) {
    debugLine("calling connect listener");
    guardedCall(*listener, "onServerConnect", argument,
                "VXClientPacket: connect listener failed, ");
  }
}

void VXClientPacket::callDisconnectListeners() {
  AFCAttributeInt32 argument(clientIndex_);
  for (VXDisconnectListener* listener : snapshot(disconnectListeners_)) {
    debugLine("calling Disconnect listener");
    guardedCall(*listener, "onServerDisconnect", argument,
                "VXClientPacket: Server Disconnect Listener failed, ");
  }
}

void VXClientPacket::onDisconnected() {
  close();
  callDisconnectListeners();
}

void VXClientPacket::handleAsyncPacket(uint32_t type, const AFCBuffer& payload) {
  AFCPersistentInputStreamBuffer in(payload.data(), payload.size(), getCombinedVersion());
  switch (type) {
    case kZoneState: {
      VXZonesState zones;
      zones.read(in);
      callZoneNotifyListeners(zones);
      break;
    }
    case kErrLogEntry: {
      const std::unique_ptr<AFCErrLogEvent> entry = in.readOwnedObject<AFCErrLogEvent>();
      if (entry) callErrLogListeners(*entry);
      break;
    }
    case kCommandCallback:
      callCommandCallbackListeners(in.readInt32());
      break;
    case kPickResult:
      callPickResultListeners(in.readString());
      break;
    case kServerMessage:
      callServerMessageListeners(in.readString());
      break;
    default:
      logError("Unexpected async packet received " + std::to_string(type));
  }
}
