// Feeds arbitrary text to the simulator's operator commands, as lines arrive from standard input
// or from a control client: every command with any arguments, against a hub with a logged-in
// client that is registered for a zone and subscribed to the error log, so that zone changes,
// error-log entries, messages, pick results and faults are framed for it. The scene is then
// printed both ways. Nothing may throw out of a command: bad lines only print what is wrong.
// At most kMaxLines lines an input, so that bursts of messages stay within the run's time limit.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>

#include "fuzz/sim_listener_setup.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_console.h"
#include "tools/vxsim/sim_hub.h"

namespace {

constexpr int kMaxLines = 16;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  prepareSimHarness();
  VXSimHub hub;
  VXSimConnection client(hub, 1);
  client.feed(kSimListenerSetup, sizeof kSimListenerSetup);
  std::ostringstream out;
  std::string_view text(reinterpret_cast<const char*>(data), size);
  for (int lines = 0; lines < kMaxLines && !text.empty(); ++lines) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (vxSimConsoleCommand(hub, std::string(text.substr(0, end)), out) ==
        VXSimConsoleResult::Quit) {
      break;
    }
    text.remove_prefix(std::min(end + 1, text.size()));
    (void)client.takeOutput();
  }
  vxSimConsoleCommand(hub, "tree", out);
  vxSimConsoleCommand(hub, "tree --json", out);
  return 0;
}
