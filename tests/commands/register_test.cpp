// Every command record the layer registers: found by its class name, made by the registry,
// read back through the registry to the same bytes and text, cloned into an equal record.
#include "commands/register.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "commands/action.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "commands/zone_state.h"
#include "foundation/attribute_vector.h"
#include "tests/commands/command_test_support.h"

namespace {

using Make = std::function<std::unique_ptr<VXCommand>()>;

template <class T, class... Args>
Make make(Args... args) {
  return [=] { return std::make_unique<T>(args...); };
}

std::unique_ptr<VXCommand> setAttribute() {
  auto value = std::make_unique<AFCAttributeVec3f>();
  value->fromString("[1, , 3]");
  return std::make_unique<VXSetAttributeCommand>("Root/t/n", "Position", std::move(value));
}

// One zone: the order of several depends on the map's history, not only on its contents.
std::unique_ptr<VXCommand> setZoneState() {
  VXZonesState zones;
  zones.set("A", true);
  return std::make_unique<VXSetZoneStateCommand>(zones);
}

const std::vector<Make>& samples() {
  static const std::vector<Make> all = {
      make<VXCommand>(),
      &setAttribute,
      make<VXCreateNodeCommand>("Group", "n", "Root/t"),
      make<VXCopyNodeCommand>("Root/a", "b", "Root/p"),
      make<VXCreateEffectCommand>("Blur", "e", "Root/t"),
      make<VXRenameTargetCommand>("Root/a", "b"),
      make<VXDeleteNodeCommand>("Root/a"),
      make<VXActivateEffectCommand>("Root/e"),
      make<VXDeleteEffectCommand>("Root/e"),
      make<VXPreloadCommand>("Root/a"),
      make<VXLoadSceneCommand>("scene", "Root/p", "n", "Root/x"),
      make<VXStopAnimationCommand>("in", "Root/t", int64_t{1000000}),
      make<VXAccelerateAnimationCommand>("in", "Root/t", 0.5f, int64_t{-1}),
      make<VXRemoveLocalAnimationCommand>("in", "Root/t"),
      make<VXActivateActionCommand>("go", "T", true, "Root/t"),
      make<VXTransactionBeginCommand>("T", true),
      make<VXTransactionStopCommand>("T"),
      make<VXTransactionRollCommand>("T"),
      make<VXTransactionEndCommand>(),
      &setZoneState,
      make<VXSetProjectCommand>("Show"),
      make<VXCallbackCommand>(3),
      make<VXMessageCommand>("hello"),
      make<VXWaitCommand>(20),
      make<VXPreviewCommand>(9, 1),
  };
  return all;
}

class EveryCommand : public testing::TestWithParam<Make> {};

TEST_P(EveryCommand, IsRegisteredUnderItsClassNameWithADefaultFactory) {
  const auto command = GetParam()();
  const AFCClass* record = AFCClass::forName(command->getClass()->getName());
  ASSERT_EQ(record, command->getClass());
  std::unique_ptr<AFCObject> made(record->newInstance());
  ASSERT_TRUE(made);
  EXPECT_EQ(made->getClass(), record);
}

TEST_P(EveryCommand, ReadsBackThroughTheRegistryToTheSameBytesAndText) {
  const auto command = GetParam()();
  const auto copy = roundTrip<VXCommand>(*command);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getClass(), command->getClass());
  EXPECT_EQ(objectBytes(*copy), objectBytes(*command));
  EXPECT_EQ(copy->toString(), command->toString());
}

TEST_P(EveryCommand, ClonesIntoAnEqualRecordOfTheSameClass) {
  const auto command = GetParam()();
  const std::unique_ptr<VXCommand> copy(command->clone());
  ASSERT_TRUE(copy);
  EXPECT_NE(copy.get(), command.get());
  EXPECT_EQ(copy->getClass(), command->getClass());
  EXPECT_EQ(objectBytes(*copy), objectBytes(*command));
  EXPECT_EQ(copy->toString(), command->toString());
}

TEST_P(EveryCommand, FailsCleanlyOnEveryTruncation) {
  const Bytes bytes = objectBytes(*GetParam()());
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    EXPECT_NE(readObjectError(Bytes(bytes.begin(), bytes.begin() + size)), "") << size;
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, EveryCommand, testing::ValuesIn(samples()),
                         [](const testing::TestParamInfo<Make>& info) {
                           return info.param()->getClass()->getName();
                         });

TEST(RegisterCommandClasses, RegistersTheActionsAndTheFoundation) {
  registerCommandClasses();  // again: nothing new, nothing broken
  EXPECT_EQ(AFCClass::forName("VXAction"), &VXAction::staticClass());
  EXPECT_EQ(AFCClass::forName("VXImmediateAction"), &VXImmediateAction::staticClass());
  EXPECT_EQ(AFCClass::forName("VXChannelAction"), &VXChannelAction::staticClass());
  EXPECT_NE(AFCClass::forName("AFCAttributeString"), nullptr);
  EXPECT_EQ(AFCClass::forName("VXMergedAction"), nullptr);
}

}  // namespace
