#pragma once
// A client session against a simulator over loopback, its socket events on a descriptor handler
// of its own that the test thread pumps. Every wait is bounded: pumpUntil gives up after a few
// seconds and says so, so a lost packet fails the test instead of hanging it.
#include <algorithm>
#include <chrono>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "client/client_tcp.h"
#include "client/listeners.h"
#include "foundation/fd_handler.h"
#include "tests/client/scripted_session.h"

// Remembers the callback ids that came back.
struct CallbackIds : VXCallbackCommandListener {
  std::set<int32_t> ids;
  void onCommandCallback(int32_t id) override { ids.insert(id); }
};

// The session also issues the remote request kinds that have no operation of their own.
class LoopbackSession : public VXClientTcp {
 public:
  using VXROAManager::roaCall;
};

class PumpedSession {
 public:
  explicit PumpedSession(const std::string& address) {
    session.setServerAddress(address);
    session.setAsyncRegistry(&handler);
    session.addCommandCallbackListener(&callbacks_);
  }
  ~PumpedSession() {
    session.close();
    session.removeCommandCallbackListener(&callbacks_);
  }
  PumpedSession(const PumpedSession&) = delete;
  PumpedSession& operator=(const PumpedSession&) = delete;

  // Pumps the socket's events until done() holds or the time is up; returns done().
  bool pumpUntil(const std::function<bool()>& done,
                 std::chrono::milliseconds limit = std::chrono::seconds(3)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!done() && std::chrono::steady_clock::now() < deadline) handler.mainLoop(10);
    return done();
  }
  // Sends a callback behind everything sent so far and waits for it to come back: the server
  // has then served all of it, and sent everything it sends in answer before the callback.
  bool sync() {
    const int32_t id = session.commandCallback();
    return pumpUntil([&] { return callbacks_.ids.contains(id); });
  }
  // True when the recorder saw the event ("l: " and the event).
  bool saw(const std::string& event) const {
    return std::find(seen.begin(), seen.end(), "l: " + event) != seen.end();
  }
  bool sawPrefix(const std::string& prefix) const {
    return std::any_of(seen.begin(), seen.end(),
                       [&](const std::string& line) { return line.starts_with("l: " + prefix); });
  }

  AFCFDHandlerEvent handler;  // before the session: it must outlive the session's socket
  LoopbackSession session;
  std::vector<std::string> seen;
  RecordingListener recorder{&seen};

 private:
  CallbackIds callbacks_;
};
