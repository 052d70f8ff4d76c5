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

#include "fuzz/sim_listener_setup.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_hub.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  prepareSimHarness();
  if (size == 0) return 0;
  VXSimOptions options;
  if ((data[0] & 1) != 0) options.password = "pw";
  const std::size_t chunk = 1 + (data[0] >> 1);
  VXSimHub hub(options);
  VXSimConnection listener(hub, 1);
  VXSimConnection client(hub, 2);
  listener.feed(kSimListenerSetup, sizeof kSimListenerSetup);
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
