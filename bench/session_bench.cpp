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

#include "bench/plain_server.h"
#include "client/client_tcp.h"
#include "client/register.h"
#include "commands/node_commands.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/socket.h"

namespace {

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

// One connection at a time: with two idle connections open, whichever was made second paid
// several times the wake-up cost on these machines, whichever kind it was.
void BM_request_rtt(benchmark::State& state) {
  double sessionP50 = 0, plainP50 = 0;
  for (auto _ : state) {
    sessionP50 = median(sessionRoundTrips());
    plainP50 = median(rawRoundTrips(kRoundTrips));
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
