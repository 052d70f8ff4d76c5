#pragma once
// A real client session wired to a simulator connection in memory: what the session writes is
// fed to the connection, and what the connection answers is queued for the session to read.
// So the simulator is tested against the client it has to satisfy, without sockets.
#include <string>
#include <vector>

#include "tests/client/scripted_session.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_hub.h"

class PipedSession : public ScriptedSession {
 public:
  PipedSession(VXSimHub& hub, int id) : connection_(hub, id) {}

  VXSimConnection& connection() { return connection_; }
  // Queues what the simulator has sent since (broadcasts caused by other clients included).
  void pull() { serverSends(connection_.takeOutput()); }
  // Pulls, then dispatches every whole packet queued, as the transport's callback would.
  void dispatchPending() {
    pull();
    while (bytesPending() > 0) processIncoming();
  }

 protected:
  void writeAll(const uint8_t* bytes, std::size_t count) override {
    ScriptedSession::writeAll(bytes, count);
    connection_.feed(bytes, count);
    pull();
  }

 private:
  VXSimConnection connection_;
};

// A hub whose log lines are kept.
struct RecordingHub {
  explicit RecordingHub(VXSimOptions options = {}) : hub(std::move(options)) {
    hub.setLogSink([this](const std::string& line) { lines.push_back(line); });
  }
  VXSimHub hub;
  std::vector<std::string> lines;
};
