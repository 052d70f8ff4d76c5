#pragma once
// The session as packets: owns the session state, runs the handshake after every connect
// (server version, login, re-sending the project and the subscriptions, connect listeners),
// decides from the server's version which features may be used, turns actions, zone-state
// queries and listener registrations into packets, and dispatches the server's asynchronous
// packets to the listeners.
//
// Framing and the exchange (sendPacket, request) and the transport belong to the layers below.
// Threads: sending is serialised by the layer below; listener lists, the project table and the
// debug stream have locks of their own, and every listener is called without any lock held, on
// the thread that read the packet. Listener failures never leave a dispatch: each becomes one
// error-log line. Decoding a malformed payload throws the stream's exceptions.
#include <algorithm>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "client/client.h"
#include "client/comm_protocol.h"
#include "client/object_attribute.h"
#include "client/roa_manager.h"
#include "foundation/buffer.h"

class VXClientPacket : public VXClient, public VXCommProtocol, public VXROAManager {
 public:
  enum PacketType : uint32_t {
    kAction = 0,
    kSetZoneState = 2,
    kGetZoneState = 3,
    kZoneState = 4,
    kVersionRequest = 5,
    kVersionReply = 6,
    kZoneRegister = 7,
    kZoneUnregister = 8,
    kROARequest = 9,
    kROAReply = 10,
    kErrLogSubscribe = 11,
    kErrLogUnsubscribe = 12,
    kErrLogEntry = 13,
    kCommandCallback = 14,
    kPickResult = 15,
    kServerMessage = 16,
    kLoginChallengeRequest = 17,
    kLoginChallenge = 18,
    kLoginResponse = 19,
    kLoginAnswer = 20,
  };
  // Servers from this combined version ask for a login.
  static constexpr uint32_t kLoginVersion = 2295007;

  explicit VXClientPacket(int32_t clientIndex = 0);
  ~VXClientPacket() override;

  int32_t getClientIndex() const { return clientIndex_; }
  // Debug lines go to stream (not owned) when on is set.
  void setDebug(bool on, std::ostream* stream);
  bool isDebug() const { return debug_; }
  bool getSilentErrors() const { return silentErrors_; }
  bool isConnected() const { return connected_; }
  // Why the last connect() failed, whether it threw or returned false ("Can't get server
  // version, ..." and the like); empty after one that succeeded.
  const std::string& getConnectFailure() const { return connectFailure_; }

  void setSilentErrors(bool silent) override;
  void setPassword(const std::string& password) override { password_ = password; }
  bool connect() override;
  bool close() override;
  // W7: keeps the current channel's project action and sends it when open.
  void setProject(const std::string& projectName) override;
  // The project name of the current channel; empty when it has none.
  std::string getProject() const override;
  void setZoneState1(const VXZonesState& zones) override;
  // The reply and the zone notifications are both packet 4 and replies are matched by type, so
  // on a session registered for zone notifications a notification already on its way is taken
  // as the reply. Query from a session that is not registered when the answer must be exact.
  void getZoneState1(VXZonesState& zones) override;

  void addZoneNotifyListener(const std::string& zone, VXZoneStateListener* listener) override;
  void removeZoneNotifyListener(const std::string& zone, VXZoneStateListener* listener) override;
  void addErrLogListener(VXErrLogListener* listener) override;
  void removeErrLogListener(VXErrLogListener* listener) override;
  void addDisconnectListener(VXDisconnectListener* listener) override;
  void removeDisconnectListener(VXDisconnectListener* listener) override;
  void addConnectListener(VXConnectListener* listener) override;
  void removeConnectListener(VXConnectListener* listener) override;
  void addCommandCallbackListener(VXCallbackCommandListener* listener) override;
  void removeCommandCallbackListener(VXCallbackCommandListener* listener) override;
  void addPickResultListener(VXPickResultListener* listener) override;
  void removePickResultListener(VXPickResultListener* listener) override;
  void addServerMessageListener(VXServerMessageListener* listener) override;
  void removeServerMessageListener(VXServerMessageListener* listener) override;

  void callZoneNotifyListeners(const VXZonesState& zones) override;
  void callErrLogListeners(const AFCErrLogEvent& entry) override;
  void callCommandCallbackListeners(int32_t callbackId) override;
  void callPickResultListeners(const std::string& result) override;
  void callServerMessageListeners(const std::string& message) override;

  // "2295.7", "2295beta3", with " debug" for a debug build of the server.
  std::string getServerVersion() const override;
  // The major number without the debug bit.
  uint32_t getServerVersionMajor() const override { return versionMajor_ & 0x3FFFFFFFu; }
  uint32_t getServerVersionMinor() const override { return versionMinor_; }
  uint32_t getServerVersionBuild() const override { return versionWord2_; }
  uint32_t getServerVersionWord1() const { return versionWord1_; }
  // major * 1000 plus the minor ordered so that betas come before releases; the version the
  // payload streams are made for.
  uint32_t getCombinedVersion() const;

  // Opens and closes the connection.
  virtual void openTransport() = 0;
  virtual void closeTransport() = 0;
  // The handshake, after every successful transport connect.
  virtual void onConnected();
  // Closes the session, then calls the disconnect listeners.
  virtual void onDisconnected();
  // Decodes an asynchronous packet and hands it to its listeners; an unknown type is logged.
  virtual void handleAsyncPacket(uint32_t type, const AFCBuffer& payload);

 protected:
  // W1: the action as one new object, packet type 0.
  void sendAction(const VXAction& action) override;
  // Builder traces and remote-object traces both go to the debug stream.
  bool traceEnabled() const override { return debug_; }
  std::ostream& traceStream() override;
  // Remote-object requests: packet 9, and for the synchronous kinds the reply packet 10.
  void roaSend(const AFCBuffer& requestPayload) override { sendPacket(kROARequest, requestPayload); }
  void roaRequest(const AFCBuffer& requestPayload, AFCBuffer& replyPayload) override {
    request(kROARequest, requestPayload, kROAReply, replyPayload);
  }

  // One newline-terminated, flushed line on the debug stream when debug output is on.
  template <class... Parts>
  void debugLine(const Parts&... parts) {
    if (!debug_) return;
    std::ostringstream line;
    (line << ... << parts);
    writeDebugLine(line.str());
  }

 private:
  void writeDebugLine(const std::string& line);
  void setVersion(uint32_t word1, uint32_t word2, uint32_t major, uint32_t minor);
  // Handshake steps.
  void queryServerVersion();
  void logIn();
  void resendProject();
  void reapplyErrLogListeners();
  void reapplyZoneNotifyListeners();
  void callConnectListeners();
  void callDisconnectListeners();
  void sendZoneName(uint32_t type, const std::string& zone);
  template <class Listener>
  std::vector<Listener*> snapshot(const std::vector<Listener*>& list) const {
    std::lock_guard lock(listenerLock_);
    return list;
  }
  // Adds under the lock; true when the list was empty before.
  template <class Listener>
  bool addTo(std::vector<Listener*>& list, Listener* listener) {
    std::lock_guard lock(listenerLock_);
    list.push_back(listener);
    return list.size() == 1;
  }
  // Removes the first entry of listener; true when that emptied the list.
  template <class Listener>
  bool removeFrom(std::vector<Listener*>& list, Listener* listener) {
    std::lock_guard lock(listenerLock_);
    const auto found = std::find(list.begin(), list.end(), listener);
    if (found == list.end()) return false;
    list.erase(found);
    return list.empty();
  }
  // What a guard writes for a failure that is not an AFCException: its description, or (for the
  // message listeners) "unknown excpetion".
  enum class ForeignFailure { kDescribe, kUnknown };
  // Calls the listener's method in a guard: a failure becomes the error-log line failure text
  // and the description.
  void guardedCall(AFCObject& listener, const char* method, AFCAttribute& argument,
                   const char* failureText, ForeignFailure foreign = ForeignFailure::kDescribe);

  const int32_t clientIndex_;
  bool debug_ = false;
  std::ostream* debugStream_ = nullptr;
  std::mutex debugLock_;
  std::ostringstream discardedTrace_;  // the builder's trace target while debug output is off
  bool silentErrors_ = false;
  bool connected_ = false;
  std::string password_;
  std::string connectFailure_;
  uint32_t versionWord1_ = 0;
  uint32_t versionWord2_ = 0;
  uint32_t versionMajor_ = 0;
  uint32_t versionMinor_ = 0;

  mutable std::mutex projectLock_;
  // Per channel, the action that sets its project up, in channel order.
  std::map<uint32_t, std::shared_ptr<const VXAction>> project_;

  // Listener lists: non-owning, duplicates kept, in the order of adding. Dispatch calls a
  // snapshot, so a listener may add or remove listeners while it runs.
  mutable std::mutex listenerLock_;
  std::vector<VXErrLogListener*> errLogListeners_;
  std::vector<VXConnectListener*> connectListeners_;
  std::vector<VXDisconnectListener*> disconnectListeners_;
  std::vector<VXCallbackCommandListener*> commandCallbackListeners_;
  std::vector<VXPickResultListener*> pickResultListeners_;
  std::vector<VXServerMessageListener*> serverMessageListeners_;
  // Zone name to listener, one entry per registration, sorted by zone name.
  std::multimap<std::string, VXZoneStateListener*> zoneListeners_;
};
