#pragma once
// The hidden-window descriptor handler, Windows only: WSAAsyncSelect() turns socket events into
// window messages (0x373) for a hidden window of the creating thread, and mainLoop() pumps the
// thread's messages. It is the default handler of a thread on Windows.
#ifdef _WIN32
#include "foundation/fd_handler.h"

// Owns its hidden window and is attached to the creating thread, which must be the only one to
// use it and pump it. mainLoop(-2) returns after the first pass that handled a socket message;
// 0 and -1 run until the timer of a positive timeout or a wakeUp() ends them. Waitable handles
// are refused with AFCFDHandlerWindowHandleException before anything is registered; failures of
// WSAAsyncSelect() are logged and leave the request registered.
class AFCFDHandlerWindow : public AFCFDHandler {
 public:
  // Throws AFCSelectFailedException "Cannot create socket sink window".
  AFCFDHandlerWindow();
  ~AFCFDHandlerWindow() override;

  void addRequest(AFCFDRequest& request) override;
  void removeRequest(AFCFDRequest& request) override;
  void changeRequest(AFCFDRequest& request) override;
  // Posts the loop's timer message; callable from any thread.
  bool wakeUp() override;
  void mainLoop(int timeoutMs) override;

 protected:
  virtual void createWindow();

 private:
  friend struct AFCFDHandlerWindowProcedure;
  // One 0x373 message: the socket and the lParam of WSAAsyncSelect().
  void processMessage(uintptr_t socket, intptr_t eventsAndError);
  void select(AFCFDRequest& request, uint32_t networkEvents, const char* operation);

  void* window_ = nullptr;  // HWND
};
#endif
