#pragma once
// The far side of the transport benchmarks when no real server is wanted: a plain reader on a
// loopback socket and its own thread, reading and writing the frame directly. It is the raw
// baseline that the session's figures are compared with.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

#include "client/packet_frame.h"
#include "commands/zone_state.h"
#include "foundation/persistent_stream.h"
#include "foundation/socket.h"

inline std::vector<uint8_t> packet(uint32_t type, const uint8_t* payload, std::size_t size) {
  std::vector<uint8_t> bytes(VXPacketFrame::kHeaderSize + size);
  VXPacketFrame::encodeHeader(bytes.data(),
                              {VXPacketFrame::kMagic, type, static_cast<uint32_t>(size)});
  if (size > 0) std::memcpy(bytes.data() + VXPacketFrame::kHeaderSize, payload, size);
  return bytes;
}

// The answer to a version query (packet 5): a version that asks for no login.
inline void sendVersionReply(AFCClientSocket& peer) {
  uint8_t version[20] = {};
  VXPacketFrame::putWord(version + 12, 2295);
  VXPacketFrame::putWord(version + 16, 106);
  const auto reply = packet(6, version, sizeof version);
  peer.writeAll(reply.data(), reply.size());
}

// One client of a loopback listener, served on a thread of its own: serve gets the accepted
// socket (Nagle off) and returns or throws an AFCException when the client goes away. Declare it
// as the owner's last member, so that the thread ends before the owner's state goes.
class ServingThread {
 public:
  explicit ServingThread(std::function<void(AFCClientSocket&)> serve) {
    server_.bind(0, "127.0.0.1");
    server_.listen();
    thread_ = std::thread([this, serve = std::move(serve)] {
      AFCClientSocket peer;
      server_.accept(peer);
      peer.setNagleBuffer(false);
      try {
        serve(peer);
      } catch (const AFCException&) {
        // the client went away: the benchmark is over
      }
    });
  }
  ~ServingThread() { thread_.join(); }
  int port() const { return server_.getLocalPort(); }

 private:
  AFCServerSocket server_;
  std::thread thread_;
};

// The far side: reads whole packets from a big buffer, answers 5 with a version that asks for
// no login and 3 with 4 carrying the same payload, and counts everything else.
class PlainServer {
 public:
  int port() const { return serving_.port(); }
  uint64_t packets() const { return packets_.load(std::memory_order_acquire); }

 private:
  void run(AFCClientSocket& peer) {
    std::vector<uint8_t> in(1 << 20);
    std::size_t have = 0;
    for (;;) {
      have += peer.readAvailable(in.data() + have, in.size() - have);
      std::size_t at = 0;
      while (have - at >= VXPacketFrame::kHeaderSize) {
        const VXPacketFrame::Header header = VXPacketFrame::decodeHeader(in.data() + at);
        if (have - at - VXPacketFrame::kHeaderSize < header.length) break;
        answer(peer, header.type, in.data() + at + VXPacketFrame::kHeaderSize, header.length);
        at += VXPacketFrame::kHeaderSize + header.length;
      }
      std::memmove(in.data(), in.data() + at, have - at);
      have -= at;
    }
  }
  void answer(AFCClientSocket& peer, uint32_t type, const uint8_t* payload, uint32_t size) {
    packets_.fetch_add(1, std::memory_order_release);
    if (type == 5) {
      sendVersionReply(peer);
    } else if (type == 3) {
      const auto reply = packet(4, payload, size);
      peer.writeAll(reply.data(), reply.size());
    }
  }

  std::atomic<uint64_t> packets_{0};
  ServingThread serving_{[this](AFCClientSocket& peer) { run(peer); }};
};

// A raw socket connected to a plain server of its own.
struct Raw {
  Raw() {
    socket.setTimeLimit(5000);
    socket.connect("127.0.0.1", server.port());
    socket.setNagleBuffer(false);
  }
  ~Raw() { socket.close(); }
  PlainServer server;
  AFCClientSocket socket;
};

// Waits until the reader has taken in every packet sent, so that the time covers delivery.
template <class Server>
void drain(const Server& server, uint64_t expected) {
  while (server.packets() < expected) std::this_thread::yield();
}

inline double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

// Round-trip times (us) of zone-state queries for "LowerThirds" over a raw socket: one send, then
// the header and the payload read apart, as a plain client does.
inline std::vector<double> rawRoundTrips(int count) {
  Raw raw;
  VXZonesState zones;
  zones.set("LowerThirds", false);
  AFCPersistentOutputStreamBuffer out;
  zones.write(out);
  const auto request = packet(3, out.getBuffer().data(), out.getBuffer().size());
  std::vector<uint8_t> reply(request.size());
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    const auto t0 = std::chrono::steady_clock::now();
    raw.socket.writeAll(request.data(), request.size());
    raw.socket.readExact(reply.data(), 12);
    raw.socket.readExact(reply.data() + 12, reply.size() - 12);
    times.push_back(
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - t0).count());
  }
  return times;
}
