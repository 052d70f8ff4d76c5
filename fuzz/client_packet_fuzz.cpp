// Feeds arbitrary bytes from the peer to a session whose transport is an in-memory queue: each
// packet is read and dispatched as an asynchronous packet until the bytes run out, with one
// listener of every kind registered. Any failure must be an AFCException.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "client/client_stream.h"
#include "client/register.h"
#include "foundation/errlog.h"

namespace {

class QueueSession : public VXClientStream {
 public:
  QueueSession(const uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  bool exhausted() const { return at_ == size_; }

  void setServerAddress(const std::string&) override {}
  std::string getServerAddress() const override { return {}; }
  bool isOpen() const override { return true; }

 protected:
  void connectTransport() override {}
  void disconnectTransport() override {}
  void readExact(uint8_t* dest, std::size_t count) override {
    if (size_ - at_ < count) throw AFCException("Connection closed by peer");
    std::memcpy(dest, data_ + at_, count);
    at_ += count;
  }
  void writeAll(const uint8_t*, std::size_t) override {}

 private:
  const uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

struct AnyListener : VXErrLogListener,
                     VXPickResultListener,
                     VXServerMessageListener,
                     VXCallbackCommandListener,
                     VXZoneStateListener {
  void onNewErrLog(const AFCErrLogEvent& entry) override { (void)entry.getTimeString(); }
  void onPickResult(const std::string&) override {}
  void onMessage(const std::string&) override {}
  void onCommandCallback(int32_t) override {}
  void onZoneStateChange(const VXZonesState& zones) override { (void)zones.size(); }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool prepared = [] {
    registerClientClasses();
    AFCErrLog::instance().removeAllBackends();  // unknown types are logged: keep output quiet
    return true;
  }();
  (void)prepared;
  AnyListener listener;
  QueueSession session(data, size);
  session.addErrLogListener(&listener);
  session.addPickResultListener(&listener);
  session.addServerMessageListener(&listener);
  session.addCommandCallbackListener(&listener);
  session.addZoneNotifyListener("Z", &listener);
  while (!session.exhausted()) {
    try {
      session.processIncoming();
    } catch (const AFCException&) {
      break;
    }
  }
  return 0;
}
