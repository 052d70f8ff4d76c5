#include "tools/vxctl/watcher.h"

namespace {

// Each listener interface is an object of its own: one class deriving from several of them
// would hold several object bases, and the session calls each through its own class record.
class ErrLog : public VXErrLogListener {
 public:
  explicit ErrLog(std::function<void(const AFCErrLogEvent&)> f) : f_(std::move(f)) {}
  void onNewErrLog(const AFCErrLogEvent& entry) override { f_(entry); }

 private:
  std::function<void(const AFCErrLogEvent&)> f_;
};

class Zone : public VXZoneStateListener {
 public:
  explicit Zone(std::function<void(const VXZonesState&)> f) : f_(std::move(f)) {}
  void onZoneStateChange(const VXZonesState& zones) override { f_(zones); }

 private:
  std::function<void(const VXZonesState&)> f_;
};

class Message : public VXServerMessageListener {
 public:
  explicit Message(std::function<void(const std::string&)> f) : f_(std::move(f)) {}
  void onMessage(const std::string& message) override { f_(message); }

 private:
  std::function<void(const std::string&)> f_;
};

class Pick : public VXPickResultListener {
 public:
  explicit Pick(std::function<void(const std::string&)> f) : f_(std::move(f)) {}
  void onPickResult(const std::string& result) override { f_(result); }

 private:
  std::function<void(const std::string&)> f_;
};

class Callback : public VXCallbackCommandListener {
 public:
  explicit Callback(std::function<void(int32_t)> f) : f_(std::move(f)) {}
  void onCommandCallback(int32_t callbackId) override { f_(callbackId); }

 private:
  std::function<void(int32_t)> f_;
};

class Disconnect : public VXDisconnectListener {
 public:
  explicit Disconnect(std::function<void(int32_t)> f) : f_(std::move(f)) {}
  void onServerDisconnect(int32_t clientIndex) override { f_(clientIndex); }

 private:
  std::function<void(int32_t)> f_;
};

}  // namespace

struct VXCtlWatcher::Listeners {
  ErrLog errLog;
  Zone zone;
  Message message;
  Pick pick;
  Callback callback;
  Disconnect disconnect;
};

VXCtlWatcher::VXCtlWatcher(std::ostream& out, bool json, Clock clock)
    : out_(out), json_(json), clock_(std::move(clock)) {
  // Built in place: listener objects cannot be moved.
  listeners_.reset(new Listeners{
      ErrLog([this](const AFCErrLogEvent& entry) { print(vxctlErrLogEvent(clock_(), entry)); }),
      Zone([this](const VXZonesState& zones) {
        for (const VXCtlEvent& event : vxctlZoneEvents(clock_(), zones)) print(event);
      }),
      Message([this](const std::string& text) {
        print(vxctlSimpleEvent(clock_(), "message", "text", text));
      }),
      Pick([this](const std::string& result) {
        print(vxctlSimpleEvent(clock_(), "pick", "result", result));
      }),
      Callback([this](int32_t id) { print(vxctlSimpleEvent(clock_(), "callback", "id", id)); }),
      Disconnect([this](int32_t clientIndex) {
        disconnected_ = true;
        print(vxctlSimpleEvent(clock_(), "disconnect", "client", clientIndex));
      }),
  });
}

VXCtlWatcher::~VXCtlWatcher() = default;

void VXCtlWatcher::subscribe(VXClient& session, const std::vector<std::string>& zones) {
  session.addErrLogListener(&listeners_->errLog);
  session.addServerMessageListener(&listeners_->message);
  session.addPickResultListener(&listeners_->pick);
  session.addCommandCallbackListener(&listeners_->callback);
  session.addDisconnectListener(&listeners_->disconnect);
  for (const std::string& zone : zones) session.addZoneNotifyListener(zone, &listeners_->zone);
}

void VXCtlWatcher::unsubscribe(VXClient& session, const std::vector<std::string>& zones) {
  for (const std::string& zone : zones) session.removeZoneNotifyListener(zone, &listeners_->zone);
  session.removeDisconnectListener(&listeners_->disconnect);
  session.removeCommandCallbackListener(&listeners_->callback);
  session.removePickResultListener(&listeners_->pick);
  session.removeServerMessageListener(&listeners_->message);
  session.removeErrLogListener(&listeners_->errLog);
}

VXErrLogListener& VXCtlWatcher::errLogListener() { return listeners_->errLog; }
VXZoneStateListener& VXCtlWatcher::zoneListener() { return listeners_->zone; }
VXServerMessageListener& VXCtlWatcher::messageListener() { return listeners_->message; }
VXPickResultListener& VXCtlWatcher::pickListener() { return listeners_->pick; }
VXCallbackCommandListener& VXCtlWatcher::callbackListener() { return listeners_->callback; }
VXDisconnectListener& VXCtlWatcher::disconnectListener() { return listeners_->disconnect; }

void VXCtlWatcher::print(const VXCtlEvent& event) {
  // Flushed at once: a watch usually feeds a pipe or a terminal that waits for each line.
  out_ << (json_ ? vxctlEventJson(event) : vxctlEventLine(event)) << std::endl;
}
