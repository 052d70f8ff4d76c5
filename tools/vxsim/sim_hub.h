#pragma once
// What the simulator's clients share: the scene, the configuration, the list of connections
// and the simulator's own log. Actions from any client change the one scene; their effects go
// out to the clients that asked for them (error-log entries to the subscribers, zone changes
// to the clients registered for the zone, a callback to the client that sent it, a watched
// attribute's change to the clients watching it).
//
// Owns the scene; connections are not owned (each attaches itself for its lifetime). Not thread
// safe: the server runs hub and connections on one thread. Serving never throws for a command
// that cannot be applied: that becomes an error-log entry and a log line.
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "client/roa_records.h"
#include "commands/action.h"
#include "tools/vxsim/sim_faults.h"
#include "tools/vxsim/sim_options.h"
#include "tools/vxsim/sim_scene.h"
#include "tools/vxsim/sim_watch.h"

class VXSimConnection;

// An EXCEPTION reply carrying the text.
VXROAReply vxSimExceptionReply(const std::string& text);

class VXSimHub {
 public:
  using LogSink = std::function<void(const std::string& line)>;

  explicit VXSimHub(VXSimOptions options = {});

  const VXSimOptions& getOptions() const { return options_; }
  uint32_t getCombinedVersion() const { return options_.version.combined(); }
  VXSimScene& getScene() { return scene_; }
  const std::vector<VXSimConnection*>& getConnections() const { return connections_; }
  // The camera last switched to through "::CameraManager.switchCamera"; empty before.
  const std::string& getCamera() const { return camera_; }
  const VXSimWatches& getWatches() const { return watches_; }

  // Lines of the simulator's log go to the sink (none by default).
  void setLogSink(LogSink sink) { logSink_ = std::move(sink); }
  void log(const std::string& line) const;

  void attach(VXSimConnection& connection);
  void detach(VXSimConnection& connection);

  // Applies every record in order; see the class comment for what goes out.
  void runAction(VXSimConnection& from, const VXAction& action);
  // Sets the zones and notifies the clients registered for them.
  void setZones(const VXZonesState& zones);
  // A log line, and an error-log entry of that level to every subscriber.
  void reportError(unsigned level, const std::string& text);
  // A server message (packet 16) to every client.
  void broadcastMessage(const std::string& text);
  // A pick result (packet 15) to every client.
  void broadcastPickResult(const std::string& text);
  // Faults the operator injects; the connections carry them out.
  VXSimFaults& getFaults() { return faults_; }
  // Answers a remote-object request from the client.
  VXROAReply answer(VXSimConnection& from, const VXROARequest& request);
  // Sixteen random bytes for a login challenge.
  std::vector<uint8_t> makeChallenge();

 private:
  void notifyZoneChanges();
  // Tells the watchers of every attribute whose value changed (see VXSimWatches).
  void notifyWatchers();
  // The text of the attribute a "PATH.ATTR" target names, "<undefined>" when there is none.
  std::string watchedValue(const std::string& target) const;
  // One string value of that packet type to every logged-in client.
  void broadcastText(uint32_t type, const std::string& text);
  VXROAReply serveRemote(VXSimConnection& from, const VXROARequest& request);
  VXROAReply serveService(VXSimConnection& from, const std::string& object,
                          const std::string& member, int32_t kind, const VXROAValues& arguments);
  VXROAReply servePreview(const std::string& call, const std::string& member,
                          const VXROAValues& arguments);
  VXROAReply servePick(VXSimConnection& from, const VXROAValues& arguments);
  VXROAReply serveNode(const std::string& object, const std::string& member, int32_t kind,
                       const VXROAValues& arguments);
  VXROAReply serveProperties(const std::string& object);
  VXROAReply serveMultiGet(const std::string& object, const VXROAValues& names);
  VXROAReply serveWatch(VXSimConnection& from, const std::string& target);
  // The node at a "Root..." path; throws VXROAEntityNotFound("object", path).
  VXSimNode& remoteNode(const std::string& path);

  VXSimOptions options_;
  VXSimScene scene_;
  std::vector<VXSimConnection*> connections_;
  LogSink logSink_;
  std::mt19937 random_;
  int32_t lastPreviewId_ = 0;  // ids handed out are 1 up to this
  std::string camera_;
  VXSimWatches watches_;
  VXSimFaults faults_;
};
