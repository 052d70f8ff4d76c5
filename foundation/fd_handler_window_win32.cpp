#include <winsock2.h>
// WinSock's headers come before the rest of Windows'.
#include <windows.h>

#include <cstdint>

#include "foundation/errlog.h"
#include "foundation/fd_handler_window.h"
#include "foundation/socket.h"

namespace {
constexpr UINT kSocketMessage = 0x373;
constexpr UINT_PTR kTimerId = 1;
const char kClassName[] = "AFCSocketWClass";

HWND hwnd(void* window) { return static_cast<HWND>(window); }
}  // namespace

// The window procedure; it finds its handler through the calling thread's data.
struct AFCFDHandlerWindowProcedure {
  static LRESULT CALLBACK call(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != kSocketMessage) return DefWindowProcA(window, message, wParam, lParam);
    auto* handler = dynamic_cast<AFCFDHandlerWindow*>(AFCFDHandler::getThreadHandler());
    if (handler == nullptr) {
      AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
          << "AFCFDHandlerWindow::WndProcStatic() failed, no handle attached to current thread ID "
          << GetCurrentThreadId() << '\n';
      return 0;
    }
    handler->processMessage(wParam, lParam);
    return 0;
  }
};

AFCFDHandlerWindow::AFCFDHandlerWindow() { createWindow(); }

AFCFDHandlerWindow::~AFCFDHandlerWindow() {
  for (const Entry& entry : snapshot()) removeRequest(*entry.request);
  if (window_ != nullptr) DestroyWindow(hwnd(window_));
}

namespace {
// The module that holds this code (the program, or the DLL the foundation is linked into): the
// window class belongs to it, so its window procedure is never looked up in another module.
HINSTANCE codeModule() {
  HMODULE module = nullptr;
  GetModuleHandleExA(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCSTR>(reinterpret_cast<uintptr_t>(&AFCFDHandlerWindowProcedure::call)),
      &module);
  return module;
}
}  // namespace

void AFCFDHandlerWindow::createWindow() {
  const HINSTANCE module = codeModule();
  WNDCLASSA windowClass{};
  windowClass.lpfnWndProc = &AFCFDHandlerWindowProcedure::call;
  windowClass.hInstance = module;
  windowClass.lpszClassName = kClassName;
  // A second handler (on another thread) finds the class already there.
  const bool registered = RegisterClassA(&windowClass) != 0;
  // A message-only window: never shown, and it needs no display (a service or a headless
  // session has none, where a top-level window cannot be made).
  window_ = CreateWindowExA(0, kClassName, "AFC Socket Notification Sink", 0, 0, 0, 0, 0,
                            HWND_MESSAGE, nullptr, module, nullptr);
  if (window_ == nullptr) {
    if (registered) UnregisterClassA(kClassName, module);
    throw AFCSelectFailedException("Cannot create socket sink window");
  }
  attachToCurrentThread();
}

void AFCFDHandlerWindow::select(AFCFDRequest& request, uint32_t networkEvents,
                                const char* operation) {
  if (WSAAsyncSelect(static_cast<SOCKET>(request.getDescriptor()), hwnd(window_), kSocketMessage,
                     static_cast<long>(networkEvents)) != 0) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "AFCFDHandlerWindow::" << operation << ": WSAAsyncSelect() failed, "
        << afcSocketErrorText(WSAGetLastError()) << '\n';
  }
}

void AFCFDHandlerWindow::addRequest(AFCFDRequest& request) {
  if (request.getKind() == AFCFDRequest::KIND_HANDLE) throw AFCFDHandlerWindowHandleException();
  AFCFDHandler::addRequest(request);
  select(request, afcFDMaskToNetworkEvents(request.getEventMask()), "addRequest");
}

void AFCFDHandlerWindow::removeRequest(AFCFDRequest& request) {
  if (contains(request) && request.getDescriptor() != AFC_INVALID_SOCKET) {
    select(request, 0, "removeRequest");
  }
  AFCFDHandler::removeRequest(request);
}

void AFCFDHandlerWindow::changeRequest(AFCFDRequest& request) {
  if (request.getKind() == AFCFDRequest::KIND_HANDLE) throw AFCFDHandlerWindowHandleException();
  AFCFDHandler::changeRequest(request);
  if (contains(request)) {
    select(request, afcFDMaskToNetworkEvents(request.getEventMask()), "changeRequest");
  }
}

bool AFCFDHandlerWindow::wakeUp() {
  return PostMessageA(hwnd(window_), WM_TIMER, kTimerId, 0) != 0;
}

void AFCFDHandlerWindow::processMessage(uintptr_t socket, intptr_t eventsAndError) {
  const int error = WSAGETSELECTERROR(eventsAndError);
  if (error != 0) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "AFCFDHandlerWindow::processMessage: WSAAsyncSelect() failed, "
        << afcSocketErrorText(error) << '\n';
  }
  const uint32_t events = afcFDNetworkEventsToMask(WSAGETSELECTEVENT(eventsAndError));
  for (const Entry& entry : snapshot()) {
    if (static_cast<uintptr_t>(entry.request->getDescriptor()) != socket) continue;
    if (events != 0) deliver(entry, events);
    return;
  }
}

void AFCFDHandlerWindow::mainLoop(int timeoutMs) {
  const HWND window = hwnd(window_);
  if (timeoutMs > 0) SetTimer(window, kTimerId, static_cast<UINT>(timeoutMs), nullptr);
  for (;;) {
    bool handledSocket = false;
    bool timerFired = false;
    MSG message;
    while (PeekMessageA(&message, window, kSocketMessage, kSocketMessage, PM_REMOVE)) {
      processMessage(message.wParam, message.lParam);
      handledSocket = true;
    }
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.hwnd == window && message.message == WM_TIMER && message.wParam == kTimerId) {
        timerFired = true;
      } else if (message.hwnd == window && message.message == kSocketMessage) {
        processMessage(message.wParam, message.lParam);
        handledSocket = true;
      } else {
        TranslateMessage(&message);
        DispatchMessageA(&message);
      }
    }
    if (timerFired || (timeoutMs == -2 && handledSocket)) break;
    WaitMessage();
  }
  if (timeoutMs > 0) KillTimer(window, kTimerId);
}
