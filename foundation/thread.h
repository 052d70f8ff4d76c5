#pragma once
// Threads of the foundation: AFCThread with its start handshake and stop request, the per-thread
// data (AFCThreadData), and the process-wide shutdown flag that turns thread starts and mutex
// locks into no-ops while the module unloads.
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

#include "foundation/class.h"
#include "foundation/event.h"
#include "foundation/exception.h"
#include "foundation/object.h"

AFC_DECLARE_EXCEPTION(AFCThreadException, AFCException);
// Thrown inside a thread body (init or run) to end the thread quietly.
AFC_DECLARE_EXCEPTION(AFCEndThreadException, AFCException);

// Set once the module begins to unload: from then on no thread is started and no mutex is waited
// for, so the unload path cannot block on threads that are already gone.
void afcSetProcessShuttingDown(bool shuttingDown);
bool afcIsProcessShuttingDown();

class AFCFDHandler;
class AFCThread;

// Data that belongs to one thread, made on the thread's first call of current() and destroyed
// when the thread ends. Only its own thread touches it, so it needs no lock.
class AFCThreadData {
 public:
  static AFCThreadData& current();

  // The descriptor handler attached to this thread; not owned.
  AFCFDHandler* getFDHandler() const { return fdHandler_; }
  void setFDHandler(AFCFDHandler* handler) { fdHandler_ = handler; }
  // The AFCThread whose body runs on this thread; nullptr for threads it did not start.
  AFCThread* getThread() const { return thread_; }

 private:
  friend class AFCThread;
  AFCFDHandler* fdHandler_ = nullptr;
  AFCThread* thread_ = nullptr;
};

// A thread running the virtual body of a subclass. start() returns once the new thread has run
// init(), so whatever init() sets up is ready for the caller; run() follows on the new thread.
// The body may wait on the stop event, which requestStop() signals (auto-reset).
//
// The owner must end the body and call waitForExit() before the subclass part is destroyed (the
// most derived destructor is the place); this destructor only asks for a stop and waits, as a
// last resort. start(), requestStop() and
// waitForExit() may be called from any thread. An AFCEndThreadException from the body ends the
// thread quietly; any other exception ends it with one line in the error log, and so, on
// Windows once AFCCrashDump::install() ran, does a hardware fault (as AFCRunTimeException).
// start() throws AFCThreadException: "Can't start thread <class> twice!", "_beginthreadex failed",
// "Thread ended prematurely before initialization done" (init() did not finish).
class AFCThread : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  enum State { NOT_STARTED, STARTED, ENDED };

  // name: for diagnostics ("FD-EventThread").
  explicit AFCThread(std::string name = {});
  ~AFCThread() override;
  AFCThread(const AFCThread&) = delete;
  AFCThread& operator=(const AFCThread&) = delete;

  // Does nothing while the process shuts down.
  void start();
  void requestStop() { stopEvent_.signal(); }
  // Waits until the body has ended; "Thread not started" before start(), "waitForExit:
  // WaitForSingleObject failed" when the thread cannot be waited for (such as from itself).
  void waitForExit();

  State getState() const;
  const std::string& getName() const { return name_; }
  std::thread::id getThreadId() const;

 protected:
  // Runs on the new thread before start() returns.
  virtual void init() {}
  virtual void run() = 0;
  AFCEvent& getStopEvent() { return stopEvent_; }

 private:
  void threadMain();
  // The body, with the exceptions it may throw caught and reported.
  template <class Step>
  bool guarded(Step step);

  const std::string name_;
  AFCEvent stopEvent_;
  mutable std::mutex stateLock_;  // guards state_, initDone_, id_ and the assignment of thread_
  std::condition_variable stateChanged_;
  State state_ = NOT_STARTED;
  bool initDone_ = false;
  std::thread::id id_;   // kept after the join, for diagnostics
  std::mutex joinLock_;  // one joiner at a time
  std::thread thread_;
};
