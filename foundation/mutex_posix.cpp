// A robust, error-checking pthread mutex: the system tells the next locker when the owner thread
// ended while holding it (EOWNERDEAD) and refuses a relock by the owner (EDEADLK), which is the
// behaviour of the Windows kernel mutex of the other build. The owner is also kept here, so that
// a thread that does not own the mutex is refused before it reaches the system's unlock.
#include <pthread.h>
#include <time.h>

#include <atomic>
#include <cerrno>
#include <system_error>
#include <thread>

#include "foundation/mutex.h"
#include "foundation/thread.h"

struct AFCMutex::Impl {
  // True when the lock is taken; throws for every result that does not give it.
  bool acquired(int result, const AFCMutex& owner);

  pthread_mutex_t mutex;
  std::atomic<std::thread::id> ownerThread;  // empty while free; only the owner stores its id
};

namespace {
std::string errorText(int code) { return std::generic_category().message(code); }

bool makeMutex(pthread_mutex_t& mutex) {
  pthread_mutexattr_t attributes;
  if (pthread_mutexattr_init(&attributes) != 0) return false;
  const bool made = pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_ERRORCHECK) == 0 &&
                    pthread_mutexattr_setrobust(&attributes, PTHREAD_MUTEX_ROBUST) == 0 &&
                    pthread_mutex_init(&mutex, &attributes) == 0;
  pthread_mutexattr_destroy(&attributes);
  return made;
}

// The absolute CLOCK_REALTIME deadline pthread_mutex_timedlock wants.
timespec deadlineIn(int64_t timeoutMs) {
  timespec deadline;
  clock_gettime(CLOCK_REALTIME, &deadline);
  const int64_t ms = timeoutMs < 0 ? 0 : timeoutMs;
  deadline.tv_sec += static_cast<time_t>(ms / 1000);
  deadline.tv_nsec += static_cast<long>(ms % 1000) * 1'000'000L;
  if (deadline.tv_nsec >= 1'000'000'000L) {
    deadline.tv_nsec -= 1'000'000'000L;
    ++deadline.tv_sec;
  }
  return deadline;
}
}  // namespace

AFCMutex::AFCMutex(std::string name) : name_(std::move(name)), impl_(std::make_unique<Impl>()) {
  if (!makeMutex(impl_->mutex)) throw AFCMutexException("CreateMutex() failed");
}

AFCMutex::~AFCMutex() { pthread_mutex_destroy(&impl_->mutex); }

bool AFCMutex::lock() {
  if (afcIsProcessShuttingDown()) return false;
  return impl_->acquired(pthread_mutex_lock(&impl_->mutex), *this);
}

bool AFCMutex::tryLock(int64_t timeoutMs) {
  if (afcIsProcessShuttingDown()) return false;
  const timespec deadline = deadlineIn(timeoutMs);
  return impl_->acquired(pthread_mutex_timedlock(&impl_->mutex, &deadline), *this);
}

bool AFCMutex::Impl::acquired(int result, const AFCMutex& owner) {
  switch (result) {
    case 0:
      break;
    case EOWNERDEAD:
      pthread_mutex_consistent(&mutex);
      owner.reportAbandoned();
      break;
    case EDEADLK:
      throw AFCMutexDeadLockException();
    case ETIMEDOUT:
      throw AFCMutexBusyException();
    default:
      throw AFCMutexException("WaitForSingleObject failed, " + errorText(result));
  }
  ownerThread.store(std::this_thread::get_id());
  return true;
}

void AFCMutex::unlock() {
  if (impl_->ownerThread.load() != std::this_thread::get_id()) {
    throw AFCMutexException("ReleaseMutex failed, " + errorText(EPERM));
  }
  impl_->ownerThread.store(std::thread::id());
  const int result = pthread_mutex_unlock(&impl_->mutex);
  if (result != 0) throw AFCMutexException("ReleaseMutex failed, " + errorText(result));
}
