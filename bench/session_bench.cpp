// The session over loopback TCP against raw sockets doing the same work in the same run:
//   request_rtt       zone-state query round trips, then raw ping-pongs of the same sizes, one
//                     connection at a time; figures: both medians (us) and their ratio
//                     (target <= 1.15)
//   single_command    one-command actions sent outside any bracket, against one raw send() per
//                     packet of the same bytes; the ratio is time per packet (target <= 1.25,
//                     that is at least 0.8 of the raw packet rate)
//   batched_commands  100-command actions (set-attribute, Vec3f and WString values) framed and
//                     sent; figure: commands per second taken in by a plain reader (target >= 3e6)
// The far side is a plain reader on its own thread: it answers version queries and zone-state
// queries and counts what it receives.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <thread>
#include <vector>

#include "client/client_tcp.h"
#include "client/register.h"
#include "commands/node_commands.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/socket.h"

namespace {

constexpr uint32_t kMagic = 0x56585001;

void putWord(uint8_t* p, uint32_t v) {
  p[0] = static_cast<uint8_t>(v >> 24), p[1] = static_cast<uint8_t>(v >> 16);
  p[2] = static_cast<uint8_t>(v >> 8), p[3] = static_cast<uint8_t>(v);
}
uint32_t getWord(const uint8_t* p) {
  return uint32_t{p[0]} << 24 | uint32_t{p[1]} << 16 | uint32_t{p[2]} << 8 | p[3];
}
std::vector<uint8_t> packet(uint32_t type, const uint8_t* payload, std::size_t size) {
  std::vector<uint8_t> bytes(12 + size);
  putWord(bytes.data(), kMagic);
  putWord(bytes.data() + 4, type);
  putWord(bytes.data() + 8, static_cast<uint32_t>(size));
  if (size > 0) std::memcpy(bytes.data() + 12, payload, size);
  return bytes;
}

// The far side: reads whole packets from a big buffer, answers 5 with a version that asks for
// no login and 3 with 4 carrying the same payload, and counts everything else.
class PlainServer {
 public:
  PlainServer() {
    server_.bind(0, "127.0.0.1");
    server_.listen();
    thread_ = std::thread([this] { run(); });
  }
  ~PlainServer() { thread_.join(); }
  int port() const { return server_.getLocalPort(); }
  uint64_t packets() const { return packets_.load(std::memory_order_acquire); }

 private:
  void run() {
    AFCClientSocket peer;
    server_.accept(peer);
    peer.setNagleBuffer(false);
    std::vector<uint8_t> in(1 << 20);
    std::size_t have = 0;
    try {
      for (;;) {
        have += peer.readAvailable(in.data() + have, in.size() - have);
        std::size_t at = 0;
        while (have - at >= 12 && have - at >= 12 + getWord(in.data() + at + 8)) {
          answer(peer, getWord(in.data() + at + 4), in.data() + at + 12,
                 getWord(in.data() + at + 8));
          at += 12 + getWord(in.data() + at + 8);
        }
        std::memmove(in.data(), in.data() + at, have - at);
        have -= at;
      }
    } catch (const AFCException&) {
      // the client went away: the benchmark is over
    }
  }
  void answer(AFCClientSocket& peer, uint32_t type, const uint8_t* payload, uint32_t size) {
    packets_.fetch_add(1, std::memory_order_release);
    if (type == 5) {
      uint8_t version[20] = {};
      putWord(version + 12, 2295);
      putWord(version + 16, 106);
      const auto reply = packet(6, version, sizeof version);
      peer.writeAll(reply.data(), reply.size());
    } else if (type == 3) {
      const auto reply = packet(4, payload, size);
      peer.writeAll(reply.data(), reply.size());
    }
  }

  AFCServerSocket server_;
  std::thread thread_;
  std::atomic<uint64_t> packets_{0};
};

class BenchSession : public VXClientTcp {
 public:
  using VXClientPacket::sendAction;
};

struct Connected {
  Connected() {
    registerClientClasses();
    session.setServerAddress("127.0.0.1:" + std::to_string(server.port()));
    session.connect();
  }
  ~Connected() { session.close(); }
  PlainServer server;
  BenchSession session;
};

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

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

using Clock = std::chrono::steady_clock;
constexpr int kRoundTrips = 5000;

// Round-trip times (us) of zone-state queries through the session.
std::vector<double> sessionRoundTrips() {
  Connected c;
  VXZonesState zones;
  zones.set("LowerThirds", false);
  std::vector<double> times;
  for (int i = 0; i < kRoundTrips; ++i) {
    const auto t0 = Clock::now();
    c.session.getZoneState1(zones);
    times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - t0).count());
  }
  return times;
}

// The same bytes over a raw socket: one send, then the header and the payload read apart, as a
// plain client does.
std::vector<double> rawRoundTrips() {
  Raw raw;
  VXZonesState zones;
  zones.set("LowerThirds", false);
  AFCPersistentOutputStreamBuffer out;
  zones.write(out);
  const auto request = packet(3, out.getBuffer().data(), out.getBuffer().size());
  std::vector<uint8_t> reply(request.size());
  std::vector<double> times;
  for (int i = 0; i < kRoundTrips; ++i) {
    const auto t0 = Clock::now();
    raw.socket.writeAll(request.data(), request.size());
    raw.socket.readExact(reply.data(), 12);
    raw.socket.readExact(reply.data() + 12, reply.size() - 12);
    times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - t0).count());
  }
  return times;
}

// One connection at a time: with two idle connections open, whichever was made second paid
// several times the wake-up cost on these machines, whichever kind it was.
void BM_request_rtt(benchmark::State& state) {
  double sessionP50 = 0, plainP50 = 0;
  for (auto _ : state) {
    sessionP50 = median(sessionRoundTrips());
    plainP50 = median(rawRoundTrips());
  }
  state.counters["figure_request_rtt_p50_us"] = sessionP50;
  state.counters["figure_raw_rtt_p50_us"] = plainP50;
  state.counters["figure_request_rtt_p50_ratio"] = sessionP50 / plainP50;
}

std::unique_ptr<AFCAttribute> value(int i) {
  if (i % 2 == 0) {
    auto vec = std::make_unique<AFCAttributeVec3f>();
    for (int c = 0; c < 3; ++c) vec->setChannelValue(c, i + c);
    return vec;
  }
  return std::make_unique<AFCAttributeWString>(u"Headline " + std::u16string(1, u'A' + i % 26));
}

std::string target(int i) { return "Root/_Br5_Title_1/t" + std::to_string(100 + i % 900); }

// Waits until the reader has taken in every packet sent, so that the time covers delivery.
void drain(const PlainServer& server, uint64_t expected) {
  while (server.packets() < expected) std::this_thread::yield();
}

void BM_single_command(benchmark::State& state) {
  Connected c;
  const uint64_t before = c.server.packets();
  for (auto _ : state) c.session.setAttribute(target(1), "Position", value(0));
  drain(c.server, before + state.iterations());
  state.counters["figure_single_command_packets_per_s"] =
      benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

// The same bytes as one action of the session above, one send() each.
void BM_single_command_baseline(benchmark::State& state) {
  Raw raw;
  VXImmediateAction action;
  action.addCommand(std::make_unique<VXSetAttributeCommand>(target(1), "Position", value(0)));
  AFCPersistentOutputStreamBuffer out;
  out.writeObject(&action);
  const auto bytes = packet(0, out.getBuffer().data(), out.getBuffer().size());
  for (auto _ : state) raw.socket.writeAll(bytes.data(), bytes.size());
  drain(raw.server, state.iterations());
}

void BM_batched_commands(benchmark::State& state) {
  Connected c;
  VXImmediateAction action;
  for (int i = 0; i < 100; ++i) {
    action.addCommand(
        std::make_unique<VXSetAttributeCommand>(target(i), i % 2 ? "Text" : "Position", value(i)));
  }
  const uint64_t before = c.server.packets();
  for (auto _ : state) c.session.sendAction(action);
  drain(c.server, before + state.iterations());
  state.counters["figure_batched_commands_per_s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * 100, benchmark::Counter::kIsRate);
}

}  // namespace

BENCHMARK(BM_request_rtt)->UseRealTime()->Iterations(1);
BENCHMARK(BM_single_command)->UseRealTime();
BENCHMARK(BM_single_command_baseline)->UseRealTime();
BENCHMARK(BM_batched_commands)->UseRealTime();
