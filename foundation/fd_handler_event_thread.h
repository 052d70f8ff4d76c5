#pragma once
// A background thread ("FD-EventThread") that pumps an event-variant handler, for owners that
// have no loop of their own. Notifications then run on this thread, not the owner's.
#include "foundation/fd_handler.h"
#include "foundation/thread.h"

// The handler is not owned and must outlive the thread. The thread ends when stop() is called
// or when a wait fails (logged as "AFCFDHandlerEventThread::WaitForMultipleObjects, e=" and the
// error code). start() throws what AFCThread::start() throws.
class AFCFDHandlerEventThread : public AFCThread {
 public:
  explicit AFCFDHandlerEventThread(AFCFDHandlerEvent& handler)
      : AFCThread("FD-EventThread"), handler_(handler) {}
  ~AFCFDHandlerEventThread() override { stop(); }

  // Ends the loop and waits for the thread; does nothing when it was never started.
  void stop();

 protected:
  void run() override;

 private:
  AFCFDHandlerEvent& handler_;
};
