#pragma once
// A connected pair of sockets on 127.0.0.1 with an ephemeral port: `client` connected to a
// listening server, `peer` the server's side of that connection.
#include <string>

#include "foundation/socket.h"

struct LoopbackPair {
  LoopbackPair() {
    server.bind(0, "127.0.0.1");
    server.listen();
    client.connect("127.0.0.1", server.getLocalPort());
    server.accept(peer);
  }
  void send(const std::string& bytes) { peer.writeAll(bytes.data(), bytes.size()); }

  AFCServerSocket server;
  AFCClientSocket client;
  AFCClientSocket peer;
};

// A port on 127.0.0.1 that nothing listens on: bound, then closed again.
inline int closedLoopbackPort() {
  AFCServerSocket server;
  server.bind(0, "127.0.0.1");
  const int port = server.getLocalPort();
  server.close();
  return port;
}
