#pragma once
// Lets a script without a window message loop (a console host, a service) receive the session's
// events on its own thread: the processor's registry stands in for the session's default
// descriptor handler (install it with VXClientTcp::setAsyncRegistry before connecting), and the
// script loops on waitEvent() and process(), which calls the client's handlers and events on
// that thread. close() ends the loop.
//
// waitEvent() and process() belong to the script's thread; close() may come from any thread and
// only signals. The session must leave the registry (close, or take another one) before the
// processor goes. Nothing throws once constructed; construction throws
// AFCSelectFailedException ("Cannot create socket async event").
#include "foundation/event.h"
#include "foundation/fd_handler.h"

class CAsyncProcessor {
 public:
  CAsyncProcessor() = default;
  CAsyncProcessor(const CAsyncProcessor&) = delete;
  CAsyncProcessor& operator=(const CAsyncProcessor&) = delete;

  // Blocks until the processor is closed (false) or a registered descriptor has work (true). A
  // close wins when both are pending. A failed wait is logged ("AFCFDHandlerEventThread::
  // WaitForMultipleObjects, e=" and the system's error number) and gives false.
  bool waitEvent();
  // Dispatches what the registry holds: each descriptor with pending work gets its handler
  // called once. Does not block.
  void process();
  // Ends a waitEvent() in progress and every later one.
  void close();

  AFCFDHandlerEvent& getRegistry() { return registry_; }

 private:
  AFCFDHandlerEvent registry_;
  AFCEvent closeEvent_{true};  // manual reset: stays signalled once closed
};
