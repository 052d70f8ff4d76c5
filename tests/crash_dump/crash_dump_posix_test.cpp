#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "foundation/crash_dump.h"
#include "tests/crash_dump/crash_files.h"

// Each fault happens in a death-test child, a fresh run of this program, never in the test
// process itself: install() takes the fatal signals over, in the ASan build from ASan's own
// SIGSEGV handler, which must stay in charge of the test process.
namespace {
struct FaultCase {
  const char* orudump;
  int signal;
  const char* name;  // in the report; nullptr when none is written
};

[[noreturn]] void crash(const FaultCase& c) {
  setOrudump(c.orudump);
  AFCCrashDump::install();
  AFCCrashDump::install();
  if (c.signal == SIGABRT) std::abort();
  readAt(0x10);
  std::abort();
}

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream in(file);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

class CrashDumpPosix : public testing::TestWithParam<FaultCase> {};
}  // namespace

TEST_P(CrashDumpPosix, FatalSignalWritesTheReportWhenAskedAndStillKills) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const FaultCase& c = GetParam();
  const auto program = std::filesystem::read_symlink("/proc/self/exe");
  removeCrashFiles(program, ".txt");
  const std::time_t before = std::time(nullptr);
  if (c.name != nullptr) {
    EXPECT_EXIT(crash(c), testing::KilledBySignal(c.signal),
                "Saved dump file to '.*_crash_[0-9_]+\\.txt'");
  } else {
    EXPECT_EXIT(crash(c), testing::KilledBySignal(c.signal),
                testing::Not(testing::HasSubstr("dump file")));
  }
  const auto files = crashFiles(program, ".txt");
  if (c.name == nullptr) {
    EXPECT_THAT(files, testing::IsEmpty());
    return;
  }
  ASSERT_EQ(files.size(), 1u);
  EXPECT_THAT(crashFileNames(program, before, std::time(nullptr), ".txt"),
              testing::Contains(files[0].filename().string()));
  const std::string report = contentOf(files[0]);
  EXPECT_THAT(report, testing::HasSubstr(std::string("Signal ") + c.name));
  if (c.signal == SIGSEGV) {
    EXPECT_THAT(report, testing::HasSubstr("Fault address 0x10\n"));
  }
  // The backtrace passes through this program's own frames.
  EXPECT_THAT(report, testing::HasSubstr(program.filename().string() + "("));
  std::filesystem::remove(files[0]);
}

INSTANTIATE_TEST_SUITE_P(Faults, CrashDumpPosix,
                         testing::Values(FaultCase{"2", SIGSEGV, "SIGSEGV"},
                                         FaultCase{"1", SIGABRT, "SIGABRT"},
                                         FaultCase{nullptr, SIGSEGV, nullptr},
                                         FaultCase{"0", SIGSEGV, nullptr}));
