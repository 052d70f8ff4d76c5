// vxsim: a render-server simulator. It listens for clients, answers the protocol over a small
// scene graph that every client shares, and takes operator commands (sim_console.h: scene,
// zones, messages, pick results, error-log entries, faults) on standard input and, with
// --control-port, on a loopback TCP port.
//   vxsim [--port N] [--host ADDRESS] [--password P] [--version V] [--control-port N]
//         [--fault ORDER]...
// The first line of output is "vxsim listening on ADDRESS:PORT", then, with a control port,
// "vxsim control on 127.0.0.1:PORT"; log lines follow.
#include <deque>
#include <iostream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "client/packet_frame.h"
#include "client/register.h"
#include "foundation/crash_dump.h"
#include "foundation/fd_handler.h"
#include "tools/vxsim/sim_console.h"
#include "tools/vxsim/sim_server.h"

namespace {

// Lines typed by the operator, read on a thread of their own (a blocking read of standard
// input cannot be part of the descriptor handler on every platform) and handed to the server's
// thread, which the reader wakes. The reader is never destroyed: at exit it may still be blocked
// in a read, so the handler is taken from it (release) before the handler goes.
class ConsoleReader {
 public:
  explicit ConsoleReader(AFCFDHandler& handler) : handler_(&handler) {
    std::thread([this] {
      std::string line;
      while (std::getline(std::cin, line)) {
        std::lock_guard lock(lock_);
        lines_.push_back(line);
        if (handler_ != nullptr) handler_->wakeUp();
      }
    }).detach();
  }
  std::vector<std::string> take() {
    std::lock_guard lock(lock_);
    std::vector<std::string> lines(lines_.begin(), lines_.end());
    lines_.clear();
    return lines;
  }
  void release() {
    std::lock_guard lock(lock_);
    handler_ = nullptr;
  }

 private:
  std::mutex lock_;
  AFCFDHandler* handler_;  // not owned; null once released
  std::deque<std::string> lines_;
};

int serve(const VXSimOptions& options) {
  registerClientClasses();
  VXSimHub hub(options);
  hub.setLogSink([](const std::string& line) { std::cout << line << std::endl; });
  AFCFDHandlerEvent handler;
  VXSimServer server(hub, handler);
  const int port = server.listen(options.host, options.port);
  std::cout << "vxsim listening on " << options.host << ":" << port << std::endl;
  if (options.controlPort >= 0) {
    // Loopback only: whoever reaches the port can stop the simulator and break its clients.
    const int controlPort = server.listenControl("127.0.0.1", options.controlPort);
    std::cout << "vxsim control on 127.0.0.1:" << controlPort << std::endl;
  }
  for (const std::string& fault : options.faults) hub.getFaults().apply(fault);
  if (!options.password.empty() && options.version.combined() < VXPacketFrame::kLoginVersion) {
    hub.log(
        "warning: clients log in only from version 2295.7 (or 2295beta7) on; with this "
        "version and a password every client is refused");
  }
  auto* console = new ConsoleReader(handler);
  server.run([&] {
    for (const std::string& line : console->take()) {
      if (vxSimConsoleCommand(hub, line, std::cout) == VXSimConsoleResult::Quit) server.stop();
    }
  });
  console->release();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  AFCCrashDump::install();
  try {
    const VXSimOptions options =
        vxSimParseArguments(std::vector<std::string>(argv + 1, argv + argc));
    if (options.help) {
      std::cout << kVXSimUsage;
      return 0;
    }
    return serve(options);
  } catch (const VXSimUsageException& e) {
    std::cerr << "vxsim: " << e.what() << "\n" << kVXSimUsage;
    return 2;
  } catch (const AFCException& e) {
    std::cerr << "vxsim: " << e.what() << "\n";
    return 1;
  }
}
