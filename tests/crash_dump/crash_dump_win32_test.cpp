#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "foundation/crash_dump.h"
#include "foundation/thread.h"
#include "tests/crash_dump/crash_files.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {
std::filesystem::path program() {
  char path[MAX_PATH];
  return std::string(path, GetModuleFileNameA(nullptr, path, MAX_PATH));
}
}  // namespace

// The fault is translated in this process: inside a Translation scope the access violation comes
// back as an exception at the call, and ORUDUMP decides whether a minidump is written first.
TEST(CrashDumpWin32, AccessViolationIsThrownAndDumpedWhenAsked) {
  AFCCrashDump::install();
  const struct {
    const char* orudump;
    bool dumps;
  } cases[] = {{"2", true}, {nullptr, false}, {"0", false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.orudump != nullptr ? c.orudump : "unset");
    removeCrashFiles(program(), ".dmp");
    setOrudump(c.orudump);
    CapturedErrLog log;
    const std::time_t before = std::time(nullptr);
    const std::string text = failureOf<AFCRunTimeException>([] {
      AFCCrashDump::Translation translation;
      readAt(0x10);
    });
    setOrudump(nullptr);
    // The throw unwound the lambda and ran the scope's destructor on the way.
    EXPECT_FALSE(AFCCrashDump::translating());
    ASSERT_THAT(text, testing::MatchesRegex(
                          "Runtime exception ACCESS_VIOLATION CodeAddress=\\w+ DataAddress=10"));
    const auto codeAddress = std::stoull(text.substr(text.find('=') + 1), nullptr, 16);
    const auto function = reinterpret_cast<std::uintptr_t>(&readAt);
    EXPECT_THAT(codeAddress, testing::AllOf(testing::Ge(function), testing::Lt(function + 64)));
    const auto files = crashFiles(program(), ".dmp");
    if (!c.dumps) {
      EXPECT_THAT(files, testing::IsEmpty());
      EXPECT_THAT(log.messages(), testing::IsEmpty());
      continue;
    }
    ASSERT_EQ(files.size(), 1u);
    const std::string name = files[0].filename().string();
    EXPECT_THAT(crashFileNames(program(), before, std::time(nullptr), ".dmp"),
                testing::Contains(name));
    char signature[4] = {};
    std::ifstream(files[0], std::ios::binary).read(signature, sizeof signature);
    EXPECT_EQ(std::string(signature, sizeof signature), "MDMP");
    EXPECT_THAT(log.messages(),
                testing::ElementsAre(testing::AllOf(testing::StartsWith("Saved dump file to '"),
                                                    testing::EndsWith("\\" + name + "'"))));
    std::filesystem::remove(files[0]);
  }
}

// Outside a scope the fault goes on to the next handler, here one that points the faulting read
// at a real value, after it was dumped and logged.
TEST(CrashDumpWin32, FaultOutsideAScopeIsOnlyDumpedAndLogged) {
  static const int value = 42;
  const PVECTORED_EXCEPTION_HANDLER redirectRead = [](EXCEPTION_POINTERS* pointers) -> LONG {
    if (pointers->ExceptionRecord->ExceptionCode != EXCEPTION_ACCESS_VIOLATION) {
      return EXCEPTION_CONTINUE_SEARCH;
    }
    CONTEXT& context = *pointers->ContextRecord;
    for (DWORD64 CONTEXT::*reg :
         {&CONTEXT::Rax, &CONTEXT::Rcx, &CONTEXT::Rdx, &CONTEXT::Rbx, &CONTEXT::Rsi, &CONTEXT::Rdi,
          &CONTEXT::R8, &CONTEXT::R9, &CONTEXT::R10, &CONTEXT::R11}) {
      if (context.*reg == 0x10) context.*reg = reinterpret_cast<DWORD64>(&value);
    }
    return EXCEPTION_CONTINUE_EXECUTION;
  };
  AFCCrashDump::install();
  removeCrashFiles(program(), ".dmp");
  setOrudump("2");
  CapturedErrLog log;
  void* next = AddVectoredExceptionHandler(0, redirectRead);
  const int read = readAt(0x10);
  RemoveVectoredExceptionHandler(next);
  setOrudump(nullptr);
  EXPECT_EQ(read, value);
  EXPECT_THAT(log.messages(), testing::ElementsAre(testing::StartsWith("Saved dump file to '")));
  EXPECT_EQ(crashFiles(program(), ".dmp").size(), 1u);
  removeCrashFiles(program(), ".dmp");
}

// An AFCThread's body runs in a Translation scope: a fault ends that thread, not the process.
TEST(CrashDumpWin32, FaultInAThreadBodyEndsOnlyThatThread) {
  class FaultingThread : public AFCThread {
   public:
    FaultingThread() : AFCThread("Faulting") {}
    ~FaultingThread() override { waitForExit(); }

   protected:
    void run() override { readAt(0x20); }
  };
  AFCCrashDump::install();
  CapturedErrLog log;
  {
    FaultingThread thread;
    thread.start();
  }
  EXPECT_THAT(log.messages(),
              testing::ElementsAre(testing::MatchesRegex(
                  "Thread Faulting ended by exception, Runtime exception ACCESS_VIOLATION "
                  "CodeAddress=\\w+ DataAddress=20")));
}
