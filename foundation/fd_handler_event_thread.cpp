#include "foundation/fd_handler_event_thread.h"

void AFCFDHandlerEventThread::stop() {
  if (getState() == NOT_STARTED) return;
  requestStop();
  handler_.wakeUp();
  waitForExit();
}

void AFCFDHandlerEventThread::run() {
  while (!getStopEvent().wait(0)) {
    switch (handler_.waitForEvents(-1)) {
      case AFCFDHandlerEvent::WaitResult::Ready:
        handler_.mainLoop(0);
        break;
      case AFCFDHandlerEvent::WaitResult::Failed:
        return;
      default:
        break;
    }
  }
}
