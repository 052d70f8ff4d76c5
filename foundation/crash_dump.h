#pragma once
// Crash dumps: what a fault leaves behind for post-mortem analysis, and on Windows the
// translation of structured exceptions into AFCRunTimeException.
//
// AFCCrashDump::install() sets up the process's fault handling; hosts call it once at start-up
// (later calls, from any thread, do nothing). When "ORUDUMP" holds a non-zero integer at the
// moment of a fault, a file named after the executable is written beside it,
// "<program>_crash_<day>_<month>_<hour>_<minute>", and the error log says where it went:
//  - Windows: "<program>_crash_....dmp", a minidump through DBGHELP.DLL (full memory for kind 1,
//    a normal dump otherwise). A vectored exception handler sees the hardware faults of every
//    thread, before any frame handler: a fault that some __except later handles is dumped too.
//    In a thread inside an AFCCrashDump::Translation scope a continuable fault is thrown
//    on as AFCRunTimeException from the faulting instruction, so ordinary catch blocks report
//    it; elsewhere, and for stack overflows, the fault is only dumped and logged and then goes
//    on to the frame handlers as before (usually ending the process).
//  - POSIX: "<program>_crash_....txt", a text report with the signal, the fault address and a
//    backtrace, written by handlers for SIGSEGV, SIGBUS, SIGFPE, SIGILL and SIGABRT (on an
//    alternate stack for the thread that called install()); the handler then lets the signal
//    end the process. Nothing is translated.
// Reporting never throws; a dump that cannot be written is logged.
#include <cstddef>
#include <ctime>

class AFCCrashDump {
 public:
  static void install();

  // The dump kind the environment asks for: the integer value of the first 31 characters of
  // "ORUDUMP" (leading blanks and a sign allowed, reading stops at the first other character),
  // 0 when it is unset. Allocates nothing, so a signal handler may call it.
  static int requestedKind();

  // Writes programPath without its extension, "_crash_%d_%d_%d_%02d" (local day of the month,
  // month, hour, minute) and extension into out, cut to size - 1 characters (size at least 1)
  // and always terminated. Allocates nothing, so a signal handler may call it.
  static void fileName(char* out, std::size_t size, const char* programPath, const std::tm& local,
                       const char* extension);

  // While one lives on a thread, a hardware fault on that thread becomes AFCRunTimeException
  // (Windows, after install()). The throw starts at the faulting instruction, which is sound in
  // code compiled with -fnon-call-exceptions (vx::foundation passes it on to its users on
  // Windows); in foreign code the destructors between the fault and the catch may be skipped,
  // or the throw may end in std::terminate. Has no effect on POSIX. Scopes nest; each belongs
  // to the thread that made it.
  class Translation {
   public:
    Translation();
    ~Translation();
    Translation(const Translation&) = delete;
    Translation& operator=(const Translation&) = delete;
  };
  // True while the calling thread is inside a Translation scope.
  static bool translating();
};
