#pragma once
// The listener interfaces through which asynchronous server events reach the application. The
// session calls each listener by method name through its class record, with one attribute
// argument, so a listener may be a native subclass (override the callback) or an object whose
// own class record declares a method of that name.
//
// The session never owns its listeners. Callbacks run on whichever thread read the packet and
// may throw: the session catches and logs.
#include <cstdint>
#include <string>
#include <string_view>

#include "commands/zone_state.h"
#include "foundation/class.h"
#include "foundation/errlog_event.h"

// Invokes the listener's method by name with one argument; throws what the call throws
// (AFCIllegalArgumentException when the listener has no such method).
void vxCallListener(AFCObject& listener, std::string_view method, AFCAttribute& argument);

// Argument: the session's client index.
class VXConnectListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onServerConnect(int32_t clientIndex) = 0;
};

// Argument: the session's client index.
class VXDisconnectListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onServerDisconnect(int32_t clientIndex) = 0;
};

// Argument: an object attribute holding the error-log entry.
class VXErrLogListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onNewErrLog(const AFCErrLogEvent& entry) = 0;
};

class VXPickResultListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onPickResult(const std::string& result) = 0;
};

class VXServerMessageListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onMessage(const std::string& message) = 0;
};

// Argument: the callback id.
class VXCallbackCommandListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onCommandCallback(int32_t callbackId) = 0;
};

// Argument: an object attribute holding a VXZonesStateObject, the whole record the server sent.
class VXZoneStateListener : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  virtual void onZoneStateChange(const VXZonesState& zones) = 0;
};
