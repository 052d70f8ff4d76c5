#pragma once
// A named, non-recursive mutex with dead-lock, busy and abandoned handling, and its scoped lock.
// The name only appears in messages.
#include <cstdint>
#include <memory>
#include <string>

#include "foundation/exception.h"

AFC_DECLARE_EXCEPTION(AFCMutexException, AFCException);

class AFCMutexBusyException : public AFCMutexException {
 public:
  AFCMutexBusyException() : AFCMutexException("Busy") {}
};

class AFCMutexDeadLockException : public AFCMutexException {
 public:
  AFCMutexDeadLockException() : AFCMutexException("Dead lock") {}
};

// Owned by one thread at a time; any thread may lock it. When the owner thread ends without
// unlocking, the next locker takes it over and the error log gets "Mutex <name> was abandoned!".
// Locking is skipped while the process shuts down (see afcSetProcessShuttingDown).
// Throws AFCMutexException: "CreateMutex() failed" when it cannot be made, "WaitForSingleObject
// failed, " and the error text when a wait fails, AFCMutexDeadLockException when the owner locks
// it again, AFCMutexBusyException when a limited wait runs out.
// Destroying it while a thread holds or waits for it is an error of the caller.
class AFCMutex {
 public:
  explicit AFCMutex(std::string name = {});
  ~AFCMutex();
  AFCMutex(const AFCMutex&) = delete;
  AFCMutex& operator=(const AFCMutex&) = delete;

  // Waits without limit. False when the lock was skipped for shutdown (do not unlock then).
  bool lock();
  // Waits at most timeoutMs milliseconds (0 only tries); as lock() otherwise.
  bool tryLock(int64_t timeoutMs);
  // Only the owner may unlock; for any other thread it throws AFCMutexException.
  void unlock();
  const std::string& getName() const { return name_; }

 private:
  struct Impl;
  // "Mutex <name> was abandoned!" to the error log; the caller now owns the mutex.
  void reportAbandoned() const;

  std::string name_;
  std::unique_ptr<Impl> impl_;
};

// Holds an AFCMutex for a scope; throws what lock() and tryLock() throw.
class AFCMutexLock {
 public:
  explicit AFCMutexLock(AFCMutex& mutex) : mutex_(mutex), locked_(mutex.lock()) {}
  AFCMutexLock(AFCMutex& mutex, int64_t timeoutMs)
      : mutex_(mutex), locked_(mutex.tryLock(timeoutMs)) {}
  ~AFCMutexLock() {
    if (locked_) mutex_.unlock();
  }
  AFCMutexLock(const AFCMutexLock&) = delete;
  AFCMutexLock& operator=(const AFCMutexLock&) = delete;

 private:
  AFCMutex& mutex_;
  const bool locked_;
};
