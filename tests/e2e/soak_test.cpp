// A long run of the client session against the simulator's server over loopback: 100,000
// actions of every shape (single records, small brackets, callbacks, zone switches) go out while
// the server thread broadcasts 10,000 numbered messages, and zone-state queries are made in
// between. Nothing may be lost, reordered or answered wrongly on either side: every message and
// callback arrives once and in order, every query gets the state its own earlier actions set,
// and the scene holds exactly what was sent. A second session watches the zone: a zone
// notification travels as packet 4 like the reply to a query, and nothing in the packet tells
// them apart, so the querying session must not be registered for zones.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "client/client_tcp.h"
#include "client/listeners.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/vxsim/running_server.h"

namespace {

constexpr int kActions = 100000;
constexpr int kBursts = 10;  // of server messages, spread over the run
constexpr int kPerBurst = 1000;
constexpr int kMessages = kPerBurst * kBursts;
constexpr int kQueryEvery = 100;  // actions between two zone-state queries
constexpr int kNodes = 100;       // that the actions' attributes go to
constexpr const char* kZone = "Soak";

std::string nodeOf(int action) { return "Root/soak/n" + std::to_string(action / 10 % kNodes); }

// The text of server message number n: bursts are prefixed "b<burst>:" and count from 0 each.
std::string messageText(int n) {
  return "b" + std::to_string(n / kPerBurst) + ":" + std::to_string(n % kPerBurst);
}

// What reached the client, in arrival order. Called only on the test's thread: it pumps the
// registry and makes the requests that dispatch what comes before their replies.
struct Received : VXServerMessageListener, VXCallbackCommandListener, VXZoneStateListener {
  std::vector<std::string> messages;
  std::vector<int32_t> callbacks;
  std::vector<bool> zoneStates;
  void onMessage(const std::string& text) override { messages.push_back(text); }
  void onCommandCallback(int32_t id) override { callbacks.push_back(id); }
  void onZoneStateChange(const VXZonesState& zones) override {
    zoneStates.push_back(zones.get(kZone));
  }
};

// What the test sent, to hold the client's and the scene's view against.
struct Sent {
  std::vector<int32_t> callbacks;
  std::map<std::string, int32_t> counts;  // node address: last "Count" value set
  std::map<std::string, std::string> labels;
  std::vector<bool> zoneStates;
  int64_t waits = 0;
  std::vector<std::string> messages;  // message records, applied on the server
};

class Soak : public ::testing::Test {
 protected:
  void SetUp() override {
    session_.setServerAddress(server_.address());
    session_.setAsyncRegistry(&handler_);
    session_.addServerMessageListener(&received_);
    session_.addCommandCallbackListener(&received_);
    ASSERT_TRUE(session_.connect());
    watcher_.setServerAddress(server_.address());
    watcher_.setAsyncRegistry(&handler_);
    watcher_.addZoneNotifyListener(kZone, &watched_);
    watcher_.addServerMessageListener(&watched_);
    ASSERT_TRUE(watcher_.connect());
    session_.beginImmediate(false);
    session_.createNode("Group", "soak", "Root");
    for (int i = 0; i < kNodes; ++i)
      session_.createNode("Text", "n" + std::to_string(i), "Root/soak");
    session_.end();
  }
  void TearDown() override {
    session_.close();
    watcher_.close();
  }

  void setCount(int i) {
    session_.setAttribute(nodeOf(i), "Count", std::make_unique<AFCAttributeInt32>(i));
    sent_.counts[nodeOf(i)] = i;
  }
  void sendAction(int i);
  // A zone-state query; its answer must be the state the last zone switch sent asked for. Then
  // what the watcher has got is dispatched, so its socket never fills.
  void queryZone();
  // A last callback behind everything, then the registry pumped until it, every message and
  // every zone notification came.
  bool drain();

  RunningServer server_;
  AFCFDHandlerEvent handler_;
  VXClientTcp session_;
  VXClientTcp watcher_;
  Received received_;
  Received watched_;  // the watcher's zone notifications (and the broadcast messages)
  Sent sent_;
  int wrongZoneAnswers_ = 0;
};

void Soak::sendAction(int i) {
  switch (i % 10) {
    case 5:
      session_.wait(1);
      sent_.waits += 1;
      return;
    case 6:
      session_.beginImmediate(false);
      setCount(i);
      session_.wait(2);
      sent_.callbacks.push_back(session_.commandCallback());
      session_.end();
      sent_.waits += 2;
      return;
    case 7:
      sent_.callbacks.push_back(session_.commandCallback());
      return;
    case 8: {
      const std::string label = "label " + std::to_string(i);
      session_.beginImmediate(false);
      session_.sendMessage("s" + std::to_string(i));
      session_.setAttribute(
          nodeOf(i), "Label",
          std::make_unique<AFCAttributeWString>(std::u16string(label.begin(), label.end())));
      session_.wait(3);
      session_.end();
      sent_.messages.push_back("s" + std::to_string(i));
      sent_.labels[nodeOf(i)] = label;
      sent_.waits += 3;
      return;
    }
    case 9:
      if (i % kQueryEvery == kQueryEvery / 2 - 1) {
        VXZonesState zones;
        zones.set(kZone, i / kQueryEvery % 2 == 0);
        session_.setZoneState(zones);
        sent_.zoneStates.push_back(zones.get(kZone));
        return;
      }
      [[fallthrough]];
    default:
      setCount(i);
  }
}

void Soak::queryZone() {
  VXZonesState asked;
  asked.set(kZone, !sent_.zoneStates.back());
  session_.getZoneState1(asked);
  if (asked.size() != 1 || asked.get(kZone) != sent_.zoneStates.back()) ++wrongZoneAnswers_;
  handler_.mainLoop(0);
}

bool Soak::drain() {
  const int32_t last = session_.commandCallback();
  sent_.callbacks.push_back(last);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  const auto done = [&] {
    return !received_.callbacks.empty() && received_.callbacks.back() == last &&
           received_.messages.size() >= static_cast<std::size_t>(kMessages) &&
           watched_.messages.size() >= static_cast<std::size_t>(kMessages) &&
           watched_.zoneStates.size() >= sent_.zoneStates.size();
  };
  while (!done() && std::chrono::steady_clock::now() < deadline) handler_.mainLoop(10);
  return done();
}

// The index of the first entry where the lists differ, or -1 when they are equal.
template <class T>
long firstDifference(const std::vector<T>& got, const std::vector<T>& wanted) {
  const std::size_t common = std::min(got.size(), wanted.size());
  for (std::size_t i = 0; i < common; ++i) {
    if (got[i] != wanted[i]) return static_cast<long>(i);
  }
  return got.size() == wanted.size() ? -1 : static_cast<long>(common);
}

TEST_F(Soak, EveryActionIsAppliedAndEveryEventArrivesOnceInOrder) {
  const int burstEvery = kActions / kBursts;
  for (int i = 0; i < kActions; ++i) {
    if (i % burstEvery == 0) {
      server_.console("message-burst " + std::to_string(kPerBurst) + " b" +
                      std::to_string(i / burstEvery) + ":");
    }
    sendAction(i);
    if (i % kQueryEvery == kQueryEvery - 1) queryZone();
  }
  ASSERT_TRUE(drain()) << received_.callbacks.size() << " of " << sent_.callbacks.size()
                       << " callbacks and " << received_.messages.size() << " of " << kMessages
                       << " messages arrived; the watcher got " << watched_.messages.size()
                       << " messages and " << watched_.zoneStates.size() << " of "
                       << sent_.zoneStates.size() << " zone notifications";

  std::vector<std::string> messages;
  for (int n = 0; n < kMessages; ++n) messages.push_back(messageText(n));
  EXPECT_EQ(firstDifference(received_.messages, messages), -1);
  EXPECT_EQ(firstDifference(received_.callbacks, sent_.callbacks), -1);
  EXPECT_EQ(firstDifference(watched_.messages, messages), -1);
  EXPECT_EQ(firstDifference(watched_.zoneStates, sent_.zoneStates), -1);
  EXPECT_TRUE(received_.zoneStates.empty());
  EXPECT_EQ(wrongZoneAnswers_, 0);

  server_.stop();
  const VXSimScene& scene = server_.hub().getScene();
  EXPECT_EQ(scene.find("Root/soak")->children.size(), static_cast<std::size_t>(kNodes));
  for (const auto& [address, count] : sent_.counts) {
    EXPECT_EQ(scene.find(address)->attributes.at("Count")->toString(), std::to_string(count))
        << address;
  }
  for (const auto& [address, label] : sent_.labels) {
    EXPECT_EQ(scene.find(address)->attributes.at("Label")->toString(), label) << address;
  }
  EXPECT_EQ(scene.getWaitTotal(), sent_.waits);
  EXPECT_EQ(firstDifference(scene.getMessages(), sent_.messages), -1);
  EXPECT_EQ(scene.getZones().get(kZone), sent_.zoneStates.back());
}

}  // namespace
