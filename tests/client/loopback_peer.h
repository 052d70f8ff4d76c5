#pragma once
// A scripted render server on 127.0.0.1 with an ephemeral port: it accepts connections one at a
// time and runs a script against each on a thread of its own. The script reads and writes
// whole packets put together from the wire layout. Every wait is bounded, so a client that
// misbehaves fails the test instead of hanging it; whatever the script throws is kept for the
// test to report.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>

#include "foundation/socket.h"
#include "tests/client/scripted_session.h"

class PeerConnection {
 public:
  explicit PeerConnection(AFCServerSocket& server) {
    server.accept(socket_);
    socket_.setTimeLimit(5000);
    socket_.setBlocking(false);  // so that reads wait within the time limit
  }

  WrittenPacket readPacket() {
    uint8_t bytes[VXPacketFrame::kHeaderSize];
    socket_.readExact(bytes, sizeof bytes);
    const VXPacketFrame::Header header = VXPacketFrame::decodeHeader(bytes);
    WrittenPacket packet{header.type, Bytes(header.length)};
    if (!packet.payload.empty()) socket_.readExact(packet.payload.data(), packet.payload.size());
    return packet;
  }
  // Reads packets until one of the type comes; the ones before it are returned too, in order.
  std::vector<WrittenPacket> readUntil(uint32_t type) {
    std::vector<WrittenPacket> packets;
    do {
      packets.push_back(readPacket());
    } while (packets.back().type != type);
    return packets;
  }
  void send(const Bytes& bytes) { socket_.writeAll(bytes.data(), bytes.size()); }
  void close() { socket_.close(); }
  // Holds the connection until the client closes it, ignoring what it sends.
  void waitForClose() {
    if (!socket_.isOpen()) return;
    try {
      for (;;) readPacket();
    } catch (const AFCSocketDisconnectedException&) {
    }
  }

 private:
  AFCClientSocket socket_;
};

class LoopbackPeer {
 public:
  using Script = std::function<void(PeerConnection&)>;

  LoopbackPeer() {
    server_.setTimeLimit(5000);
    server_.bind(0, "127.0.0.1");
    server_.listen();
  }
  ~LoopbackPeer() { join(); }

  int port() const { return server_.getLocalPort(); }
  std::string address() const { return "127.0.0.1:" + std::to_string(port()); }

  // Accepts the next connection and runs the script on it, on the peer's thread.
  void serve(Script script) {
    join();
    thread_ = std::thread([this, script = std::move(script)] {
      try {
        PeerConnection connection(server_);
        script(connection);
        // A server does not hang up by itself: the connection stays until the client closes.
        connection.waitForClose();
      } catch (const std::exception& e) {
        failure_ = e.what();
      }
    });
  }
  // Waits for the script to end; a failure in it fails the test.
  void join() {
    if (thread_.joinable()) thread_.join();
    EXPECT_EQ(failure_, "") << "the scripted peer failed";
    failure_.clear();
  }

 private:
  AFCServerSocket server_;
  std::thread thread_;
  std::string failure_;
};

// The version reply of a server that asks for no login (2295 beta 6).
inline Bytes noLoginVersion() { return versionReply(2295, 106); }
