#pragma once
// The operator's console on a TCP port, for scripts and tests: each line a control client sends
// runs as a console command and the command's output goes back to that client; a command that
// prints nothing answers "ok", so that a client can tell when its command has run. Plain text
// lines ending in "\n" (a "\r" before it is dropped); several clients at a time. A line longer
// than kMaxLineLength closes its client.
//
// Owned by the server; its sockets are registered with the server's descriptor handler and run
// on its thread, so commands never race with the clients' packets. Not thread safe. listen()
// throws the socket layer's exceptions; a control client's socket failure closes that client
// and becomes a log line. "quit" calls the function given at construction.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/fd_handler.h"
#include "foundation/socket.h"
#include "tools/vxsim/sim_hub.h"

class VXSimControl {
 public:
  static constexpr std::size_t kMaxLineLength = 64 * 1024;

  VXSimControl(VXSimHub& hub, AFCFDHandler& handler, std::function<void()> quit);
  ~VXSimControl();
  VXSimControl(const VXSimControl&) = delete;
  VXSimControl& operator=(const VXSimControl&) = delete;

  // Binds and listens; port 0 picks a free one. Returns the port.
  int listen(const std::string& host, int port);
  std::size_t getClientCount() const { return clients_.size(); }
  // Forgets the clients whose sockets are closed; outside the handler's callbacks only.
  void reap();

 private:
  class Listener : public AFCServerSocket {
   public:
    explicit Listener(VXSimControl& control) : control_(control) {}
    AFCFDAsyncRegistry* getAsyncRegistry() override { return &control_.handler_; }

   protected:
    void serveClient() override { control_.acceptClient(); }

   private:
    VXSimControl& control_;
  };

  class Client : public AFCClientSocket {
   public:
    explicit Client(VXSimControl& control) : control_(control) {}
    AFCFDAsyncRegistry* getAsyncRegistry() override { return &control_.handler_; }

   protected:
    void onReadable() override;
    void onPeerClosed() override { close(); }

   private:
    // Runs every whole line received; false when the client is to be closed.
    bool runLines();

    VXSimControl& control_;
    std::string pending_;  // bytes of a line not yet ended
  };

  void acceptClient();
  // The command's output for the client: what it printed, or "ok".
  std::string run(const std::string& line);

  VXSimHub& hub_;
  AFCFDHandler& handler_;
  std::function<void()> quit_;
  Listener listener_{*this};
  std::vector<std::unique_ptr<Client>> clients_;
};
