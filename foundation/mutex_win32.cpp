// A kernel mutex. The kernel reports an owner that ended while holding it (WAIT_ABANDONED); as
// kernel mutexes are recursive, the owner's thread id is kept to refuse a relock instead.
#include <windows.h>

#include <atomic>

#include "foundation/mutex.h"
#include "foundation/thread.h"

struct AFCMutex::Impl {
  // True when the lock is taken; throws for every result that does not give it.
  bool acquired(DWORD result, const AFCMutex& owner);
  // Throws AFCMutexDeadLockException when the calling thread owns the mutex; true when it took
  // over a mutex abandoned by an ended thread that had the caller's (reused) thread id; false
  // when the caller must wait as usual.
  bool tookOverFromSameId(const AFCMutex& owner);

  HANDLE handle = nullptr;
  std::atomic<DWORD> ownerThread{0};  // 0 while free; only the owner stores its own id
};

namespace {
std::string errorText(DWORD code) {
  char* text = nullptr;
  const DWORD length = FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<char*>(&text), 0, nullptr);
  std::string result = length != 0 ? std::string(text, length) : "error " + std::to_string(code);
  LocalFree(text);
  while (!result.empty() && (result.back() == '\n' || result.back() == '\r')) result.pop_back();
  return result;
}

DWORD waitLimit(int64_t timeoutMs) {
  if (timeoutMs <= 0) return 0;
  return timeoutMs >= static_cast<int64_t>(INFINITE) ? INFINITE - 1 : static_cast<DWORD>(timeoutMs);
}
}  // namespace

bool AFCMutex::Impl::tookOverFromSameId(const AFCMutex& owner) {
  if (ownerThread.load() != GetCurrentThreadId()) return false;
  // The kernel mutex is recursive, so a zero wait succeeds at once for the true owner, which
  // gives the extra count back. The stored id may instead be that of an ended thread whose id
  // the caller now has: then the wait takes the abandoned mutex over, or finds that another
  // waiter already did.
  const DWORD result = WaitForSingleObject(handle, 0);
  if (result == WAIT_OBJECT_0) {
    ReleaseMutex(handle);
    throw AFCMutexDeadLockException();
  }
  if (result == WAIT_TIMEOUT) return false;
  return acquired(result, owner);
}

bool AFCMutex::Impl::acquired(DWORD result, const AFCMutex& owner) {
  switch (result) {
    case WAIT_OBJECT_0:
      break;
    case WAIT_ABANDONED:
      owner.reportAbandoned();
      break;
    case WAIT_TIMEOUT:
      throw AFCMutexBusyException();
    default:
      throw AFCMutexException("WaitForSingleObject failed, " + errorText(GetLastError()));
  }
  ownerThread.store(GetCurrentThreadId());
  return true;
}

AFCMutex::AFCMutex(std::string name) : name_(std::move(name)), impl_(std::make_unique<Impl>()) {
  impl_->handle = CreateMutexA(nullptr, FALSE, nullptr);
  if (impl_->handle == nullptr) throw AFCMutexException("CreateMutex() failed");
}

AFCMutex::~AFCMutex() { CloseHandle(impl_->handle); }

bool AFCMutex::lock() {
  if (afcIsProcessShuttingDown()) return false;
  if (impl_->tookOverFromSameId(*this)) return true;
  return impl_->acquired(WaitForSingleObject(impl_->handle, INFINITE), *this);
}

bool AFCMutex::tryLock(int64_t timeoutMs) {
  if (afcIsProcessShuttingDown()) return false;
  if (impl_->tookOverFromSameId(*this)) return true;
  return impl_->acquired(WaitForSingleObject(impl_->handle, waitLimit(timeoutMs)), *this);
}

void AFCMutex::unlock() {
  // Cleared only by the owner, so another thread's mistaken unlock cannot erase the owner's id.
  if (impl_->ownerThread.load() != GetCurrentThreadId()) {
    throw AFCMutexException("ReleaseMutex failed, " + errorText(ERROR_NOT_OWNER));
  }
  impl_->ownerThread.store(0);
  if (!ReleaseMutex(impl_->handle)) {
    throw AFCMutexException("ReleaseMutex failed, " + errorText(GetLastError()));
  }
}
