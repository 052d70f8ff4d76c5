// Feeds arbitrary bytes from the peer to the in-memory session: each packet is read and
// dispatched as an asynchronous packet until the bytes run out, with one listener of every kind
// registered. Any failure must be an AFCException.
#include <cstddef>
#include <cstdint>
#include <string>

#include "client/register.h"
#include "foundation/errlog.h"
#include "tests/support/memory_session.h"
#include "tests/support/session_test_access.h"

namespace {

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
  VXMemorySession session;
  session.serverSends(data, size);
  session.openWithoutHandshake();
  session.addErrLogListener(&listener);
  session.addPickResultListener(&listener);
  session.addServerMessageListener(&listener);
  session.addCommandCallbackListener(&listener);
  session.addZoneNotifyListener("Z", &listener);
  while (session.bytesPending() > 0) {
    try {
      VXSessionTestAccess::processIncoming(session);
    } catch (const AFCException&) {
      break;
    }
  }
  return 0;
}
