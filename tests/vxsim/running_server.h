#pragma once
// The simulator's server on 127.0.0.1, port 0, run on a thread of its own as the program runs
// it; operator lines are handed to that thread. After stop() the thread is gone, so the test may
// look at the hub and its scene. A controlPort of 0 in the options opens a control port too.
#include <atomic>
#include <chrono>
#include <functional>
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
  // The log sink, if any, is called on the server's thread, where it may look at the hub.
  explicit RunningServer(VXSimOptions options = {}, VXSimHub::LogSink logSink = {})
      : hub_(std::move(options)), server_(hub_, handler_) {
    if (logSink) hub_.setLogSink(std::move(logSink));
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
  std::string command(const std::string& line) { return await(post(line)); }
  // The clients connected now, counted on the server's thread; a client that has gone counts no
  // more once the server has read everything it sent. -1 when the count has not run in time.
  int clientCount() {
    const std::string count =
        await(post([](VXSimHub& hub) { return std::to_string(hub.getConnections().size()); }));
    return count.empty() ? -1 : std::stoi(count);
  }
  // True once run() has returned (stop() or "quit").
  bool finished() const { return finished_.load(); }
  void stop() {
    if (!thread_.joinable()) return;
    server_.stop();
    thread_.join();
  }
  // Only once stopped, or on the server's thread.
  VXSimHub& hub() { return hub_; }

 private:
  // Work for the server's thread, which yields the output.
  using Task = std::function<std::string(VXSimHub&)>;
  using Line = std::pair<Task, std::shared_ptr<std::promise<std::string>>>;

  static std::string await(std::future<std::string> output) {
    if (output.wait_for(std::chrono::seconds(3)) != std::future_status::ready) return {};
    return output.get();
  }
  std::future<std::string> post(const std::string& line) {
    return post([line](VXSimHub& hub) {
      std::ostringstream out;
      vxSimConsoleCommand(hub, line, out);
      return out.str();
    });
  }
  std::future<std::string> post(Task task) {
    auto output = std::make_shared<std::promise<std::string>>();
    {
      std::lock_guard lock(lock_);
      lines_.emplace_back(std::move(task), output);
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
    for (const auto& [task, output] : lines) output->set_value(task(hub_));
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
