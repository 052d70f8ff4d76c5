#include "automation/title.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation/command_list.h"
#include "automation/title_host.h"
#include "commands/animation_commands.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/automation/script_objects.h"
#include "tests/commands/command_test_support.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"
#include "tests/support/recording_builder.h"

namespace {

using ::testing::ElementsAre;
using Records = std::vector<std::shared_ptr<VXCommand>>;

// The manager as a title sees it, over a recording builder; notes the zone listener calls.
class RecordingHost : public CTitleHost {
 public:
  VXCommandListBeginEndBuilder& getBuilder() override {
    if (noSession) throw AFCNullPointerException("VXClient");
    return recorder;
  }
  void addZoneNotification(const std::string& zone) override { calls.push_back("add " + zone); }
  void removeZoneNotification(const std::string& zone) override {
    calls.push_back("remove " + zone);
  }
  void forgetTitle(const CTitle&) override { calls.push_back("forget"); }

  VXRecordingBuilder recorder;
  bool noSession = false;
  std::vector<std::string> calls;
};

struct Fixture {
  explicit Fixture(const std::string& zone = "Z", int32_t channel = 0) {
    title->setChannel(channel);
    title->setZone(zone);
  }
  // What each sent action went out as, to compare with actionBytes.
  std::vector<Bytes> sentBytes() const {
    std::vector<Bytes> bytes;
    for (const auto& sent : host->recorder.sent()) bytes.push_back(sent.bytes);
    return bytes;
  }

  std::shared_ptr<RecordingHost> host = std::make_shared<RecordingHost>();
  std::unique_ptr<CTitle> title = std::make_unique<CTitle>(host);
  // The node the title's first set-up will make.
  std::string node = "_Br5_Title_" + std::to_string(CTitle::lastNodeNumber() + 1);
};

template <class Command, class... Args>
std::shared_ptr<VXCommand> record(Args&&... args) {
  return std::make_shared<Command>(std::forward<Args>(args)...);
}

std::shared_ptr<VXCommand> setRecord(const std::string& target, const std::string& attr,
                                     std::unique_ptr<AFCAttribute> value) {
  return record<VXSetAttributeCommand>(target, attr, std::move(value));
}

Records setUpRecords(const std::string& node, const std::string& zone) {
  return {record<VXCreateNodeCommand>("Group", node, "Root"),
          setRecord(node, "Visible", std::make_unique<AFCAttributeBool>(true)),
          setRecord(node, "Zone", std::make_unique<AFCAttributeString>(zone))};
}

Records projectRecords(const std::string& node, const std::u16string& project, bool effect) {
  Records records;
  if (effect) {
    records.push_back(
        record<VXCreateEffectCommand>("ForeignProject", "br5RootForeignProject", node));
  }
  records.push_back(setRecord(node + "/br4RootForeignProject", "ProjectName",
                              std::make_unique<AFCAttributeWString>(project)));
  return records;
}

Records operator+(Records first, const Records& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

// An action of the channel holding copies of the records, as it goes out.
Bytes actionBytes(uint32_t channel, const Records& records) {
  std::unique_ptr<VXAction> action;
  if (channel == 0) {
    action = std::make_unique<VXImmediateAction>();
  } else {
    action = std::make_unique<VXChannelAction>(channel);
  }
  for (const auto& one : records) action->addCommand(std::unique_ptr<VXCommand>(one->clone()));
  return objectBytes(*action);
}

// Each row's call on the title of f, and the one record it sends.
using Rows = std::vector<std::pair<std::function<void()>, std::shared_ptr<VXCommand>>>;

// Runs the rows in order; each sends its record alone, after the set-up action when there is one.
void expectEachAlone(const Fixture& f, const Rows& rows, uint32_t channel, const Records& setUp) {
  std::vector<Bytes> expected;
  if (!setUp.empty()) expected.push_back(actionBytes(channel, setUp));
  for (const auto& [call, record] : rows) {
    call();
    expected.push_back(actionBytes(channel, {record}));
  }
  EXPECT_EQ(f.sentBytes(), expected);
}

TEST(Title, SetsItselfUpOnFirstUseAndResolvesAddressesUnderItsNode) {
  auto animation = makeModuleObject<CAnimation>();
  auto options = makeModuleObject<CAnimationOptions>();
  options->core.setPlayMode("LAST");
  Fixture f;
  CTitle& t = *f.title;
  const std::string& n = f.node;
  const Rows rows = {
      {[&] { t.loadScene("Lower", "slot/lt"); },
       record<VXLoadSceneCommand>("Lower", n + "/slot", "lt", n)},
      {[&] { t.createNode("Text", "/a//txt"); },
       record<VXCreateNodeCommand>("Text", "txt", n + "/a")},
      {[&] { t.createEffect("Blur", "fx"); }, record<VXCreateEffectCommand>("Blur", "fx", n)},
      {[&] { t.copyNode("src", "a/copy"); },
       record<VXCopyNodeCommand>(n + "/src", "copy", n + "/a")},
      {[&] { t.deleteNode("a"); }, record<VXDeleteNodeCommand>(n + "/a")},
      {[&] { t.deleteEffect("fx"); }, record<VXDeleteEffectCommand>(n + "/fx")},
      {[&] { t.preload(""); }, record<VXPreloadCommand>(n)},
      {[&] { t.stopAnimation("in", "a"); }, record<VXStopAnimationCommand>("in", n + "/a", 0)},
      {[&] { t.set("txt", "Text", ScriptValue::text(u"Hi")); },
       setRecord(n + "/txt", "Text", std::make_unique<AFCAttributeWString>(u"Hi"))},
      {[&] { t.set("", "Alpha", ScriptValue()); },
       setRecord(n, "Alpha", std::make_unique<AFCAttributeInt32>())},
      {[&] { t.animate(ScriptValue::text(u"in"), "a", ScriptValue::integer(1)); },
       record<VXActivateAnimationCommand>("in", n + "/a", VXActivateAnimationOptions{})},
      {[&] { t.animate(ScriptValue::object(animation), "", ScriptValue::object(options)); },
       record<VXActivateClientAnimationCommand>(animation->core.getNative(), n,
                                                options->core.getNative())},
  };
  expectEachAlone(f, rows, 0, setUpRecords(n, "Z"));
}

TEST(Title, SendsUnresolvedCallsOnItsChannelWithoutSettingItselfUp) {
  Fixture f("Z", 3);
  CTitle& t = *f.title;
  const Rows rows = {
      {[&] { t.callSceneAction("go"); }, record<VXActivateActionCommand>("go", "Z", false, "")},
      {[&] { t.renameNode("a/b", "c"); }, record<VXRenameTargetCommand>("a/b", "c")},
      {[&] { t.transactionBegin(ScriptValue::integer(4)); },
       record<VXTransactionBeginCommand>("Z", false)},
      {[&] { t.transactionBegin(ScriptValue::text(u"T")); },
       record<VXTransactionBeginCommand>("T", false)},
      {[&] { t.transactionRoll(ScriptValue::text(u"")); }, record<VXTransactionRollCommand>("Z")},
      {[&] { t.transactionEnd(); }, record<VXTransactionEndCommand>()},
      {[&] { t.previewSchedule(7); }, record<VXPreviewCommand>(7, 0)},
      {[&] { t.previewScheduleBegin(7); }, record<VXPreviewCommand>(7, 1)},
      {[&] { t.previewScheduleEnd(7); }, record<VXPreviewCommand>(7, 2)},
  };
  expectEachAlone(f, rows, 3, {});
  EXPECT_EQ(t.getNodeName(), "");
}

TEST(Title, FailsWithTheSystemTextsAndSendsNothing) {
  Fixture zoned;
  Fixture unzoned("");
  const ScriptValue number = ScriptValue::integer(1);
  const std::string noName = "BadArg: No transaction name";
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[&] { unzoned.title->transactionBegin(number); }, noName},
      {[&] { unzoned.title->transactionRoll({}); }, noName},
      {[&] { unzoned.title->destroyInTransaction(ScriptValue::text(u"")); }, noName},
      {[&] { zoned.title->execute(nullptr, {}); }, "Null pointer to CCommandList"},
      {[] { CTitle title(nullptr); }, "Null pointer to CTitleHost"},
      {[&] { zoned.title->renameNode("a", ""); }, "Illegal Argument Exception, No node name"},
  };
  for (const auto& [call, expected] : rows) EXPECT_EQ(failureOf(call), expected);
  EXPECT_EQ(failureOf<VX2Br5TitleException>(rows[0].first), noName);
  EXPECT_TRUE(zoned.host->recorder.sent().empty());
  EXPECT_TRUE(unzoned.host->recorder.sent().empty());
}

TEST(Title, RefusesADateAfterTheSetUpAndObjectsOfTheWrongKindWithoutAnError) {
  Fixture f;
  auto options = makeModuleObject<CAnimationOptions>();
  EXPECT_EQ(failureOf([&] { f.title->set("a", "x", ScriptValue::date(2)); }),
            "Illegal Argument Exception, unsupported value type");
  EXPECT_EQ(f.title->animate(ScriptValue::object(options), "a", {}), CCallResult::NoInterface);
  EXPECT_EQ(f.title->animate(ScriptValue::text(u"in"), "a", ScriptValue::unknown(nullptr)),
            CCallResult::NoInterface);
  EXPECT_EQ(f.title->animate(ScriptValue::boolean(true), "a", {}), CCallResult::Ok);
  EXPECT_EQ(f.sentBytes(), std::vector<Bytes>{actionBytes(0, setUpRecords(f.node, "Z"))});
}

TEST(Title, CarriesProjectAndZoneToItsNodeOnceSetUp) {
  CapturedErrLog log;
  Fixture f;
  EXPECT_FALSE(f.title->setProject(u"Show"));
  f.title->setZone("Y");
  f.title->preload("");
  EXPECT_TRUE(f.title->setProject(u"Show"));
  EXPECT_TRUE(f.title->setProject(u"News"));
  f.title->setZone("X");
  EXPECT_EQ(
      f.sentBytes(),
      (std::vector<Bytes>{
          actionBytes(0, setUpRecords(f.node, "Y") + projectRecords(f.node, u"Show", true)),
          actionBytes(0, {record<VXPreloadCommand>(f.node)}),
          actionBytes(0, projectRecords(f.node, u"Show", false)),
          actionBytes(0, projectRecords(f.node, u"News", false)),
          actionBytes(0, {setRecord(f.node, "Zone", std::make_unique<AFCAttributeString>("X"))})}));
  EXPECT_THAT(log.messages(), ElementsAre("Changing project name may lead to strange errors"));
}

TEST(Title, DestroyFlushesAnUnbalancedTitleAndDeletesInATransactionLeftOpen) {
  CapturedErrLog log;
  Fixture f;
  f.title->setTitleName("T");
  f.title->begin();
  f.title->begin();
  f.title->preload("p");
  f.title->setProject(u"Show");
  f.title->setDestroyTransactionName("D");
  f.title->destroy();
  EXPECT_EQ(f.sentBytes(), (std::vector<Bytes>{
                               actionBytes(0, setUpRecords(f.node, "Z") +
                                                  Records{record<VXPreloadCommand>(f.node + "/p")} +
                                                  projectRecords(f.node, u"Show", true)),
                               actionBytes(0, {record<VXTransactionBeginCommand>("D", false),
                                               record<VXDeleteNodeCommand>(f.node)})}));
  EXPECT_THAT(log.messages(), ElementsAre("begin/end not balanced in title T (2)"));
  EXPECT_THAT(f.host->calls, ElementsAre("remove Z"));
  EXPECT_TRUE(f.title->isDestroyed());

  // Everything of the old node is gone: the next use makes the next node, without the project,
  // and a later destroy needs no transaction.
  const std::string next = "_Br5_Title_" + std::to_string(CTitle::lastNodeNumber() + 1);
  f.title->set("", "x", ScriptValue::integer(1));
  f.title->destroy();
  EXPECT_EQ(f.host->recorder.sent().size(), 5u);
  EXPECT_EQ(f.sentBytes()[2], actionBytes(0, setUpRecords(next, "Z")));
  EXPECT_EQ(f.sentBytes()[4], actionBytes(0, {record<VXDeleteNodeCommand>(next)}));
  EXPECT_EQ(log.messages().size(), 1u);
}

TEST(Title, CountsBeginsOnlyWhenTheBuilderTookThem) {
  CapturedErrLog log;
  Fixture f;
  f.title->setTitleName("T");
  f.title->begin();
  f.title->preload("");
  f.host->recorder.failNextSend("down");
  EXPECT_EQ(failureOf([&] { f.title->end(); }), "down");
  f.title->destroyInTransaction(ScriptValue::text(u"D"));
  EXPECT_THAT(log.messages(), ElementsAre("begin/end not balanced in title T (1)"));
}

TEST(Title, FinalReleaseDeletesTheNodeLeavesTheListAndSwallowsErrors) {
  Fixture f;
  f.title->enableZoneNotification();
  f.title->preload("");
  f.host->recorder.failNextSend("down");
  f.title.reset();
  EXPECT_THAT(f.host->calls, ElementsAre("add Z", "forget"));

  Fixture g;
  g.title->setDestroyTransactionName("D");
  g.title->preload("");
  g.title.reset();
  EXPECT_EQ(g.sentBytes().back(), actionBytes(0, {record<VXTransactionBeginCommand>("D", false),
                                                  record<VXDeleteNodeCommand>(g.node)}));
  EXPECT_THAT(g.host->calls, ElementsAre("remove Z", "forget"));

  Fixture never;  // never set up: goes without asking for the session
  never.host->noSession = true;
  never.title->destroy();
  never.title.reset();
  EXPECT_THAT(never.host->calls, ElementsAre("remove Z", "remove Z", "forget"));
}

TEST(Title, ExecutesACommandListAsOneActionUnderEachTitle) {
  CCommandList list;
  list.createNode("Text", "txt");
  list.doAction("go");
  list.beginTransaction({});
  const int32_t id = list.callback();
  Fixture f("Z", 2);
  f.title->execute(&list, ScriptValue::text(u"box"));
  Fixture g("Y");
  g.title->preload("");
  g.title->execute(&list, ScriptValue::integer(1));
  const auto replayed = [&](const std::string& base, const std::string& zone) {
    return Records{record<VXCreateNodeCommand>("Text", "txt", base),
                   record<VXActivateActionCommand>("go", zone, false, base),
                   record<VXTransactionBeginCommand>(zone, false), record<VXCallbackCommand>(id)};
  };
  EXPECT_EQ(f.sentBytes(), std::vector<Bytes>{actionBytes(
                               2, setUpRecords(f.node, "Z") + replayed(f.node + "/box", "Z"))});
  EXPECT_EQ(g.sentBytes().back(), actionBytes(0, replayed(g.node, "Y")));
  EXPECT_EQ(list.size(), 4u);
}

TEST(Title, HandsOutTheCallbackIdTheBuilderAllocated) {
  Fixture f;
  const int32_t id = f.title->commandCallback();
  EXPECT_EQ(f.sentBytes(), std::vector<Bytes>{actionBytes(0, {record<VXCallbackCommand>(id)})});
}

}  // namespace
