#include "automation/script_events.h"

#include <algorithm>

void ScriptHandlers::add(std::shared_ptr<ScriptHandler> handler) {
  if (handler) handlers_.edit().push_back(std::move(handler));
}

void ScriptHandlers::replace(std::shared_ptr<ScriptHandler> handler) {
  std::vector<std::shared_ptr<ScriptHandler>>& handlers = handlers_.edit();
  handlers.clear();
  if (handler) handlers.push_back(std::move(handler));
}

bool ScriptHandlers::invokeAll(std::span<const ScriptValue> args) {
  bool allSucceeded = true;
  handlers_.forEach([&](const std::shared_ptr<ScriptHandler>& handler) {
    try {
      allSucceeded = handler->invoke(args) && allSucceeded;
    } catch (...) {
      allSucceeded = false;
    }
  });
  return allSucceeded;
}

uint32_t CmdEventSinks::connect(std::shared_ptr<CmdEventSink> sink) {
  const uint32_t cookie = nextCookie_++;
  sinks_.edit().push_back({cookie, std::move(sink)});
  return cookie;
}

bool CmdEventSinks::disconnect(uint32_t cookie) {
  const auto connected = [cookie](const Connection& c) { return c.cookie == cookie; };
  if (std::ranges::none_of(sinks_.items(), connected)) return false;
  std::erase_if(sinks_.edit(), connected);
  return true;
}

void CmdEventSinks::fire(const std::function<void(CmdEventSink&)>& event) {
  sinks_.forEach([&event](const Connection& connection) {
    try {
      event(*connection.sink);
    } catch (...) {
      // A sink's failure is its own; the others still get the event.
    }
  });
}
