// The title-control objects against the session they sit on, in the same run:
//   title_set        100,000 set calls with text values on one title inside one begin/end,
//                    against the same set-attribute commands built on the session's builder in
//                    one begin/end; both send one action to a reader that takes it in whole
//                    (target <= 1.25)
//   script_messages  10,000 server messages delivered through the async processor loop to a
//                    script handler, against the same messages delivered by a session to a
//                    plain listener on a descriptor handler of its own (target <= 1.2)
// The far side is a reader on its own thread: it answers the version query, takes in every
// packet whole, and answers each action with the message burst when it has one.
#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "automation/async_processor.h"
#include "automation/client_object.h"
#include "automation/title.h"
#include "automation/title_manager.h"
#include "bench/plain_server.h"
#include "client/client_tcp.h"
#include "client/register.h"
#include "foundation/attribute_string.h"

namespace {

constexpr int kSets = 100000;
constexpr int kMessages = 10000;

// Reads whole packets of any size; a burst, when given, goes out in answer to every action.
class BurstServer {
 public:
  explicit BurstServer(int messages = 0) {
    AFCPersistentOutputStreamBuffer out;
    out.writeString("headline update");
    const auto one = packet(16, out.getBuffer().data(), out.getBuffer().size());
    for (int i = 0; i < messages; ++i) burst_.insert(burst_.end(), one.begin(), one.end());
  }
  std::string address() const { return "127.0.0.1:" + std::to_string(serving_.port()); }
  uint64_t packets() const { return packets_.load(std::memory_order_acquire); }

 private:
  void run(AFCClientSocket& peer) {
    std::vector<uint8_t> payload;
    for (;;) {
      uint8_t header[12];
      peer.readExact(header, sizeof header);
      payload.resize(VXPacketFrame::getWord(header + 8));
      if (!payload.empty()) peer.readExact(payload.data(), payload.size());
      const uint32_t type = VXPacketFrame::getWord(header + 4);
      if (type == 5) sendVersionReply(peer);
      if (type == 0 && !burst_.empty()) peer.writeAll(burst_.data(), burst_.size());
      packets_.fetch_add(1, std::memory_order_release);
    }
  }

  std::vector<uint8_t> burst_;
  std::atomic<uint64_t> packets_{0};
  ServingThread serving_{[this](AFCClientSocket& peer) { run(peer); }};
};

// A manager connected to the server through its first title.
struct ManagedTitle {
  explicit ManagedTitle(const BurstServer& server, bool withProcessor = false) {
    registerClientClasses();
    if (withProcessor) processor = manager->getClient()->createAsyncProcessor();
    manager->getClient()->setServerAddress(server.address());
    title = manager->createTitle(ScriptValue::text(u"LowerThirds"));
  }
  std::shared_ptr<CTitleManager> manager = std::make_shared<CTitleManager>();
  std::shared_ptr<CAsyncProcessor> processor;
  std::shared_ptr<CTitle> title;
};

void BM_title_set(benchmark::State& state) {
  BurstServer server;
  ManagedTitle m(server);
  m.title->set("name", "Text", ScriptValue::text(u"set up"));  // the set-up goes out first
  const ScriptValue text = ScriptValue::text(u"Jane Doe, Correspondent");
  std::this_thread::sleep_for(std::chrono::milliseconds(100));  // ...and is taken in
  uint64_t expected = server.packets();
  for (auto _ : state) {
    m.title->begin();
    for (int i = 0; i < kSets; ++i) m.title->set("name", "Text", text);
    m.title->end();
    drain(server, ++expected);
  }
}

void BM_title_set_baseline(benchmark::State& state) {
  BurstServer server;
  registerClientClasses();
  VXClientTcp session;
  session.setServerAddress(server.address());
  session.connect();
  const std::string target = "Root/_Br5_Title_1/name";
  drain(server, 1);
  uint64_t expected = server.packets();
  for (auto _ : state) {
    session.beginImmediate(false);
    for (int i = 0; i < kSets; ++i) {
      session.setAttribute(target, "Text",
                           std::make_unique<AFCAttributeWString>(u"Jane Doe, Correspondent"));
    }
    session.end();
    drain(server, ++expected);
  }
  session.close();
}

struct CountingHandler : ScriptHandler {
  bool invoke(std::span<const ScriptValue> args) override {
    count += static_cast<int>(args.size());
    return true;
  }
  int count = 0;
};

void BM_script_messages(benchmark::State& state) {
  BurstServer server(kMessages);
  ManagedTitle m(server, true);
  auto handler = std::make_shared<CountingHandler>();
  m.manager->getClient()->setOnMessageListener(handler);
  VXClientTcp& session = m.manager->getClient()->getSession();
  for (auto _ : state) {
    const int target = handler->count + kMessages;
    session.commandCallback();  // an action: the server answers with the burst
    while (handler->count < target && m.processor->waitEvent()) m.processor->process();
  }
}

struct CountingListener : VXServerMessageListener {
  void onMessage(const std::string&) override { ++count; }
  int count = 0;
};

void BM_script_messages_baseline(benchmark::State& state) {
  BurstServer server(kMessages);
  registerClientClasses();
  AFCFDHandlerEvent handler;
  VXClientTcp session;
  CountingListener listener;
  session.setAsyncRegistry(&handler);
  session.addServerMessageListener(&listener);
  session.setServerAddress(server.address());
  session.connect();
  for (auto _ : state) {
    const int target = listener.count + kMessages;
    session.commandCallback();
    while (listener.count < target) handler.mainLoop(-2);
  }
  session.close();
  session.removeServerMessageListener(&listener);
}

}  // namespace

BENCHMARK(BM_title_set)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_title_set_baseline)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_script_messages)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_script_messages_baseline)->UseRealTime()->Unit(benchmark::kMillisecond);
