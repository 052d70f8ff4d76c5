#pragma once
// How the title-control objects call back into a script: a script function the script handed
// over (a handler) and the event sinks connected to an object (in COM the IVXCmdEvents
// connection point). The adapter of a host implements ScriptHandler over the host's function
// (in COM IDispatch::Invoke with dispatch id 0, locale 2048, DISPATCH_METHOD) and CmdEventSink
// over a connected sink.
//
// Handlers and sinks are called on the script's thread, from the thread that dispatches the
// session's events. A handler's or sink's failure never reaches the caller of the lists below:
// each is called in turn whatever the others did.
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "automation/script_value.h"

class ScriptHandler {
 public:
  virtual ~ScriptHandler() = default;
  // Calls the script function with the arguments; false when the call failed (in COM anything
  // but S_OK). May throw as well: the callers treat an exception as a failed call.
  virtual bool invoke(std::span<const ScriptValue> args) = 0;
};

// The five events of IVXCmdEvents.
class CmdEventSink {
 public:
  virtual ~CmdEventSink() = default;
  virtual void onCommand(int32_t cmd) = 0;
  virtual void onDisconnect() = 0;
  virtual void onPickResult(const std::u16string& xmlResult) = 0;
  virtual void onZoneChange(const std::u16string& zoneName, int32_t zoneState) = 0;
  virtual void onMessage(const std::u16string& message) = 0;
};

// A list that the calls going over it may change: a call in progress goes on over the list as
// it was, kept alive until the outermost call ends. No copy is taken per call, so an event costs
// no reference counting. Single-threaded, like the objects that hold it.
template <class Item>
class CallSafeList {
 public:
  const std::vector<Item>& items() const { return items_; }
  // The list to change. During a call the list being called is set aside and the change goes to
  // a copy (a moved vector keeps its storage, which the call iterates over).
  std::vector<Item>& edit() {
    if (callDepth_ > 0) {
      setAside_.push_back(std::move(items_));
      items_ = setAside_.back();
    }
    return items_;
  }
  // Calls call(item) for each item of the list as it is now; call must not throw.
  template <class Call>
  void forEach(Call call) {
    const std::span<const Item> items = items_;
    ++callDepth_;
    for (const Item& item : items) call(item);
    if (--callDepth_ == 0) setAside_.clear();
  }

 private:
  std::vector<Item> items_;
  std::vector<std::vector<Item>> setAside_;
  int callDepth_ = 0;
};

// Script handlers in the order they were added; the same handler may be there twice and is
// then called twice.
class ScriptHandlers {
 public:
  void add(std::shared_ptr<ScriptHandler> handler);
  // Drops every handler, then adds handler unless it is null (a listener property's put).
  void replace(std::shared_ptr<ScriptHandler> handler);
  bool empty() const { return handlers_.items().empty(); }
  // Calls each handler with the same arguments; true when every call succeeded (also when
  // there is no handler).
  bool invokeAll(std::span<const ScriptValue> args);

 private:
  CallSafeList<std::shared_ptr<ScriptHandler>> handlers_;
};

// The sinks connected to an object, in the order they connected. A cookie names a connection.
class CmdEventSinks {
 public:
  uint32_t connect(std::shared_ptr<CmdEventSink> sink);
  // False when no sink is connected under the cookie.
  bool disconnect(uint32_t cookie);
  std::size_t size() const { return sinks_.items().size(); }
  // Calls event on every sink in order; a sink that throws misses only its own event.
  void fire(const std::function<void(CmdEventSink&)>& event);

 private:
  struct Connection {
    uint32_t cookie;
    std::shared_ptr<CmdEventSink> sink;
  };
  CallSafeList<Connection> sinks_;
  uint32_t nextCookie_ = 1;
};
