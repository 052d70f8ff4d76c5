// Structured exceptions on Windows. g++ cannot catch a structured exception as a C++ exception,
// and throwing out of an exception handler would unwind through the system's dispatcher. So a
// vectored handler, which sees every hardware fault first, writes the dump "ORUDUMP" asks for
// and, in a translating thread, resumes the thread in a small trampoline as if the faulting
// instruction had called it; the trampoline throws AFCRunTimeException, which then unwinds from
// the faulting frame outwards like any C++ exception.
#include <windows.h>
// dbghelp.h needs the types of windows.h.
#include <dbghelp.h>

#include <cstdint>
#include <ctime>
#include <string>

#include "foundation/crash_dump.h"
#include "foundation/errlog.h"
#include "foundation/exception.h"
#include "foundation/unique_handle.h"

static_assert(sizeof(void*) == 8, "the fault trampoline is written for x64");

namespace {
struct FileTraits {
  using Type = HANDLE;
  static HANDLE invalid() noexcept { return INVALID_HANDLE_VALUE; }
  static void close(HANDLE handle) noexcept { CloseHandle(handle); }
};

using MiniDumpWriteDumpFunction = BOOL(WINAPI*)(HANDLE, DWORD, HANDLE, MINIDUMP_TYPE,
                                                PMINIDUMP_EXCEPTION_INFORMATION,
                                                PMINIDUMP_USER_STREAM_INFORMATION,
                                                PMINIDUMP_CALLBACK_INFORMATION);

// The fault the trampoline throws, left by the handler on the faulting thread.
struct PendingFault {
  uint32_t code;
  uint64_t codeAddress;
  uint64_t dataAddress;
};
thread_local PendingFault pendingFault;
// Set while the handler runs on this thread: a fault inside it goes on to the frame handlers.
thread_local bool handlingFault = false;
}  // namespace

extern "C" [[noreturn]] void afcThrowPendingFault() {
  throw AFCRunTimeException(pendingFault.code, pendingFault.codeAddress, pendingFault.dataAddress);
}

// Entered with the faulting frame's stack pointer less the pushed return address, which need not
// leave the stack aligned: the frame pointer lets the unwinder step back over the alignment.
extern "C" void afcFaultTrampoline();
asm(R"(
    .text
    .p2align 4
    .globl afcFaultTrampoline
    .def afcFaultTrampoline; .scl 2; .type 32; .endef
afcFaultTrampoline:
    .seh_proc afcFaultTrampoline
    pushq %rbp
    .seh_pushreg %rbp
    movq %rsp, %rbp
    .seh_setframe %rbp, 0
    .seh_endprologue
    andq $-16, %rsp
    subq $32, %rsp
    call afcThrowPendingFault
    int3
    .seh_endproc
)");

namespace {
void log(const std::string& message) { AFC_REPORT(AFC_ERRLOG_ERROR, "libAFC", message); }

std::string programPath() {
  char path[MAX_PATH];
  const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
  return length == 0 || length >= MAX_PATH ? std::string("afc") : std::string(path, length);
}

// The copy beside the executable first, so that a program can bring a newer one than the system's.
HMODULE loadDbghelp() {
  std::string beside = programPath();
  HMODULE module = nullptr;
  if (const auto slash = beside.find_last_of("\\/"); slash != std::string::npos) {
    beside.replace(slash + 1, std::string::npos, "DBGHELP.DLL");
    module = LoadLibraryA(beside.c_str());
  }
  return module != nullptr ? module : LoadLibraryA("DBGHELP.DLL");
}

MiniDumpWriteDumpFunction miniDumpWriteDump() {
  static const HMODULE dbghelp = loadDbghelp();
  if (dbghelp == nullptr) {
    log("DBGHELP.DLL not found");
    return nullptr;
  }
  // Through void (*)(), the one function type every other converts from without a warning.
  const auto function = reinterpret_cast<MiniDumpWriteDumpFunction>(
      reinterpret_cast<void (*)()>(GetProcAddress(dbghelp, "MiniDumpWriteDump")));
  if (function == nullptr) log("DBGHELP.DLL too old");
  return function;
}

std::string dumpPath() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  std::tm local{};
  local.tm_mday = now.wDay;
  local.tm_mon = now.wMonth - 1;
  local.tm_hour = now.wHour;
  local.tm_min = now.wMinute;
  char path[MAX_PATH + 32];
  AFCCrashDump::fileName(path, sizeof path, programPath().c_str(), local, ".dmp");
  return path;
}

void writeDump(int kind, EXCEPTION_POINTERS* pointers) {
  const MiniDumpWriteDumpFunction write = miniDumpWriteDump();
  if (write == nullptr) return;
  const std::string path = dumpPath();
  const AFCUniqueHandle<FileTraits> file(CreateFileA(
      path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.valid()) {
    const DWORD error = GetLastError();
    log("Failed to create dump file '" + path + "' (error " + std::to_string(error) + ")");
    return;
  }
  MINIDUMP_EXCEPTION_INFORMATION exception{GetCurrentThreadId(), pointers, FALSE};
  const MINIDUMP_TYPE type = kind == 1 ? MiniDumpWithFullMemory : MiniDumpNormal;
  if (write(GetCurrentProcess(), GetCurrentProcessId(), file.get(), type, &exception, nullptr,
            nullptr)) {
    log("Saved dump file to '" + path + "'");
  } else {
    const DWORD error = GetLastError();
    log("Failed to save dump file to '" + path + "' (error " + std::to_string(error) + ")");
  }
}

// The hardware faults; the other structured exceptions (C++ throws, debugger events, a host's
// own codes) pass untouched.
bool isFault(DWORD code) {
  switch (code) {
    case EXCEPTION_ACCESS_VIOLATION:
    case EXCEPTION_DATATYPE_MISALIGNMENT:
    case EXCEPTION_ARRAY_BOUNDS_EXCEEDED:
    case EXCEPTION_FLT_DENORMAL_OPERAND:
    case EXCEPTION_FLT_DIVIDE_BY_ZERO:
    case EXCEPTION_FLT_INEXACT_RESULT:
    case EXCEPTION_FLT_INVALID_OPERATION:
    case EXCEPTION_FLT_OVERFLOW:
    case EXCEPTION_FLT_STACK_CHECK:
    case EXCEPTION_FLT_UNDERFLOW:
    case EXCEPTION_INT_DIVIDE_BY_ZERO:
    case EXCEPTION_INT_OVERFLOW:
    case EXCEPTION_PRIV_INSTRUCTION:
    case EXCEPTION_IN_PAGE_ERROR:
    case EXCEPTION_ILLEGAL_INSTRUCTION:
    case EXCEPTION_STACK_OVERFLOW:
      return true;
    default:
      return false;
  }
}

// A stack overflow leaves no stack to throw on, and a non-continuable fault cannot resume.
bool translatable(const EXCEPTION_RECORD& record) {
  return AFCCrashDump::translating() && record.ExceptionCode != EXCEPTION_STACK_OVERFLOW &&
         (record.ExceptionFlags & EXCEPTION_NONCONTINUABLE) == 0;
}

// Resumes in the trampoline as if the faulting instruction had called it. The return address is
// one past the fault because the unwinder looks up the instruction before a return address.
void resumeInTrampoline(const EXCEPTION_RECORD& record, CONTEXT& context) {
  const bool accessViolation =
      record.ExceptionCode == EXCEPTION_ACCESS_VIOLATION && record.NumberParameters >= 2;
  pendingFault = {static_cast<uint32_t>(record.ExceptionCode),
                  reinterpret_cast<uint64_t>(record.ExceptionAddress),
                  accessViolation ? static_cast<uint64_t>(record.ExceptionInformation[1]) : 0};
  context.Rsp -= sizeof(DWORD64);
  *reinterpret_cast<DWORD64*>(context.Rsp) = context.Rip + 1;
  context.Rip = reinterpret_cast<DWORD64>(&afcFaultTrampoline);
}

LONG CALLBACK onException(EXCEPTION_POINTERS* pointers) {
  const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
  if (handlingFault || !isFault(record.ExceptionCode)) return EXCEPTION_CONTINUE_SEARCH;
  handlingFault = true;
  if (const int kind = AFCCrashDump::requestedKind(); kind != 0) writeDump(kind, pointers);
  handlingFault = false;
  if (!translatable(record)) return EXCEPTION_CONTINUE_SEARCH;
  resumeInTrampoline(record, *pointers->ContextRecord);
  return EXCEPTION_CONTINUE_EXECUTION;
}
}  // namespace

void AFCCrashDump::install() {
  static const bool installed = AddVectoredExceptionHandler(1, onException) != nullptr;
  (void)installed;
}
