#pragma once
// The simulator's server on 127.0.0.1, port 0, run on a thread of its own as the program runs
// it; operator lines are handed to that thread. After stop() the thread is gone, so the test may
// look at the hub and its scene. A controlPort of 0 in the options opens a control port too.
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <mutex>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
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
    if (hub_.getOptions().controlPort >= 0) {
      controlPort_ = server_.listenControl("127.0.0.1", hub_.getOptions().controlPort);
    }
    thread_ = std::thread([this] {
      server_.run([this] { runConsoleLines(); });
      finished_.store(true);
    });
  }
  ~RunningServer() { stop(); }

  std::string address() const { return "127.0.0.1:" + std::to_string(port_); }
  int controlPort() const { return controlPort_; }
  void console(const std::string& line) { post(line); }
  // Runs the line on the server's thread and returns its output, once it has run; empty when it
  // has not run within a few seconds.
  std::string command(const std::string& line) {
    std::future<std::string> output = post(line);
    if (output.wait_for(std::chrono::seconds(3)) != std::future_status::ready) return {};
    return output.get();
  }
  // True once run() has returned (stop() or "quit").
  bool finished() const { return finished_.load(); }
  void stop() {
    if (!thread_.joinable()) return;
    server_.stop();
    thread_.join();
  }
  // Only once stopped.
  VXSimHub& hub() { return hub_; }

 private:
  using Line = std::pair<std::string, std::shared_ptr<std::promise<std::string>>>;

  std::future<std::string> post(const std::string& line) {
    auto output = std::make_shared<std::promise<std::string>>();
    {
      std::lock_guard lock(lock_);
      lines_.emplace_back(line, output);
    }
    handler_.wakeUp();
    return output->get_future();
  }
  void runConsoleLines() {
    std::vector<Line> lines;
    {
      std::lock_guard lock(lock_);
      lines.swap(lines_);
    }
    for (const auto& [line, output] : lines) {
      std::ostringstream out;
      vxSimConsoleCommand(hub_, line, out);
      output->set_value(out.str());
    }
  }

  VXSimHub hub_;
  AFCFDHandlerEvent handler_;
  VXSimServer server_;
  int port_ = 0;
  int controlPort_ = -1;
  std::mutex lock_;
  std::vector<Line> lines_;
  std::atomic<bool> finished_{false};
  std::thread thread_;
};
