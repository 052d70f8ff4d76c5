#include "commands/zone_state.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "foundation/errlog_backend.h"
#include "tests/commands/command_test_support.h"

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

TEST(ZonesState, SetOverwritesAndRemoveForgets) {
  VXZonesState state = zones({{"A", true}});
  state.set("A", false);
  EXPECT_EQ(state.size(), 1u);
  EXPECT_TRUE(state.contains("A"));
  EXPECT_FALSE(state.get("A"));
  state.remove("A");
  EXPECT_FALSE(state.contains("A"));
}

TEST(ZonesState, GetOfAZoneNotAskedForLogsAndAnswersFalse) {
  auto memory = std::make_shared<AFCErrLogBackendMemory>();
  AFCErrLog::instance().addBackend(memory);
  const bool state = zones({{"A", true}}).get("B");
  AFCErrLog::instance().removeBackend(memory.get());
  EXPECT_FALSE(state);
  EXPECT_THAT(memory->messages(),
              testing::ElementsAre("VXZonesState::get: Get for zone B was not prepared!"));
}

TEST(ZonesState, IsWrittenAsCountThenNameAndStatePerZone) {
  EXPECT_EQ(contents(zones({{"Z1", true}})),
            uint32Bytes(0x06, 1) + stringBytes("Z1") + boolBytes(true));
  EXPECT_EQ(contents(VXZonesState()), uint32Bytes(0x06, 0));
}

TEST(ZonesState, ReadsBackEveryZone) {
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
  const VXSetZoneStateCommand command(zones({{"Z1", false}}));
  EXPECT_EQ(objectBytes(command), newObjectHeader("VXSetZoneStateCommand") + kBasePart +
                                      uint32Bytes(0x06, 1) + stringBytes("Z1") + boolBytes(false));
  EXPECT_EQ(command.toString(), "SetZone");
}

TEST(SetZoneStateCommand, DefaultNameTakesOverTheStateOfTheUnnamedZone) {
  VXSetZoneStateCommand unnamed(zones({{"", true}}));
  unnamed.bindDefaultName("Z");
  EXPECT_EQ(unnamed.getZones(), zones({{"Z", true}}));

  VXSetZoneStateCommand named(zones({{"A", false}}));
  named.bindDefaultName("Z");
  EXPECT_EQ(named.getZones(), zones({{"A", false}}));
}

TEST(SetZoneStateCommand, DefaultNameOverwritesAZoneOfThatName) {
  VXSetZoneStateCommand command(zones({{"", true}, {"Z", false}}));
  command.bindDefaultName("Z");
  EXPECT_EQ(command.getZones(), zones({{"Z", true}}));
}

}  // namespace
