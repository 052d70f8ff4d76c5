#include "foundation/crash_dump.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <thread>

#include "tests/crash_dump/crash_files.h"

TEST(CrashDump, FileNameIsTheProgramWithoutExtensionAndTheLocalMinute) {
  struct Case {
    const char* program;
    int day, month, hour, minute;
    const char* extension;
    const char* expected;
  };
  const Case cases[] = {
      {"/opt/vx/bin/vxsim", 5, 11, 7, 3, ".txt", "/opt/vx/bin/vxsim_crash_5_11_7_03.txt"},
      {"C:\\VX\\host.exe", 31, 12, 23, 59, ".dmp", "C:\\VX\\host_crash_31_12_23_59.dmp"},
      {"/opt/v.x/tool", 1, 1, 0, 0, ".txt", "/opt/v.x/tool_crash_1_1_0_00.txt"},
      {"C:\\a.b\\c.d.exe", 9, 6, 12, 30, ".dmp", "C:\\a.b\\c.d_crash_9_6_12_30.dmp"},
  };
  for (const Case& c : cases) {
    std::tm local{};
    local.tm_mday = c.day;
    local.tm_mon = c.month - 1;
    local.tm_hour = c.hour;
    local.tm_min = c.minute;
    char name[128];
    AFCCrashDump::fileName(name, sizeof name, c.program, local, c.extension);
    EXPECT_STREQ(name, c.expected) << c.program;
  }
}

TEST(CrashDump, FileNameIsCutToTheBuffer) {
  char name[12];
  AFCCrashDump::fileName(name, sizeof name, "/x/program", std::tm{}, ".txt");
  EXPECT_STREQ(name, "/x/program_");
}

TEST(CrashDump, KindIsTheIntegerOfTheFirst31Characters) {
  const std::string zeros(30, '0');
  const std::string fiveAt31 = zeros + "5", fiveAt32 = zeros + "05";
  const struct {
    const char* value;
    int kind;
  } cases[] = {{nullptr, 0},
               {"0", 0},
               {"1", 1},
               {"2", 2},
               {" 7x", 7},
               {"-3", -3},
               {"dump", 0},
               {fiveAt31.c_str(), 5},
               {fiveAt32.c_str(), 0},
               {"4294967296", INT_MAX}};

  for (const auto& c : cases) {
    setOrudump(c.value);
    EXPECT_EQ(AFCCrashDump::requestedKind(), c.kind) << (c.value ? c.value : "unset");
  }
  setOrudump(nullptr);
}

TEST(CrashDump, TranslationScopesNestAndBelongToTheirThread) {
  EXPECT_FALSE(AFCCrashDump::translating());
  {
    AFCCrashDump::Translation outer;
    { AFCCrashDump::Translation inner; }
    EXPECT_TRUE(AFCCrashDump::translating());
    bool elsewhere = true;
    std::thread([&] { elsewhere = AFCCrashDump::translating(); }).join();
    EXPECT_FALSE(elsewhere);
  }
  EXPECT_FALSE(AFCCrashDump::translating());
}
