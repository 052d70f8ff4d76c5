#include "automation/script_events.h"

#include <algorithm>

void ScriptHandlers::add(std::shared_ptr<ScriptHandler> handler) {
  if (handler) handlers_.push_back(std::move(handler));
}

void ScriptHandlers::replace(std::shared_ptr<ScriptHandler> handler) {
  handlers_.clear();
  add(std::move(handler));
}

bool ScriptHandlers::invokeAll(const std::vector<ScriptValue>& args) const {
  // A copy: a handler may replace the list it is called from.
  const std::vector<std::shared_ptr<ScriptHandler>> handlers = handlers_;
  bool allSucceeded = true;
  for (const std::shared_ptr<ScriptHandler>& handler : handlers) {
    try {
      allSucceeded = handler->invoke(args) && allSucceeded;
    } catch (...) {
      allSucceeded = false;
    }
  }
  return allSucceeded;
}

uint32_t CmdEventSinks::connect(std::shared_ptr<CmdEventSink> sink) {
  const uint32_t cookie = nextCookie_++;
  sinks_.push_back({cookie, std::move(sink)});
  return cookie;
}

bool CmdEventSinks::disconnect(uint32_t cookie) {
  return std::erase_if(sinks_, [cookie](const Connection& c) { return c.cookie == cookie; }) > 0;
}

void CmdEventSinks::fire(const std::function<void(CmdEventSink&)>& event) const {
  const std::vector<Connection> sinks = sinks_;
  for (const Connection& connection : sinks) {
    try {
      event(*connection.sink);
    } catch (...) {
      // A sink's failure is its own; the others still get the event.
    }
  }
}
