// Feeds arbitrary client bytes to a simulator connection, the way the server's socket does:
// framing, the handshake, actions decoded through the class registry and applied to the scene,
// zone and error-log subscriptions, remote-object requests. A second connection, registered for
// a zone and subscribed to the error log, takes the broadcasts. The first input byte chooses
// whether a password is set and how the rest is split into feeds. Any failure must be an
// AFCException, and only the framing may end the connection.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "client/register.h"
#include "foundation/errlog.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_hub.h"

namespace {

const uint8_t kListenerSetup[] = {
    // packet 11 (subscribe to the error log), then packet 7 for the zone "Z"
    0x56, 0x58, 0x50, 0x01, 0, 0, 0, 11, 0,    0,    0, 0, 0x56, 0x58, 0x50, 0x01,
    0,    0,    0,    7,    0, 0, 0, 7,  0xDA, 0x0B, 0, 0, 0,    1,    'Z'};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool prepared = [] {
    registerClientClasses();
    AFCErrLog::instance().removeAllBackends();
    return true;
  }();
  (void)prepared;
  if (size == 0) return 0;
  VXSimOptions options;
  if ((data[0] & 1) != 0) options.password = "pw";
  const std::size_t chunk = 1 + (data[0] >> 1);
  VXSimHub hub(options);
  VXSimConnection listener(hub, 1);
  VXSimConnection client(hub, 2);
  listener.feed(kListenerSetup, sizeof kListenerSetup);
  try {
    for (std::size_t at = 1; at < size && !client.isClosed(); at += chunk) {
      client.feed(data + at, std::min(chunk, size - at));
      (void)client.takeOutput();
      (void)listener.takeOutput();
    }
  } catch (const AFCException&) {
    if (!client.isClosed()) __builtin_trap();  // a failed feed must leave the connection closed
  }
  (void)hub.getScene().dumpTree();
  return 0;
}
