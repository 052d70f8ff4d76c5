#pragma once
// The COM side of the core's script calls: a script function handed over as an IDispatch becomes
// a ScriptHandler (called as its default member: dispatch id 0, locale 2048, DISPATCH_METHOD),
// and the IVXCmdEvents connection point of an object becomes one CmdEventSink of the core object
// it wraps, fired through the connection point's own sinks.
//
// The script's thread only. handlerOf throws std::bad_alloc; invoke and the events throw
// std::bad_alloc while making their arguments, which the core's callers treat as a failed call.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oaidl.h>

#include <memory>

#include "automation/com/event_source.h"
#include "automation/script_events.h"

// Null for a null function (a listener property set to Nothing).
std::shared_ptr<ScriptHandler> handlerOf(IDispatch* function);

class CEventSourceSink final : public CmdEventSink {
 public:
  explicit CEventSourceSink(CEventSource& source) noexcept : source_(source) {}

  void onCommand(int32_t cmd) override;
  void onDisconnect() override;
  void onPickResult(const std::u16string& xmlResult) override;
  void onZoneChange(const std::u16string& zoneName, int32_t zoneState) override;
  void onMessage(const std::u16string& message) override;

 private:
  CEventSource& source_;
};

// Connects a CEventSourceSink over source to sinks for the life of this object.
class CEventConnection {
 public:
  CEventConnection(CmdEventSinks& sinks, CEventSource& source)
      : sinks_(sinks), cookie_(sinks.connect(std::make_shared<CEventSourceSink>(source))) {}
  ~CEventConnection() { sinks_.disconnect(cookie_); }
  CEventConnection(const CEventConnection&) = delete;
  CEventConnection& operator=(const CEventConnection&) = delete;

 private:
  CmdEventSinks& sinks_;
  uint32_t cookie_;
};
