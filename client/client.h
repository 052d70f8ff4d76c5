#pragma once
// The abstract session with one render server: everything above it talks to the server through
// these operations. A session is also the command-list builder whose actions it sends, the
// registry of listeners for asynchronous server events, one end of the master/slave ("head")
// relation between sessions, and, through its class record "VXClient", callable by method name.
//
// Listeners and slaves are never owned. The slave relation is changed by one thread at a time.
// Operations that need an open connection throw VXCommunicationErrorException while closed;
// the master/slave operations never throw and log refusals as warnings.
#include <cstdint>
#include <string>
#include <vector>

#include "client/listeners.h"
#include "client/roa_manager_interface.h"
#include "commands/begin_end_builder.h"
#include "commands/zone_state.h"
#include "foundation/errlog_event.h"

class VXClient : public AFCObject,
                 public virtual VXROAManagerInterface,
                 public VXCommandListBeginEndBuilder {
  AFC_DECLARE_CLASS()
 public:
  VXClient() = default;
  ~VXClient() override;

  // Address text: a host, or host and port joined by a colon.
  virtual void setServerAddress(const std::string& address) = 0;
  virtual std::string getServerAddress() const = 0;
  virtual void setSilentErrors(bool silent) = 0;
  virtual void setPassword(const std::string& password) = 0;
  // True at once when already open; else opens the transport and runs the handshake.
  virtual bool connect() = 0;
  // Always false.
  virtual bool close() = 0;
  virtual bool isOpen() const = 0;
  virtual void setProject(const std::string& projectName) = 0;
  virtual std::string getProject() const = 0;
  virtual void setZoneState1(const VXZonesState& zones) = 0;
  // Fills zones in place from the server's reply.
  virtual void getZoneState1(VXZonesState& zones) = 0;

  virtual void addZoneNotifyListener(const std::string& zone, VXZoneStateListener* listener) = 0;
  virtual void removeZoneNotifyListener(const std::string& zone, VXZoneStateListener* listener) = 0;
  virtual void addErrLogListener(VXErrLogListener* listener) = 0;
  virtual void removeErrLogListener(VXErrLogListener* listener) = 0;
  virtual void addDisconnectListener(VXDisconnectListener* listener) = 0;
  virtual void removeDisconnectListener(VXDisconnectListener* listener) = 0;
  virtual void addConnectListener(VXConnectListener* listener) = 0;
  virtual void removeConnectListener(VXConnectListener* listener) = 0;
  virtual void addCommandCallbackListener(VXCallbackCommandListener* listener) = 0;
  virtual void removeCommandCallbackListener(VXCallbackCommandListener* listener) = 0;
  virtual void addPickResultListener(VXPickResultListener* listener) = 0;
  virtual void removePickResultListener(VXPickResultListener* listener) = 0;
  virtual void addServerMessageListener(VXServerMessageListener* listener) = 0;
  virtual void removeServerMessageListener(VXServerMessageListener* listener) = 0;

  // Appends slave unless this session is a slave or slave already has a master (each logged).
  virtual void addSlave(VXClient* slave);
  // Removes every entry of slave, or every slave for null, clearing their slave flags.
  virtual void removeSlave(VXClient* slave);

  virtual void callZoneNotifyListeners(const VXZonesState& zones) = 0;
  virtual void callErrLogListeners(const AFCErrLogEvent& entry) = 0;
  virtual void callCommandCallbackListeners(int32_t callbackId) = 0;
  virtual void callPickResultListeners(const std::string& result) = 0;
  virtual void callServerMessageListeners(const std::string& message) = 0;

  // The server's version: its text, major, minor and build words.
  virtual std::string getServerVersion() const = 0;
  virtual uint32_t getServerVersionMajor() const = 0;
  virtual uint32_t getServerVersionMinor() const = 0;
  virtual uint32_t getServerVersionBuild() const = 0;

  bool isSlave() const { return isSlave_; }
  const std::vector<VXClient*>& getSlaves() const { return slaves_; }

 private:
  bool isSlave_ = false;
  std::vector<VXClient*> slaves_;
  // The session this one is a slave of; a session that dies leaves its master's list.
  VXClient* master_ = nullptr;
};
