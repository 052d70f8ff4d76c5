#include "tools/vxsim/sim_console.h"

#include <gtest/gtest.h>

#include <sstream>

#include "foundation/attribute_string.h"
#include "tests/vxsim/sim_test_support.h"

namespace {

class SimConsole : public ::testing::Test {
 protected:
  void SetUp() override {
    session_.addZoneNotifyListener("L3", &listener_);
    session_.addErrLogListener(&listener_);
    session_.addServerMessageListener(&listener_);
    session_.addPickResultListener(&listener_);
    session_.connect();
  }
  std::string run(const std::string& line) {
    std::ostringstream out;
    EXPECT_EQ(vxSimConsoleCommand(recording_.hub, line, out), VXSimConsoleResult::Continue);
    session_.dispatchPending();
    return out.str();
  }

  RecordingHub recording_;
  PipedSession session_{recording_.hub, 1};
  std::vector<std::string> seen_;
  RecordingListener listener_{&seen_};
};

}  // namespace

TEST_F(SimConsole, ZoneMessageAndErrLogReachTheClient) {
  run("zone L3 on");
  run("message  on air now");
  run("errlog warning disk low");
  ASSERT_EQ(seen_.size(), 3u);
  EXPECT_EQ(seen_[0].rfind("l: zones ", 0), 0u);
  EXPECT_EQ(seen_[1], "l: message on air now");
  EXPECT_EQ(seen_[2], "l: errlog disk low");
  EXPECT_EQ(recording_.lines.back(), "WARNING disk low");
}

TEST_F(SimConsole, TreePrintsTheSceneAndBadLinesPrintTheirUsage) {
  session_.createNode("Group", "a", "");
  EXPECT_EQ(run("tree"), "Root\n  a (Group)\n");
  EXPECT_EQ(run("zone L3 maybe"), "usage: zone NAME on|off\n");
  EXPECT_EQ(run("errlog LOUD x"),
            "usage: errlog LEVEL TEXT (LEVEL: DEBUG, INFO, WARNING, ERROR or 0-4)\n");
  EXPECT_EQ(run("fly").rfind("unknown command: fly", 0), 0u);
  EXPECT_EQ(run(""), "");
  EXPECT_TRUE(seen_.empty());
}

TEST_F(SimConsole, DropClosesEveryConnectionAndQuitEnds) {
  std::ostringstream out;
  EXPECT_EQ(vxSimConsoleCommand(recording_.hub, "drop", out), VXSimConsoleResult::Continue);
  EXPECT_TRUE(session_.connection().isClosed());
  EXPECT_EQ(vxSimConsoleCommand(recording_.hub, "quit", out), VXSimConsoleResult::Quit);
}

TEST_F(SimConsole, PickSendsThePickResultToEveryClient) {
  PipedSession other(recording_.hub, 2);
  std::vector<std::string> otherSeen;
  RecordingListener otherListener(&otherSeen, "o");
  other.addPickResultListener(&otherListener);
  other.connect();
  EXPECT_EQ(run("pick <pick node=\"Root/a\"/>"), "");
  other.dispatchPending();
  EXPECT_EQ(seen_, std::vector<std::string>{"l: pick <pick node=\"Root/a\"/>"});
  EXPECT_EQ(otherSeen, std::vector<std::string>{"o: pick <pick node=\"Root/a\"/>"});
  EXPECT_EQ(run("pick"), "usage: pick XML\n");
}

TEST_F(SimConsole, TreeAsJsonGivesEveryNodeWithItsAttributesAndChildrenInOrder) {
  EXPECT_EQ(run("tree --json"),
            R"({"name":"Root","type":"","kind":"node","scene":"","attributes":{},"children":[]})"
            "\n");
  session_.createNode("Group", "a", "");
  session_.setAttribute("a", "Text", std::make_unique<AFCAttributeString>("say \"hi\"\n"));
  session_.setAttribute("a", "Alpha", std::make_unique<AFCAttributeString>("1"));
  session_.createEffect("Blur", "fx", "a");
  session_.activateEffect("a/fx");
  session_.loadScene("Lower", "a", "bg");
  session_.createNode("Text", "b", "");
  EXPECT_EQ(run("tree  --json "),
            R"({"name":"Root","type":"","kind":"node","scene":"","attributes":{},"children":[)"
            R"({"name":"a","type":"Group","kind":"node","scene":"",)"
            R"("attributes":{"Alpha":"1","Text":"say \"hi\"\n"},"children":[)"
            R"({"name":"fx","type":"Blur","kind":"effect","active":true,"scene":"",)"
            R"("attributes":{},"children":[]},)"
            R"({"name":"bg","type":"Scene","kind":"node","scene":"Lower","attributes":{},)"
            R"("children":[]}]},)"
            R"({"name":"b","type":"Text","kind":"node","scene":"","attributes":{},"children":[]}]})"
            "\n");
  EXPECT_EQ(run("tree --xml"), "usage: tree [--json]\n");
}

TEST_F(SimConsole, FaultInjectsAnOrderAndPrintsTheStandingOnes) {
  EXPECT_EQ(run("fault"), "faults: none\n");
  EXPECT_EQ(run("fault close 2"), "faults: close after 2 packets\n");
  EXPECT_EQ(run("fault delay 40"), "faults: close after 2 packets, delay 40 ms\n");
  EXPECT_EQ(run("fault close 0"), "usage: fault [close N|magic|length|delay MS|off]\n");
  EXPECT_EQ(recording_.hub.getFaults().closeAfter, 2u);
  EXPECT_EQ(run("fault off"), "faults: none\n");
  const std::string unknown = run("fly");
  EXPECT_NE(unknown.find("pick XML"), std::string::npos) << unknown;
  EXPECT_NE(unknown.find("fault [close N|magic|length|delay MS|off]"), std::string::npos);
}

TEST_F(SimConsole, MessageBurstSendsNumberedMessagesInOrderAndRefusesABadCount) {
  EXPECT_EQ(run("message-burst 3 m"), "");
  EXPECT_EQ(seen_, (std::vector<std::string>{"l: message m0", "l: message m1", "l: message m2"}));
  const std::string usage = "usage: message-burst COUNT PREFIX (COUNT up to 100000)\n";
  EXPECT_EQ(run("message-burst many m"), usage);
  EXPECT_EQ(run("message-burst 3x m"), usage);
  EXPECT_EQ(run("message-burst -1 m"), usage);
  EXPECT_EQ(run("message-burst 100001 m"), usage);
  EXPECT_EQ(seen_.size(), 3u);
}
