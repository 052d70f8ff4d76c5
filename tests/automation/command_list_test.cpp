#include "automation/command_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "commands/animation_commands.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "commands/zone_state.h"
#include "foundation/attribute_scalar.h"
#include "tests/automation/script_objects.h"
#include "tests/commands/command_test_support.h"
#include "tests/support/failure_text.h"
#include "tests/support/recording_builder.h"

namespace {

using ::testing::ElementsAre;

// Each recorded command as a packet would carry it.
std::vector<Bytes> recordedBytes(const CCommandList& list) {
  std::vector<Bytes> bytes;
  list.visit([&](const VXCommand& command) { bytes.push_back(objectBytes(command)); });
  return bytes;
}

std::vector<std::string> recorded(const CCommandList& list) {
  std::vector<std::string> texts;
  list.visit([&](const VXCommand& command) { texts.push_back(command.toString()); });
  return texts;
}

TEST(CommandList, ChecksItsArgumentsBeforeAppendingAnything) {
  CCommandList list;
  const std::string bad = "Illegal Argument Exception, Empty ";
  const std::pair<std::function<void()>, std::string> rows[] = {
      {[&] { list.createNode("Group", ""); }, bad + "new name"},
      {[&] { list.createNode("", "a"); }, bad + "node type"},
      {[&] { list.createNode("", "a/"); }, bad + "node type"},
      {[&] { list.createEffect("", ""); }, bad + "new name"},
      {[&] { list.createEffect("", "a/b"); }, bad + "effect type"},
      {[&] { list.copyNode("src", "/"); }, bad + "new name"},
      {[&] { list.renameNode("a", ""); }, bad + "new name"},
      {[&] { list.deleteNode(""); }, bad + "node name"},
      {[&] { list.deleteEffect(""); }, bad + "effect name"},
      {[&] { list.loadScene("", ""); }, bad + "new name"},
      {[&] { list.loadScene("", "a"); }, bad + "scene name"},
      {[&] { list.doAction(""); }, bad + "action name"},
      {[&] { list.stopAnimation("", "a"); }, bad + "anim name"},
      {[&] { list.animate(ScriptValue::text(u""), "a", {}); }, bad + "anim name"},
      {[&] { list.set("a", "", ScriptValue::integer(1)); }, bad + "attr name"},
      {[&] { list.set("a", "x", ScriptValue::date(1)); },
       "Illegal Argument Exception, unsupported value type"},
  };
  for (const auto& [call, expected] : rows) EXPECT_EQ(failureOf(call), expected);
  EXPECT_EQ(list.size(), 0u);
}

TEST(CommandList, RecordsEachMethodAsItsCommandWithRelativeAddresses) {
  VXZonesState on;
  on.set("", true);
  using Record = std::function<void(CCommandList&)>;
  using std::make_shared;
  const std::pair<Record, std::shared_ptr<VXCommand>> rows[] = {
      {[](auto& l) { l.createNode("Group", "a/b/n"); },
       make_shared<VXCreateNodeCommand>("Group", "n", "a/b")},
      {[](auto& l) { l.createEffect("Blur", "fx"); },
       make_shared<VXCreateEffectCommand>("Blur", "fx", "")},
      {[](auto& l) { l.copyNode("a/src", "a/copy"); },
       make_shared<VXCopyNodeCommand>("a/src", "copy", "a")},
      {[](auto& l) { l.renameNode("a/b", "c"); }, make_shared<VXRenameTargetCommand>("a/b", "c")},
      {[](auto& l) { l.deleteNode("a/b"); }, make_shared<VXDeleteNodeCommand>("a/b")},
      {[](auto& l) { l.deleteEffect("a/fx"); }, make_shared<VXDeleteEffectCommand>("a/fx")},
      {[](auto& l) { l.loadScene("Lower", "slot/lt"); },
       make_shared<VXLoadSceneCommand>("Lower", "slot", "lt", "")},
      {[](auto& l) { l.doAction("go"); },
       make_shared<VXActivateActionCommand>("go", "", false, "")},
      {[](auto& l) { l.set("", "x", ScriptValue::integer(1)); },
       make_shared<VXSetAttributeCommand>("", "x", std::make_unique<AFCAttributeInt32>(1))},
      {[](auto& l) { l.stopAnimation("in", "a"); },
       make_shared<VXStopAnimationCommand>("in", "a", 0)},
      {[](auto& l) { l.preload(""); }, make_shared<VXPreloadCommand>("")},
      {[](auto& l) { l.beginSequencePreview(1); }, make_shared<VXPreviewCommand>(1, 1)},
      {[](auto& l) { l.endSequencePreview(2); }, make_shared<VXPreviewCommand>(2, 2)},
      {[](auto& l) { l.captureStillPreview(3); }, make_shared<VXPreviewCommand>(3, 0)},
      {[](auto& l) { l.setZoneState(5); }, make_shared<VXSetZoneStateCommand>(on)},
      {[](auto& l) { l.beginTransaction(ScriptValue::integer(4)); },
       make_shared<VXTransactionBeginCommand>("", false)},
      {[](auto& l) { l.rollTransaction(ScriptValue::text(u"T")); },
       make_shared<VXTransactionRollCommand>("T")},
      {[](auto& l) { l.endTransaction(); }, make_shared<VXTransactionEndCommand>()},
  };
  for (const auto& [record, expected] : rows) {
    CCommandList list;
    record(list);
    EXPECT_EQ(recordedBytes(list), std::vector<Bytes>{objectBytes(*expected)})
        << expected->toString();
  }
}

TEST(CommandList, AnimatesByNameOrObjectWithTheOptionsObjectOrTheDefaults) {
  CCommandList list;
  auto animation = makeModuleObject<CAnimation>();
  auto options = makeModuleObject<CAnimationOptions>();
  options->core.setPlayMode("LAST");
  const ScriptValue byName = ScriptValue::text(u"in");
  const std::pair<std::function<CCallResult()>, CCallResult> rows[] = {
      {[&] { return list.animate(byName, "a", ScriptValue::object(options)); }, CCallResult::Ok},
      {[&] { return list.animate(byName, "a", ScriptValue::integer(3)); }, CCallResult::Ok},
      {[&] { return list.animate(ScriptValue::unknown(animation), "b", {}); }, CCallResult::Ok},
      {[&] { return list.animate(ScriptValue::object(options), "c", {}); },
       CCallResult::NoInterface},
      {[&] { return list.animate(ScriptValue::object(nullptr), "c", {}); },
       CCallResult::NoInterface},
      {[&] { return list.animate(ScriptValue::integer(1), "c", {}); }, CCallResult::Ok},
  };
  for (const auto& [call, expected] : rows) EXPECT_EQ(call(), expected);
  const auto animate = [](const char* target, const char* playMode, const char* what) {
    return std::string("Animate target=") + target +
           ", opts=(offset=0.000000,skip=0.000000,end=INF,playMode=" + playMode +
           ",enableFinish=true,name=,speed=1.000000), " + what;
  };
  EXPECT_THAT(recorded(list),
              ElementsAre(animate("a", "LAST", "Name=in"), animate("a", "FORWARD", "Name=in"),
                          animate("b", "FORWARD", "Obj")));
  list.visit([&](const VXCommand& command) {
    if (auto* client = dynamic_cast<const VXActivateClientAnimationCommand*>(&command)) {
      EXPECT_EQ(client->getAnimation().get(), animation->core.getNative().get());
    }
  });
}

TEST(CommandList, RefusesAnOptionsObjectThatIsNotOne) {
  CCommandList list;
  auto animation = makeModuleObject<CAnimation>();
  for (const ScriptValue& options :
       {ScriptValue::object(animation), ScriptValue::unknown(nullptr)}) {
    EXPECT_EQ(failureOf([&] { list.animate(ScriptValue::text(u"in"), "a", options); }),
              "Illegal Argument Exception, Object is not anim options");
  }
  EXPECT_EQ(list.size(), 0u);
}

TEST(CommandList, TakesCallbackIdsFromTheCounterOfEveryBuilderAndKeepsThemForEachReplay) {
  CCommandList list;
  VXRecordingBuilder builder;
  const int32_t first = list.callback();
  const int32_t between = builder.commandCallback();
  const int32_t second = list.callback();
  EXPECT_EQ(between, first + 1);
  EXPECT_EQ(second, between + 1);
  const std::vector<std::string> expected = {"Callback " + std::to_string(first),
                                             "Callback " + std::to_string(second)};
  EXPECT_EQ(recorded(list), expected);
  EXPECT_EQ(recorded(list), expected);
}

}  // namespace
