#include "automation/title_manager.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <regex>

#include "automation/client_object.h"
#include "automation/title.h"
#include "client/client_exceptions.h"
#include "client/register.h"
#include "foundation/errlog.h"
#include "foundation/errlog_backend_file.h"
#include "foundation/fd_handler.h"
#include "tests/automation/script_recorder.h"
#include "tests/support/failure_text.h"
#include "tests/vxsim/running_server.h"

namespace {
using namespace std::chrono_literals;

// A manager whose session talks to a simulator on loopback; its events arrive on the test
// thread's default descriptor handler, which the manager holds.
class TitleManagerTest : public testing::Test {
 protected:
  void SetUp() override {
    registerClientClasses();
    manager->getClient()->setServerAddress(server.address());
    manager->getEvents().connect(std::make_shared<RecordingSink>(&log, "m"));
    manager->getClient()->getEvents().connect(std::make_shared<RecordingSink>(&log, "c"));
  }
  bool pumpUntilLogged(std::size_t count) {
    const auto deadline = std::chrono::steady_clock::now() + 3s;
    while (log.size() < count && std::chrono::steady_clock::now() < deadline) {
      AFCFDHandler::getDefault().mainLoop(10);
    }
    return log.size() >= count;
  }

  RunningServer server;
  std::shared_ptr<CTitleManager> manager = std::make_shared<CTitleManager>();
  std::vector<std::string> log;
};

TEST_F(TitleManagerTest, KeepsOneLiveTitlePerZoneAndChannel) {
  const auto first = manager->createTitle(ScriptValue());
  EXPECT_EQ(first->getZone(), "default");
  EXPECT_EQ(first->getChannel(), 0);
  first->setTitleName("news");
  first->createNode("Text", "name");
  const auto inChannel = manager->createTitleInChannel("default", 2);
  const auto second = manager->createTitle(ScriptValue::integer(5));  // not a text: "default"
  EXPECT_TRUE(first->isDestroyed());
  EXPECT_FALSE(inChannel->isDestroyed());
  EXPECT_EQ(manager->findTitleByZone("default"), second);
  EXPECT_EQ(manager->findTitleByName("news"), nullptr);

  const auto lower = manager->createTitle(ScriptValue::text(u"LowerThirds"));
  lower->setTitleName("news");
  EXPECT_EQ(manager->findTitleByName("news"), lower);
  lower->destroy();
  EXPECT_EQ(manager->findTitleByZone("LowerThirds"), lower);
  EXPECT_EQ(manager->findTitleByName("news"), nullptr);
  EXPECT_EQ(manager->findTitleByZone("lowerthirds"), nullptr);
}

TEST_F(TitleManagerTest, TellsEachChannelTheProjectOnce) {
  manager->setProject(u"Show");
  manager->createTitleInChannel("a", 3);
  manager->createTitleInChannel("b", 3);
  manager->getClient()->getSession().commandCallback();
  ASSERT_TRUE(pumpUntilLogged(1));
  server.stop();
  EXPECT_EQ(server.hub().getScene().getProjects(), (std::vector<std::string>{"Show", "Show"}));
}

TEST_F(TitleManagerTest, CallbacksReachTheHandlersThenTheSinks) {
  const auto handler = std::make_shared<RecordingHandler>(&log, "h");
  manager->addCommandCallbackListener(handler);
  manager->addCommandCallbackListener(handler);
  const auto title = manager->createTitle(ScriptValue());
  int32_t id = title->commandCallback();
  ASSERT_TRUE(pumpUntilLogged(3));
  const std::string n = std::to_string(id);
  EXPECT_EQ(log, (std::vector<std::string>{"h(" + n + ")", "h(" + n + ")", "m.command " + n}));

  log.clear();
  manager->setOnCommandCallback(nullptr);
  id = title->commandCallback();
  ASSERT_TRUE(pumpUntilLogged(1));
  EXPECT_EQ(log, (std::vector<std::string>{"m.command " + std::to_string(id)}));
}

TEST_F(TitleManagerTest, ZoneChangesComeAfterEnableZoneNotification) {
  const auto title = manager->createTitle(ScriptValue::text(u"LT"));
  title->enableZoneNotification();
  manager->getClient()->getSession().commandCallback();  // the registration has been served
  ASSERT_TRUE(pumpUntilLogged(1));
  log.clear();
  server.console("zone LT on");
  ASSERT_TRUE(pumpUntilLogged(1));
  EXPECT_EQ(log, (std::vector<std::string>{"c.zone LT 1"}));
}

TEST_F(TitleManagerTest, AFailedConnectionEndsCreateTitleWithItsReason) {
  RunningServer guarded([] {
    VXSimOptions options;
    options.password = "on air";
    return options;
  }());
  manager->getClient()->setServerAddress(guarded.address());
  manager->getClient()->setPassword("off air");
  EXPECT_EQ(failureOf<VXClientException>([&] { manager->createTitle(ScriptValue()); }),
            "Incorrect password.");
}

TEST(TitleManager, SharesTheProcessServicesAmongLiveManagers) {
  const int before = CTitleManager::liveManagers();
  {
    const auto a = std::make_shared<CTitleManager>();
    const auto b = std::make_shared<CTitleManager>();
    EXPECT_EQ(CTitleManager::liveManagers(), before + 2);
  }
  EXPECT_EQ(CTitleManager::liveManagers(), before);
  const auto backends = AFCErrLog::instance().getBackends();
  EXPECT_TRUE(std::any_of(backends.begin(), backends.end(), [](const auto& backend) {
    const auto* file = dynamic_cast<const AFCErrLogBackendFile*>(backend.get());
    return file != nullptr && file->getPath().filename() == "Bridge5.txt";
  }));
  EXPECT_TRUE(
      std::regex_match(CTitleManager::getBridgeVersion(), std::regex(R"(\d+\.\d+(\.\d+)* x64)")));
  EXPECT_NE(CTitleManager::createAnimation(), nullptr);
}

}  // namespace
