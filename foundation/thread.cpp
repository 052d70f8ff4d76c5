#include "foundation/thread.h"

#include <atomic>
#include <system_error>

#include "foundation/class.h"
#include "foundation/crash_dump.h"
#include "foundation/errlog.h"

namespace {
std::atomic<bool> shuttingDown{false};
}  // namespace

void afcSetProcessShuttingDown(bool value) { shuttingDown.store(value); }

bool afcIsProcessShuttingDown() { return shuttingDown.load(); }

AFCThreadData& AFCThreadData::current() {
  thread_local AFCThreadData data;
  return data;
}

// A class record for the name in messages; threads are not made by name, so it is not
// registered. Subclasses that declare their own record are named by it.
const AFCClass& AFCThread::staticClass() {
  static const AFCClass record("AFCThread", &AFCObject::staticClass());
  return record;
}

AFCThread::AFCThread(std::string name) : name_(std::move(name)) {}

AFCThread::~AFCThread() {
  std::unique_lock guard(joinLock_);
  if (!thread_.joinable()) return;
  // A body that deletes its own object cannot wait for itself.
  if (thread_.get_id() == std::this_thread::get_id()) {
    thread_.detach();
    return;
  }
  requestStop();
  thread_.join();
}

void AFCThread::start() {
  if (afcIsProcessShuttingDown()) return;
  std::unique_lock guard(stateLock_);
  if (state_ != NOT_STARTED) {
    throw AFCThreadException("Can't start thread " + getClass()->getName() + " twice!");
  }
  try {
    thread_ = std::thread(&AFCThread::threadMain, this);
  } catch (const std::system_error&) {
    throw AFCThreadException("_beginthreadex failed");
  }
  state_ = STARTED;
  id_ = thread_.get_id();
  stateChanged_.wait(guard, [this] { return initDone_ || state_ == ENDED; });
  if (initDone_) return;
  std::lock_guard join(joinLock_);
  thread_.join();
  throw AFCThreadException("Thread ended prematurely before initialization done");
}

void AFCThread::waitForExit() {
  std::thread::id id;
  {
    std::lock_guard guard(stateLock_);
    if (state_ == NOT_STARTED) throw AFCThreadException("Thread not started");
    id = id_;
  }
  // Waiting for itself would never end; not every platform's join refuses it.
  if (id == std::this_thread::get_id()) {
    throw AFCThreadException("waitForExit: WaitForSingleObject failed");
  }
  std::lock_guard guard(joinLock_);
  if (!thread_.joinable()) return;
  try {
    thread_.join();
  } catch (const std::system_error&) {
    throw AFCThreadException("waitForExit: WaitForSingleObject failed");
  }
}

AFCThread::State AFCThread::getState() const {
  std::lock_guard guard(stateLock_);
  return state_;
}

std::thread::id AFCThread::getThreadId() const {
  std::lock_guard guard(stateLock_);
  return id_;
}

void AFCThread::threadMain() {
  // A hardware fault in the body ends the thread through guarded() instead of the process.
  const AFCCrashDump::Translation translation;
  AFCThreadData::current().thread_ = this;
  if (guarded([this] { init(); })) {
    {
      std::lock_guard guard(stateLock_);
      initDone_ = true;
    }
    stateChanged_.notify_all();
    guarded([this] { run(); });
  }
  AFCThreadData::current().thread_ = nullptr;
  std::lock_guard guard(stateLock_);
  state_ = ENDED;
  // Notified under the lock: once start() sees ENDED it may join and the object may go.
  stateChanged_.notify_all();
}

template <class Step>
bool AFCThread::guarded(Step step) {
  try {
    step();
    return true;
  } catch (const AFCEndThreadException&) {
  } catch (const std::exception& e) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "Thread " << name_ << " ended by exception, " << e.what() << '\n';
  } catch (...) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "Thread " << name_ << " ended by unknown exception\n";
  }
  return false;
}
