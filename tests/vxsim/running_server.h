#pragma once
// The simulator's server on 127.0.0.1, port 0, run on a thread of its own as the program runs
// it; operator lines are handed to that thread. After stop() the thread is gone, so the test may
// look at the hub and its scene.
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "foundation/fd_handler.h"
#include "tools/vxsim/sim_console.h"
#include "tools/vxsim/sim_hub.h"
#include "tools/vxsim/sim_server.h"

class RunningServer {
 public:
  explicit RunningServer(VXSimOptions options = {})
      : hub_(std::move(options)), server_(hub_, handler_) {
    port_ = server_.listen("127.0.0.1", 0);
    thread_ = std::thread([this] { server_.run([this] { runConsoleLines(); }); });
  }
  ~RunningServer() { stop(); }

  std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
  void console(const std::string& line) {
    {
      std::lock_guard lock(lock_);
      lines_.push_back(line);
    }
    handler_.wakeUp();
  }
  void stop() {
    if (!thread_.joinable()) return;
    server_.stop();
    thread_.join();
  }
  // Only once stopped.
  VXSimHub& hub() { return hub_; }

 private:
  void runConsoleLines() {
    std::vector<std::string> lines;
    {
      std::lock_guard lock(lock_);
      lines.swap(lines_);
    }
    std::ostringstream out;
    for (const std::string& line : lines) vxSimConsoleCommand(hub_, line, out);
  }

  VXSimHub hub_;
  AFCFDHandlerEvent handler_;
  VXSimServer server_;
  int port_ = 0;
  std::mutex lock_;
  std::vector<std::string> lines_;
  std::thread thread_;
};
