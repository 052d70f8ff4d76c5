#include "commands/zone_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "tests/commands/command_test_support.h"
#include "tests/foundation/errlog_capture.h"

namespace {

VXZonesState zones(std::initializer_list<std::pair<const char*, bool>> entries) {
  VXZonesState state;
  for (const auto& [zone, on] : entries) state.set(zone, on);
  return state;
}

Bytes contents(const VXZonesState& state) {
  AFCPersistentOutputStreamBuffer out;
  state.write(out);
  const AFCBuffer& buffer = out.getBuffer();
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

TEST(ZonesState, SetOverwritesRemoveForgetsAndAZoneNotAskedForLogsAndAnswersFalse) {
  VXZonesState state = zones({{"A", true}});
  state.set("A", false);
  EXPECT_EQ(state.size(), 1u);
  EXPECT_FALSE(state.get("A"));
  state.remove("A");
  EXPECT_FALSE(state.contains("A"));

  CapturedErrLog log;
  EXPECT_FALSE(zones({{"A", true}}).get("B"));
  EXPECT_THAT(log.messages(),
              testing::ElementsAre("VXZonesState::get: Get for zone B was not prepared!"));
}

TEST(ZonesState, IsWrittenAsCountThenNameAndStatePerZoneAndReadsBack) {
  EXPECT_EQ(contents(zones({{"Z1", true}})),
            uint32Bytes(0x06, 1) + stringBytes("Z1") + boolBytes(true));
  EXPECT_EQ(contents(VXZonesState()), uint32Bytes(0x06, 0));

  const VXZonesState state = zones({{"A", true}, {"B", false}, {"C", true}});
  const Bytes bytes = contents(state);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  VXZonesState copy;
  copy.read(in);
  EXPECT_EQ(copy, state);
}

TEST(ZonesState, ShortDataLeavesTheRecordUnchangedAndAllocatesNothingFromTheCount) {
  const Bytes bytes = uint32Bytes(0x06, 0xFFFFFFFF) + stringBytes("A") + boolBytes(true);
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  VXZonesState state = zones({{"old", true}});
  EXPECT_THROW(state.read(in), AFCPersistentReadException2);
  EXPECT_EQ(state, zones({{"old", true}}));
}

TEST(SetZoneStateCommand, WritesTheZonesAfterTheBasePart) {
  expectGolden(
      {{"VXSetZoneStateCommand", std::make_shared<VXSetZoneStateCommand>(zones({{"Z1", false}})),
        uint32Bytes(0x06, 1) + stringBytes("Z1") + boolBytes(false), "SetZone"}});
}

TEST(SetZoneStateCommand, DefaultNameTakesOverTheUnnamedZoneAndOverwritesOneOfThatName) {
  const struct {
    VXZonesState before;
    VXZonesState after;
  } rows[] = {
      {zones({{"", true}}), zones({{"Z", true}})},
      {zones({{"A", false}}), zones({{"A", false}})},
      {zones({{"", true}, {"Z", false}}), zones({{"Z", true}})},
  };
  for (const auto& row : rows) {
    VXSetZoneStateCommand command(row.before);
    command.bindDefaultName("Z");
    EXPECT_EQ(command.getZones(), row.after);
  }
}

}  // namespace
