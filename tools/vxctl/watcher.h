#pragma once
// The listeners of `vxctl watch`: every asynchronous event of a session becomes one line on an
// output stream, as text or as one JSON object, stamped with the time it arrived.
//
// Owns its listener objects; a session it subscribed must be unsubscribed (or destroyed) before
// the watcher goes. Used on the thread that pumps the session's descriptor handler. Callbacks
// throw only what the output stream throws.
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "client/client.h"
#include "tools/vxctl/output_format.h"

class VXCtlWatcher {
 public:
  using Clock = std::function<VXCtlClock::time_point()>;

  VXCtlWatcher(std::ostream& out, bool json, Clock clock = VXCtlClock::now);
  ~VXCtlWatcher();
  VXCtlWatcher(const VXCtlWatcher&) = delete;
  VXCtlWatcher& operator=(const VXCtlWatcher&) = delete;

  // The error log, server messages, pick results, command callbacks, the disconnect, and the
  // state changes of the given zones.
  void subscribe(VXClient& session, const std::vector<std::string>& zones);
  void unsubscribe(VXClient& session, const std::vector<std::string>& zones);

  // True once the server closed the connection.
  bool disconnected() const { return disconnected_; }

  VXErrLogListener& errLogListener();
  VXZoneStateListener& zoneListener();
  VXServerMessageListener& messageListener();
  VXPickResultListener& pickListener();
  VXCallbackCommandListener& callbackListener();
  VXDisconnectListener& disconnectListener();

 private:
  struct Listeners;

  void print(const VXCtlEvent& event);

  std::ostream& out_;
  const bool json_;
  const Clock clock_;
  bool disconnected_ = false;
  std::unique_ptr<Listeners> listeners_;
};
