#include "automation/client_object.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "automation/async_processor.h"
#include "client/client_exceptions.h"
#include "client/register.h"
#include "tests/automation/script_recorder.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"
#include "tests/vxsim/running_server.h"

namespace {
using namespace std::chrono_literals;

// A client object connected to a simulator on loopback, its events pumped through its async
// processor by the test thread.
class ClientObjectTest : public testing::Test {
 protected:
  void SetUp() override {
    registerClientClasses();
    processor = client.createAsyncProcessor();
    client.setServerAddress(server.address());
    ASSERT_TRUE(client.connect());
    for (const char* name : {"a", "b"}) {
      client.getEvents().connect(std::make_shared<RecordingSink>(&log, name));
    }
  }
  bool pumpUntil(const std::function<bool()>& done) {
    const auto deadline = std::chrono::steady_clock::now() + 3s;
    while (!done() && std::chrono::steady_clock::now() < deadline) {
      processor->getRegistry().mainLoop(10);
    }
    return done();
  }
  bool pumpUntilLogged(std::size_t count) {
    return pumpUntil([&] { return log.size() >= count; });
  }

  RunningServer server;
  CClient client;
  std::shared_ptr<CAsyncProcessor> processor;
  std::vector<std::string> log;
};

TEST_F(ClientObjectTest, HandlersAndEventsComeInTheirOrders) {
  client.setOnPickResultListener(std::make_shared<RecordingHandler>(&log, "pick"));
  client.setOnMessageListener(std::make_shared<RecordingHandler>(&log, "message"));
  client.setOnDisconnectListener(std::make_shared<RecordingHandler>(&log, "gone"));
  const struct {
    const char* console;
    std::vector<std::string> expected;
  } cases[] = {
      {"pick <p/>", {"pick(<p/>)", "a.pick <p/>", "b.pick <p/>"}},
      {"message hello", {"a.message hello", "b.message hello", "message(hello)"}},
      {"drop", {"gone()", "a.disconnect", "b.disconnect"}},
  };
  for (const auto& c : cases) {
    log.clear();
    server.console(c.console);
    EXPECT_TRUE(pumpUntilLogged(c.expected.size())) << c.console;
    EXPECT_EQ(log, c.expected) << c.console;
  }
}

TEST_F(ClientObjectTest, ReplacedOrClearedHandlersAreNotCalledAndAFailedMessageHandlerIsLogged) {
  client.setOnPickResultListener(std::make_shared<RecordingHandler>(&log, "old"));
  client.setOnPickResultListener(nullptr);
  client.setOnMessageListener(std::make_shared<RecordingHandler>(&log, "message", true));
  CapturedErrLog errors;
  server.console("pick <p/>");
  server.console("message m");
  ASSERT_TRUE(pumpUntilLogged(5));
  EXPECT_EQ(log, (std::vector<std::string>{"a.pick <p/>", "b.pick <p/>", "a.message m",
                                           "b.message m", "message(m)"}));
  const auto messages = errors.messages();
  EXPECT_NE(std::find(messages.begin(), messages.end(), "onMessageListener failed"),
            messages.end());
}

TEST_F(ClientObjectTest, ZoneChangesOfARegisteredZoneBecomeEvents) {
  client.addZoneNotification("LowerThirds");
  server.console("zone Other on");
  server.console("zone LowerThirds on");
  ASSERT_TRUE(pumpUntilLogged(2));
  EXPECT_EQ(log, (std::vector<std::string>{"a.zone LowerThirds 1", "b.zone LowerThirds 1"}));
}

TEST_F(ClientObjectTest, RemoteCallsTakeAndGiveScriptValues) {
  const int32_t first = client.previewGenerateID();
  EXPECT_EQ(client.previewGenerateID(), first + 1);
  client.previewSchedule(first);
  client.getSession().createNode("Group", "t1", "Root");
  client.roaSet("Root/t1", "Visible", ScriptValue::boolean(true));
  const ScriptValue visible = client.roaGet("Root/t1", "Visible");
  EXPECT_EQ(visible.getKind(), ScriptValue::Kind::Bool);
  EXPECT_EQ(visible.getBoolWord(), 1);
  const ScriptValue images =
      client.roaCall("::Preview", "getSequenceImageFile",
                     {ScriptValue::integer(first), ScriptValue::text(u"shot.png")});
  EXPECT_EQ(images.getInt32(), 1);
  EXPECT_EQ(client.previewGetSequenceImageFiles(first, "shot.png"), 1);

  client.sendPickRequestTag("t1");
  ASSERT_TRUE(pumpUntilLogged(2));
  EXPECT_EQ(log[0],
            "a.pick <?xml version=\"1.0\"?><pick tag=\"t1\"><node path=\"Root/t1\"/></pick>");
  EXPECT_EQ(failureOf<AFCException>([&] { client.roaGet("Root/none", "Text"); }),
            "Remote exception: object Root/none not found!");
}

TEST_F(ClientObjectTest, ZoneStateIsSetAndReadThroughTheSession) {
  for (const int32_t state : {7, 0}) {
    client.setZoneState("Main", state);
    EXPECT_EQ(client.getZoneState("Main"), state != 0 ? 1 : 0);
  }
}

TEST_F(ClientObjectTest, TheAsyncProcessorIsMadeOnceAndOnlyBeforeConnecting) {
  EXPECT_EQ(client.createAsyncProcessor(), processor);
  CClient other;
  other.setServerAddress(server.address());
  ASSERT_TRUE(other.connect());
  EXPECT_EQ(failureOf<VXClientException>([&] { other.createAsyncProcessor(); }),
            "Cannot change AsyncRegistry while client is open");
}

TEST_F(ClientObjectTest, TheProcessorLoopDeliversMessagesUntilClosedFromAnotherThread) {
  // The closing thread watches the count, so it is atomic.
  std::atomic<int> delivered = 0;
  struct Counter : ScriptHandler {
    explicit Counter(std::atomic<int>* count) : count_(count) {}
    bool invoke(std::span<const ScriptValue>) override { return ++*count_ > 0; }
    std::atomic<int>* count_;
  };
  client.setOnMessageListener(std::make_shared<Counter>(&delivered));
  server.console("message-burst 50 m");
  std::atomic<bool> closed = false;
  std::thread closer([&] {
    const auto deadline = std::chrono::steady_clock::now() + 5s;
    while (delivered < 50 && std::chrono::steady_clock::now() < deadline) {
      std::this_thread::sleep_for(1ms);
    }
    processor->close();
    closed = true;
  });
  while (processor->waitEvent()) processor->process();
  closer.join();
  EXPECT_TRUE(closed);
  EXPECT_EQ(delivered, 50);
}

TEST(ClientObject, AWrongPasswordFailsTheConnect) {
  registerClientClasses();
  VXSimOptions options;
  options.password = "on air";
  RunningServer server(options);
  CClient client;
  client.setServerAddress(server.address());
  client.setPassword("off air");
  EXPECT_EQ(failureOf<VXClientException>([&] { client.connect(); }), "Incorrect password.");
}

}  // namespace
