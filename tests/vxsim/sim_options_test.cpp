#include "tools/vxsim/sim_options.h"

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

TEST(SimOptions, VersionTextsGiveTheWordsTheClientReadsBack) {
  const VXSimVersion release = vxSimParseVersion("2295.7");
  EXPECT_EQ(release.major, 2295u);
  EXPECT_EQ(release.minor, 7u);
  EXPECT_EQ(release.combined(), 2295107u);
  const VXSimVersion beta = vxSimParseVersion("2295beta3");
  EXPECT_EQ(beta.minor, 103u);
  EXPECT_EQ(beta.combined(), 2295003u);
  EXPECT_EQ(vxSimParseVersion("2016").minor, 0u);
  EXPECT_EQ(vxSimParseVersion("2295.7 debug").major, 2295u | 0x40000000u);
  EXPECT_EQ(vxSimParseVersion("2295.7 debug").combined(), 2295107u);
}

TEST(SimOptions, RawVersionWordsTakeFourOrFiveNumbers) {
  const VXSimVersion four = vxSimParseVersion("1,2,2295,106");
  EXPECT_EQ(four.word0, 0u);
  EXPECT_EQ(four.word1, 1u);
  EXPECT_EQ(four.word2, 2u);
  EXPECT_EQ(four.major, 2295u);
  EXPECT_EQ(four.minor, 106u);
  EXPECT_EQ(vxSimParseVersion("9,1,2,3,4").word0, 9u);
}

TEST(SimOptions, RefusesVersionsThatDoNotParse) {
  for (const char* text : {"", "x", "2295.", "2295.101", "2295beta0", "2295beta", "1,2,3",
                           "1,2,3,4,5,6", "1,,3,4", "99999999999.1"}) {
    EXPECT_THROW(vxSimParseVersion(text), VXSimUsageException) << text;
  }
}

TEST(SimOptions, ArgumentsTakeSeparateOrInlineValues) {
  const VXSimOptions options =
      vxSimParseArguments({"--port", "0", "--password=pw", "--version", "2295beta3"});
  EXPECT_EQ(options.port, 0);
  EXPECT_EQ(options.host, "127.0.0.1");
  EXPECT_EQ(options.password, "pw");
  EXPECT_EQ(options.version.minor, 103u);
  EXPECT_TRUE(vxSimParseArguments({"--help"}).help);
  EXPECT_EQ(VXSimOptions().port, 6260);
}

TEST(SimOptions, RefusesUnknownOptionsMissingValuesAndBadPorts) {
  auto textOf = [](std::vector<std::string> arguments) {
    return failureOf<VXSimUsageException>([&] { vxSimParseArguments(arguments); });
  };
  EXPECT_EQ(textOf({"--colour"}), "Unknown option: --colour");
  EXPECT_EQ(textOf({"--port"}), "Missing value for --port");
  EXPECT_EQ(textOf({"--port", "65536"}), "Bad port: \"65536\"");
  EXPECT_EQ(textOf({"--port=-1"}), "Bad port: \"-1\"");
  EXPECT_EQ(textOf({"--control-port", "70000"}), "Bad control port: \"70000\"");
  EXPECT_EQ(textOf({"--fault", "close 0"}), "Bad fault: \"close 0\"");
}

TEST(SimOptions, AControlPortAndFaultsFromTheStartAreOptional) {
  EXPECT_EQ(VXSimOptions().controlPort, -1);
  EXPECT_TRUE(VXSimOptions().faults.empty());
  const VXSimOptions options =
      vxSimParseArguments({"--control-port=0", "--fault", "delay 50", "--fault=magic"});
  EXPECT_EQ(options.controlPort, 0);
  EXPECT_EQ(options.faults, (std::vector<std::string>{"delay 50", "magic"}));
}
