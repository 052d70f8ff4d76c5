// Fatal signals on POSIX: a text crash report beside the executable when "ORUDUMP" asks for one,
// then the signal's default action. The handler runs on an alternate stack (so a stack overflow
// is reported too) and, up to the final log line, uses only async-signal-safe calls: the program
// path and the offset of local time are taken at install(), the time is computed by hand, and
// the text is composed in fixed buffers.
#include <execinfo.h>
#include <fcntl.h>
#include <limits.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <string>

#include "foundation/crash_dump.h"
#include "foundation/crash_text.h"
#include "foundation/errlog.h"

namespace {
constexpr int kFatalSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int kBacktraceFrames = 64;
// Seconds the final log line may take before the process ends anyway: the error log locks and
// allocates, and the faulting thread may have held its lock or the heap's.
constexpr unsigned kLogSeconds = 5;

// Filled once by install(), read by the handler.
char programPath[PATH_MAX] = "afc";
long utcOffsetSeconds = 0;  // local time minus UTC when install() ran
alignas(16) char alternateStack[64 * 1024];

const char* signalName(int signal) {
  switch (signal) {
    case SIGSEGV:
      return "SIGSEGV";
    case SIGBUS:
      return "SIGBUS";
    case SIGFPE:
      return "SIGFPE";
    case SIGILL:
      return "SIGILL";
    case SIGABRT:
      return "SIGABRT";
    default:
      return "signal";
  }
}

// The local time of day and date, from the offset install() saw (localtime_r takes a lock).
std::tm localNow() {
  const long long seconds = static_cast<long long>(time(nullptr)) + utcOffsetSeconds;
  long long days = seconds / 86400;
  long long secondOfDay = seconds % 86400;
  if (secondOfDay < 0) {
    secondOfDay += 86400;
    --days;
  }
  // Civil date from a day count, in 400-year eras starting on 1 March.
  days += 719468;
  const long long era = (days >= 0 ? days : days - 146096) / 146097;
  const long long dayOfEra = days - era * 146097;
  const long long yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const long long dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const long long monthFromMarch = (5 * dayOfYear + 2) / 153;
  std::tm local{};
  local.tm_mday = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  local.tm_mon = static_cast<int>(monthFromMarch < 10 ? monthFromMarch + 2 : monthFromMarch - 10);
  local.tm_hour = static_cast<int>(secondOfDay / 3600);
  local.tm_min = static_cast<int>(secondOfDay / 60 % 60);
  return local;
}

void writeAll(int fd, const char* data, std::size_t length) {
  while (length > 0) {
    const ssize_t written = write(fd, data, length);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return;
    data += written;
    length -= static_cast<std::size_t>(written);
  }
}

void writeReport(int fd, int signal, const siginfo_t* info) {
  char head[128];
  AFCCrashText text(head, sizeof head);
  text.text("Signal ");
  text.text(signalName(signal));
  text.text(" (");
  text.number(signal);
  text.text(")\nFault address ");
  text.hex(reinterpret_cast<std::uintptr_t>(info->si_addr));
  text.text("\nBacktrace:\n");
  writeAll(fd, text.data(), text.length());
  void* frames[kBacktraceFrames];
  backtrace_symbols_fd(frames, backtrace(frames, kBacktraceFrames), fd);
}

// The one step that is not async-signal-safe, so it comes last and under an alarm.
void logOutcome(const char* path, int error) {
  struct sigaction action {};
  action.sa_handler = SIG_DFL;
  sigaction(SIGALRM, &action, nullptr);
  alarm(kLogSeconds);
  if (error == 0) {
    AFC_REPORT(AFC_ERRLOG_ERROR, "libAFC", std::string("Saved dump file to '") + path + "'");
  } else {
    AFC_REPORT(AFC_ERRLOG_ERROR, "libAFC",
               std::string("Failed to create dump file '") + path + "' (error " +
                   std::to_string(error) + ")");
  }
}

void writeCrashReport(int signal, const siginfo_t* info) {
  char path[PATH_MAX + 32];
  AFCCrashDump::fileName(path, sizeof path, programPath, localNow(), ".txt");
  const int fd = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (fd < 0) {
    logOutcome(path, errno);
    return;
  }
  writeReport(fd, signal, info);
  close(fd);
  logOutcome(path, 0);
}

// Installed with SA_RESETHAND: the default action is back when this runs, so a fault inside it
// ends the process, and the signal raised at the end does what it would have done.
void onFatalSignal(int signal, siginfo_t* info, void*) {
  if (AFCCrashDump::requestedKind() != 0) writeCrashReport(signal, info);
  raise(signal);
}

void rememberProgram() {
  const ssize_t length = readlink("/proc/self/exe", programPath, sizeof programPath - 1);
  if (length > 0) programPath[length] = '\0';
  const time_t now = time(nullptr);
  std::tm local{};
  if (localtime_r(&now, &local) != nullptr) utcOffsetSeconds = local.tm_gmtoff;
  // The first backtrace() loads the unwinder, which allocates: do it now, not in the handler.
  void* frame;
  backtrace(&frame, 1);
}

// Keeps a stack the thread already has (a sanitizer's, say): replacing it would let its owner
// unmap ours.
void useAlternateStack() {
  stack_t current{};
  if (sigaltstack(nullptr, &current) == 0 && (current.ss_flags & SS_DISABLE) == 0) return;
  stack_t stack{};
  stack.ss_sp = alternateStack;
  stack.ss_size = sizeof alternateStack;
  sigaltstack(&stack, nullptr);
}

void installHandlers() {
  rememberProgram();
  useAlternateStack();
  struct sigaction action {};
  action.sa_sigaction = onFatalSignal;
  action.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESETHAND;
  sigemptyset(&action.sa_mask);
  for (const int signal : kFatalSignals) sigaction(signal, &action, nullptr);
}
}  // namespace

void AFCCrashDump::install() {
  static const bool installed = (installHandlers(), true);
  (void)installed;
}
