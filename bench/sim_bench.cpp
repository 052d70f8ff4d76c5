// The simulator serving the client session over loopback TCP, its server on a thread of this
// process, against raw sockets doing the same transport work in the same run:
//   sim_single_command  one-command actions from the session applied in the simulator, then one
//                       raw send() per packet of the same bytes to a plain reader; figure: the
//                       simulator's rate relative to the raw one (target >= 0.6)
//   sim_batched         100-command actions applied in the simulator; figure: commands applied
//                       per second (target >= 1e6), next to the raw rate of the same packets
//   sim_zone_rtt        zone-state query round trips through the session to the simulator, then
//                       raw ping-pongs of the same sizes with a plain server; figures: both
//                       medians (us) and their ratio (target <= 1.3)
//   sim_memory          100,000 nodes with 5 attributes each applied to a scene; figure: the
//                       growth of resident memory in MiB (Linux only)
// "Applied" is measured up to the reply of a zone-state query sent behind the actions: the
// simulator serves a connection's packets in order, so the reply comes once all are applied.
// Every measurement is one pass of a fixed size (Iterations(1)); repetitions give the medians.
#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "bench/plain_server.h"
#include "client/client_tcp.h"
#include "client/register.h"
#include "commands/action.h"
#include "commands/node_commands.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/fd_handler.h"
#include "tools/vxsim/sim_server.h"

#ifdef __linux__
#include <malloc.h>
#include <unistd.h>

#include <fstream>
#endif

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kSingleActions = 20000;
constexpr int kBatchedActions = 2000;
constexpr int kBatchSize = 100;
constexpr int kRoundTrips = 5000;
constexpr int kTargets = 900;

double seconds(Clock::time_point since) {
  return std::chrono::duration<double>(Clock::now() - since).count();
}

// The simulator's server on 127.0.0.1 and a thread of its own, as the program runs it.
struct SimThread {
  SimThread() : port(server.listen("127.0.0.1", 0)), thread([this] { server.run(); }) {}
  ~SimThread() {
    server.stop();
    thread.join();
  }
  VXSimHub hub;
  AFCFDHandlerEvent handler;
  VXSimServer server{hub, handler};
  int port;
  std::thread thread;
};

class BenchSession : public VXClientTcp {
 public:
  using VXClientPacket::sendAction;
};

std::string target(int i) { return "Root/_Br5_Title_1/t" + std::to_string(100 + i % kTargets); }

std::unique_ptr<AFCAttribute> value(int i) {
  if (i % 2 == 0) {
    auto vec = std::make_unique<AFCAttributeVec3f>();
    for (int c = 0; c < 3; ++c) vec->setChannelValue(c, static_cast<float>(i + c));
    return vec;
  }
  return std::make_unique<AFCAttributeWString>(u"Headline " + std::u16string(1, u'A' + i % 26));
}

// A session connected to a simulator that holds every target node.
struct SimConnected {
  SimConnected() {
    registerClientClasses();
    session.setServerAddress("127.0.0.1:" + std::to_string(sim.port));
    session.connect();
    session.beginImmediate(false);
    session.createNode("Group", "_Br5_Title_1", "Root");
    for (int i = 0; i < kTargets; ++i)
      session.createNode("Text", "t" + std::to_string(100 + i), "Root/_Br5_Title_1");
    session.end();
    sync();
  }
  ~SimConnected() { session.close(); }
  // Returns once the simulator has served everything sent before.
  void sync() {
    VXZonesState zones;
    zones.set("LowerThirds", false);
    session.getZoneState1(zones);
  }
  SimThread sim;
  BenchSession session;
};

// The bytes of one action packet as the session frames it for this server.
std::vector<uint8_t> actionPacket(const VXAction& action, uint32_t version) {
  AFCPersistentOutputStreamBuffer out(version);
  out.writeObject(&action);
  return packet(0, out.getBuffer().data(), out.getBuffer().size());
}

// Packets per second of one raw send() each, until the plain reader has taken them all in.
double rawPacketRate(const std::vector<uint8_t>& bytes, int count) {
  Raw raw;
  const auto t0 = Clock::now();
  for (int i = 0; i < count; ++i) raw.socket.writeAll(bytes.data(), bytes.size());
  drain(raw.server, static_cast<uint64_t>(count));
  return count / seconds(t0);
}

void BM_sim_single_command(benchmark::State& state) {
  double simRate = 0, rawRate = 0;
  for (auto _ : state) {
    std::vector<uint8_t> bytes;
    {
      SimConnected c;
      VXImmediateAction action;
      action.addCommand(std::make_unique<VXSetAttributeCommand>(target(1), "Position", value(0)));
      bytes = actionPacket(action, c.session.getCombinedVersion());
      const auto t0 = Clock::now();
      for (int i = 0; i < kSingleActions; ++i)
        c.session.setAttribute(target(1), "Position", value(0));
      c.sync();
      simRate = kSingleActions / seconds(t0);
    }
    rawRate = rawPacketRate(bytes, kSingleActions);
  }
  state.counters["figure_sim_single_command_per_s"] = simRate;
  state.counters["figure_raw_single_packet_per_s"] = rawRate;
  state.counters["figure_sim_single_command_ratio"] = simRate / rawRate;
}

void BM_sim_batched(benchmark::State& state) {
  double simRate = 0, rawRate = 0;
  VXImmediateAction action;
  for (int i = 0; i < kBatchSize; ++i) {
    action.addCommand(
        std::make_unique<VXSetAttributeCommand>(target(i), i % 2 ? "Text" : "Position", value(i)));
  }
  for (auto _ : state) {
    std::vector<uint8_t> bytes;
    {
      SimConnected c;
      bytes = actionPacket(action, c.session.getCombinedVersion());
      const auto t0 = Clock::now();
      for (int i = 0; i < kBatchedActions; ++i) c.session.sendAction(action);
      c.sync();
      simRate = kBatchedActions * kBatchSize / seconds(t0);
    }
    rawRate = rawPacketRate(bytes, kBatchedActions) * kBatchSize;
  }
  state.counters["figure_sim_batched_commands_per_s"] = simRate;
  state.counters["figure_raw_batched_commands_per_s"] = rawRate;
}

// One connection at a time, as in the session benchmarks: a second idle connection skews
// whichever is measured second.
void BM_sim_zone_rtt(benchmark::State& state) {
  double simP50 = 0, rawP50 = 0;
  for (auto _ : state) {
    std::vector<double> times;
    {
      SimConnected c;
      VXZonesState zones;
      zones.set("LowerThirds", false);
      for (int i = 0; i < kRoundTrips; ++i) {
        const auto t0 = Clock::now();
        c.session.getZoneState1(zones);
        times.push_back(seconds(t0) * 1e6);
      }
    }
    simP50 = median(times);
    rawP50 = median(rawRoundTrips(kRoundTrips));
  }
  state.counters["figure_sim_zone_rtt_p50_us"] = simP50;
  state.counters["figure_raw_zone_rtt_p50_us"] = rawP50;
  state.counters["figure_sim_zone_rtt_p50_ratio"] = simP50 / rawP50;
}

BENCHMARK(BM_sim_single_command)->UseRealTime()->Iterations(1);
BENCHMARK(BM_sim_batched)->UseRealTime()->Iterations(1);
BENCHMARK(BM_sim_zone_rtt)->UseRealTime()->Iterations(1);

#ifdef __linux__

constexpr int kGroups = 100;
constexpr int kLeavesPerGroup = 999;  // with the groups, 100,000 nodes: the scene's limit
constexpr double kMiB = 1024.0 * 1024.0;

double residentBytes() {
  std::ifstream statm("/proc/self/statm");
  long size = 0, resident = 0;
  statm >> size >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

// Five attributes of different kinds, each through a set-attribute record as a client sends it.
void setAttributes(VXSimScene& scene, const std::string& address, int i) {
  auto position = std::make_unique<AFCAttributeVec3f>();
  for (int c = 0; c < 3; ++c) position->setChannelValue(c, static_cast<float>(i + c));
  scene.apply(VXSetAttributeCommand(address, "Position", std::move(position)));
  scene.apply(VXSetAttributeCommand(address, "Text", value(1)));
  scene.apply(VXSetAttributeCommand(address, "Alpha", std::make_unique<AFCAttributeFloat>(0.5f)));
  scene.apply(VXSetAttributeCommand(address, "Index", std::make_unique<AFCAttributeInt32>(i)));
  scene.apply(VXSetAttributeCommand(address, "Visible", std::make_unique<AFCAttributeBool>(true)));
}

void fill(VXSimScene& scene) {
  for (int g = 0; g < kGroups; ++g) {
    const std::string group = "g" + std::to_string(g);
    scene.apply(VXCreateNodeCommand("Group", group, "Root"));
    setAttributes(scene, group, g);
    for (int n = 0; n < kLeavesPerGroup; ++n) {
      const std::string leaf = "n" + std::to_string(n);
      scene.apply(VXCreateNodeCommand("Text", leaf, group));
      setAttributes(scene, group + "/" + leaf, n);
    }
  }
}

void BM_sim_memory(benchmark::State& state) {
  double growth = 0;
  for (auto _ : state) {
    malloc_trim(0);  // what an earlier repetition freed would hide the growth
    const double before = residentBytes();
    VXSimScene scene;
    fill(scene);
    growth = residentBytes() - before;
    if (scene.getRoot().countNodes() != kGroups * (kLeavesPerGroup + 1) + 1) {
      state.SkipWithError("the scene did not take every node");
    }
  }
  state.counters["figure_sim_memory_100k_nodes_mib"] = growth / kMiB;
}

BENCHMARK(BM_sim_memory)->UseRealTime()->Iterations(1);

#endif

}  // namespace
