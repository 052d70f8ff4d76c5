#pragma once
// The script's view of the server session: the client object a title manager makes once and
// hands out. It owns the session (connection, command-list builder, remote-object access) and
// turns the session's disconnect, pick-result, server-message and zone-state calls into script
// handler calls and IVXCmdEvents events: handlers before the events for disconnections and pick
// results, the events before the handler for messages.
//
// Called on the script's thread; the session's events arrive on the thread that pumps its
// registry (the default descriptor handler of that thread, or the async processor's process()),
// which is the script's thread too. Methods throw what the session throws (VXClientException,
// the remote-object exceptions, the value conversion's AFCIllegalArgumentException). A failed
// message handler writes "onMessageListener failed" to the error log.
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "automation/script_events.h"
#include "automation/script_value.h"
#include "client/client_tcp.h"
#include "client/listeners.h"

class CAsyncProcessor;

class CClient : private VXDisconnectListener,
                private VXPickResultListener,
                private VXZoneStateListener {
 public:
  CClient();
  ~CClient() override;
  CClient(const CClient&) = delete;
  CClient& operator=(const CClient&) = delete;

  VXClientTcp& getSession() { return session_; }
  CmdEventSinks& getEvents() { return events_; }

  void setServerAddress(const std::string& hostname) { session_.setServerAddress(hostname); }
  std::string getServerAddress() const { return session_.getServerAddress(); }
  void setPassword(const std::string& password) { session_.setPassword(password); }
  // False when the session could not connect; the reason is getConnectFailure().
  bool connect() { return session_.connect(); }
  const std::string& getConnectFailure() const { return session_.getConnectFailure(); }
  void disconnect() { session_.close(); }
  // The zone is switched on for any non-zero state.
  void setZoneState(const std::string& zoneName, int32_t state);
  // 1 when the zone is on, else 0.
  int32_t getZoneState(const std::string& zoneName);
  std::string getServerVersion() const { return session_.getServerVersion(); }
  // The zone's state changes come as onZoneChange events (a title's enableZoneNotification).
  void addZoneNotification(const std::string& zone) { session_.addZoneNotifyListener(zone, this); }
  void removeZoneNotification(const std::string& zone) {
    session_.removeZoneNotifyListener(zone, this);
  }

  void switchCamera(const std::string& cameraName);
  int32_t previewGenerateID();
  void previewSchedule(int32_t previewID) { session_.preview(previewID); }
  void previewGetStillImageFile(int32_t previewID, const std::string& fileName);
  int32_t previewGetSequenceImageFiles(int32_t previewID, const std::string& fileName);
  void writeRenderPicture();
  void writeScene();
  void sendPickRequest(float x, float y);
  void sendPickRequestTag(const std::string& tagName);

  void roaSet(const std::string& object, const std::string& field, const ScriptValue& value);
  ScriptValue roaGet(const std::string& object, const std::string& field);
  ScriptValue roaCall(const std::string& object, const std::string& funcName,
                      const std::vector<ScriptValue>& args);

  // Null drops the handlers (the message handler: drops the one there is).
  void setOnDisconnectListener(std::shared_ptr<ScriptHandler> handler);
  void setOnPickResultListener(std::shared_ptr<ScriptHandler> handler);
  void setOnMessageListener(std::shared_ptr<ScriptHandler> handler);

  // Made on the first call and installed as the session's registry; later calls return the
  // same processor. Throws VXClientException "Cannot change AsyncRegistry while client is open"
  // when the first call comes while the session is open (no processor is kept then).
  std::shared_ptr<CAsyncProcessor> createAsyncProcessor();

 private:
  void onServerDisconnect(int32_t clientIndex) override;
  void onPickResult(const std::string& result) override;
  void onMessage(const std::string& message);
  void onZoneStateChange(const VXZonesState& zones) override;

  // The remote call object.method with the arguments; its reply, null for none.
  std::unique_ptr<AFCAttribute> invoke(const std::string& object, const std::string& method,
                                       std::span<const AFCAttribute* const> args = {});
  // The integer a reply stands for: an Int32 as it is, anything else through its text.
  static int32_t replyNumber(const std::unique_ptr<AFCAttribute>& reply);

  // Before the session: the session leaves the processor's registry when it closes.
  std::shared_ptr<CAsyncProcessor> asyncProcessor_;
  VXClientTcp session_;
  ScriptHandlers disconnectHandlers_;
  ScriptHandlers pickResultHandlers_;
  ScriptHandlers messageHandlers_;  // one at most
  ScriptValue messageArgument_;      // see onMessage
  int messageCalls_ = 0;             // message calls in progress
  // Messages come in bursts: their listener is an object of its own, which the session's call
  // reaches by a cheap cast (a class with one base), not a search of this class's four.
  struct MessageRelay final : VXServerMessageListener {
    explicit MessageRelay(CClient& client) : client(client) {}
    void onMessage(const std::string& message) override { client.onMessage(message); }
    CClient& client;
  } messageRelay_{*this};
  CmdEventSinks events_;
};
