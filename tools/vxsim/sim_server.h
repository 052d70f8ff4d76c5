#pragma once
// The simulator on the network: a listening socket and one socket per client, all registered
// with one descriptor handler, carrying bytes between the sockets and the clients'
// connections. Every client shares the hub's scene. Optionally a control port (sim_control.h)
// on the same handler. Replies held back by a delay fault go out when due: the handler's wait
// is cut short for them, so the other clients are served meanwhile.
//
// Owns its sockets and connections; the hub and the handler are the caller's and must outlive
// it. Everything runs on the thread that pumps the handler (run() or the caller's own loop with
// reap()); only stop() may be called from another thread. listen() throws the socket layer's
// exceptions; socket failures of a client close that client and become a log line.
#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/fd_handler.h"
#include "foundation/socket.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_control.h"
#include "tools/vxsim/sim_hub.h"

class VXSimServer {
 public:
  // Milliseconds a client may keep a write waiting before it is dropped.
  static constexpr int kWriteTimeLimitMs = 5000;
  // Longest wait of the handler between passes of run().
  static constexpr int kPassMs = 200;

  VXSimServer(VXSimHub& hub, AFCFDHandler& handler);
  ~VXSimServer();
  VXSimServer(const VXSimServer&) = delete;
  VXSimServer& operator=(const VXSimServer&) = delete;

  // Binds and listens; port 0 picks a free one. Returns the port.
  int listen(const std::string& host, int port);
  int getPort() const { return listener_.getLocalPort(); }
  // Opens the control port; port 0 picks a free one. Returns the port. "quit" there stops run().
  int listenControl(const std::string& host, int port);
  std::size_t getClientCount() const { return clients_.size(); }

  // Sends what every connection has to send, and closes the sockets of closed connections.
  void flush();
  // Forgets the clients whose sockets are closed; outside the handler's callbacks only.
  void reap();
  // Pumps the handler until stop(); between passes it reaps and calls idle (for console input).
  void run(const std::function<void()>& idle = {});
  // Makes run() return soon; any thread.
  void stop();

 private:
  class Listener : public AFCServerSocket {
   public:
    explicit Listener(VXSimServer& server) : server_(server) {}
    AFCFDAsyncRegistry* getAsyncRegistry() override { return &server_.handler_; }

   protected:
    void serveClient() override { server_.acceptClient(); }

   private:
    VXSimServer& server_;
  };

  class Client : public AFCClientSocket {
   public:
    Client(VXSimServer& server, int id) : server_(server), connection_(server.hub_, id) {}
    AFCFDAsyncRegistry* getAsyncRegistry() override { return &server_.handler_; }
    VXSimConnection& connection() { return connection_; }

   protected:
    void onReadable() override;
    void onPeerClosed() override;

   private:
    VXSimServer& server_;
    VXSimConnection connection_;
  };

  void acceptClient();
  void sendOutput(Client& client);
  void closeClient(Client& client, const std::string& why);
  // Milliseconds the handler may wait before a held reply falls due (at most kPassMs).
  int passTimeMs() const;

  VXSimHub& hub_;
  AFCFDHandler& handler_;
  Listener listener_{*this};
  std::vector<std::unique_ptr<Client>> clients_;
  int nextClientId_ = 1;
  std::unique_ptr<VXSimControl> control_;
  std::atomic<bool> stopping_{false};
};
