// The event variant on Windows: every socket request is tied to one event object with
// WSAEventSelect(); a wait covers that event, a wake-up event, a refresh event (set when the
// registrations change, so that a wait picks up new handles) and the handles of the handle
// requests.
#include <winsock2.h>
// WinSock's headers come before the rest of Windows'.
#include <windows.h>

#include "foundation/errlog.h"
#include "foundation/fd_handler.h"
#include "foundation/fd_wait_deadline.h"
#include "foundation/socket.h"
#include "foundation/unique_handle.h"

namespace {
struct HandleTraits {
  using Type = HANDLE;
  static HANDLE invalid() noexcept { return nullptr; }
  static void close(HANDLE handle) noexcept { CloseHandle(handle); }
};
using UniqueHandle = AFCUniqueHandle<HandleTraits>;

enum : DWORD { kNetwork = 0, kWake = 1, kRefresh = 2, kFixed = 3 };

void logSelectFailure(const char* operation) {
  AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
      << "AFCFDHandlerEvent::" << operation << ": WSAAsyncSelect() failed, "
      << afcSocketErrorText(WSAGetLastError()) << '\n';
}
}  // namespace

struct AFCFDHandlerEvent::Impl {
  UniqueHandle network, wake, refresh;
  // The handles of one wait, the fixed ones first, and the entries of the handle requests.
  std::vector<HANDLE> handles;
  std::vector<Entry> handleEntries;

  void collect(const std::vector<Entry>& entries) {
    handles = {network.get(), wake.get(), refresh.get()};
    handleEntries.clear();
    for (const Entry& entry : entries) {
      if (entry.request->getKind() != AFCFDRequest::KIND_HANDLE) continue;
      if (handles.size() == MAXIMUM_WAIT_OBJECTS) break;
      handles.push_back(reinterpret_cast<HANDLE>(entry.request->getDescriptor()));
      handleEntries.push_back(entry);
    }
  }
  DWORD wait(int timeoutMs) const {
    return WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE,
                                  timeoutMs < 0 ? INFINITE : static_cast<DWORD>(timeoutMs));
  }
};

AFCFDHandlerEvent::AFCFDHandlerEvent() : impl_(std::make_unique<Impl>()) {
  impl_->network.reset(CreateEventA(nullptr, TRUE, FALSE, nullptr));
  impl_->wake.reset(CreateEventA(nullptr, FALSE, FALSE, nullptr));
  impl_->refresh.reset(CreateEventA(nullptr, FALSE, FALSE, nullptr));
  if (!impl_->network.valid() || !impl_->wake.valid() || !impl_->refresh.valid()) {
    throw AFCSelectFailedException("Cannot create socket async event");
  }
}

AFCFDHandlerEvent::~AFCFDHandlerEvent() {
  for (const Entry& entry : snapshot()) removeRequest(*entry.request);
}

void AFCFDHandlerEvent::addRequest(AFCFDRequest& request) {
  AFCFDHandler::addRequest(request);
  if (request.getKind() == AFCFDRequest::KIND_SOCKET &&
      WSAEventSelect(static_cast<SOCKET>(request.getDescriptor()), impl_->network.get(),
                     static_cast<long>(afcFDMaskToNetworkEvents(request.getEventMask()))) != 0) {
    logSelectFailure("addRequest");
  }
  SetEvent(impl_->refresh.get());
}

void AFCFDHandlerEvent::removeRequest(AFCFDRequest& request) {
  if (contains(request) && request.getKind() == AFCFDRequest::KIND_SOCKET &&
      request.getDescriptor() != AFC_INVALID_SOCKET &&
      WSAEventSelect(static_cast<SOCKET>(request.getDescriptor()), nullptr, 0) != 0) {
    logSelectFailure("removeRequest");
  }
  AFCFDHandler::removeRequest(request);
  SetEvent(impl_->refresh.get());
}

void AFCFDHandlerEvent::changeRequest(AFCFDRequest& request) {
  AFCFDHandler::changeRequest(request);
  if (contains(request) && request.getKind() == AFCFDRequest::KIND_SOCKET &&
      WSAEventSelect(static_cast<SOCKET>(request.getDescriptor()), impl_->network.get(),
                     static_cast<long>(afcFDMaskToNetworkEvents(request.getEventMask()))) != 0) {
    logSelectFailure("changeRequest");
  }
}

bool AFCFDHandlerEvent::wakeUp() { return SetEvent(impl_->wake.get()) != 0; }

bool AFCFDHandlerEvent::pass(int waitMs, bool& handled) {
  const std::vector<Entry> entries = snapshot();
  impl_->collect(entries);
  const DWORD result = impl_->wait(waitMs);
  if (result == WAIT_TIMEOUT) return false;
  const DWORD index = result - WAIT_OBJECT_0;
  if (index >= impl_->handles.size()) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "WaitForMultipleObjects, e=" << GetLastError() << '\n';
    return false;
  }
  if (index == kWake) return false;
  if (index == kRefresh) return true;
  handled = true;
  if (index >= kFixed) {
    const Entry& entry = impl_->handleEntries[index - kFixed];
    if (isRegistered(entry)) deliver(entry, AFC_FD_READ);
    return true;
  }
  // Reset before asking, so that an event recorded while the sockets are asked sets it again.
  ResetEvent(impl_->network.get());
  for (const Entry& entry : entries) {
    if (entry.request->getKind() != AFCFDRequest::KIND_SOCKET || !isRegistered(entry)) continue;
    WSANETWORKEVENTS happened{};
    if (WSAEnumNetworkEvents(static_cast<SOCKET>(entry.request->getDescriptor()), nullptr,
                             &happened) != 0) {
      AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
          << "processEvent: WSAEnumNetworkEvents() failed, err=" << WSAGetLastError() << '\n';
      continue;
    }
    const uint32_t network = static_cast<uint32_t>(happened.lNetworkEvents);
    const uint32_t unhandled = network & ~afcFDMaskToNetworkEvents(~0u);
    if (unhandled != 0) {
      AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
          << "processEvent: Unhandled event " << unhandled << '\n';
    }
    const uint32_t events = afcFDNetworkEventsToMask(network);
    if (events != 0) deliver(entry, events);
  }
  return true;
}

void AFCFDHandlerEvent::mainLoop(int timeoutMs) {
  const AFCFDWaitDeadline deadline(timeoutMs);
  for (;;) {
    bool handled = false;
    if (!pass(deadline.waitMs(), handled)) return;
    // A refresh alone is not a pass: it only made the wait see the changed registrations.
    if ((timeoutMs == 0 || timeoutMs == -2) && handled) return;
  }
}

AFCFDHandlerEvent::WaitResult AFCFDHandlerEvent::waitForEvents(int timeoutMs) {
  for (;;) {
    impl_->collect(snapshot());
    const DWORD result = impl_->wait(timeoutMs);
    if (result == WAIT_TIMEOUT) return WaitResult::TimedOut;
    const DWORD index = result - WAIT_OBJECT_0;
    if (index >= impl_->handles.size()) {
      AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
          << "AFCFDHandlerEventThread::WaitForMultipleObjects, e=" << GetLastError() << '\n';
      return WaitResult::Failed;
    }
    if (index == kWake) return WaitResult::Woken;
    if (index != kRefresh) return WaitResult::Ready;
  }
}
