#include "automation/async_processor.h"

bool CAsyncProcessor::waitEvent() {
  for (;;) {
    // The close event comes first, so a close wins over work that is pending as well.
    if (closeEvent_.wait(0)) return false;
    switch (registry_.waitForEvents(-1)) {
      case AFCFDHandlerEvent::WaitResult::Ready:
        return !closeEvent_.wait(0);
      case AFCFDHandlerEvent::WaitResult::Failed:
        return false;
      default:
        // Woken, by close() or by anyone else: the close event tells.
        break;
    }
  }
}

void CAsyncProcessor::process() { registry_.mainLoop(0); }

void CAsyncProcessor::close() {
  closeEvent_.signal();
  registry_.wakeUp();
}
