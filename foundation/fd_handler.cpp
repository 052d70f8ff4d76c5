#include "foundation/fd_handler.h"

#include <algorithm>
#include <utility>

#include "foundation/errlog.h"
#include "foundation/socket_ops.h"
#include "foundation/thread.h"

namespace {
// WinSock's FD_READ, FD_WRITE, FD_ACCEPT, FD_CONNECT and FD_CLOSE, paired with the mask bits.
struct NetworkEvent {
  uint32_t mask;
  uint32_t network;
};
constexpr NetworkEvent kNetworkEvents[] = {
    {AFC_FD_READ, 0x01},    {AFC_FD_WRITE, 0x02}, {AFC_FD_ACCEPT, 0x08},
    {AFC_FD_CONNECT, 0x10}, {AFC_FD_CLOSE, 0x20},
};
}  // namespace

uint32_t afcFDMaskToNetworkEvents(uint32_t mask) {
  uint32_t network = 0;
  for (const NetworkEvent& event : kNetworkEvents) {
    if ((mask & event.mask) != 0) network |= event.network;
  }
  return network | 0x20;
}

uint32_t afcFDNetworkEventsToMask(uint32_t networkEvents) {
  uint32_t mask = 0;
  for (const NetworkEvent& event : kNetworkEvents) {
    if ((networkEvents & event.network) != 0) mask |= event.mask;
  }
  return mask;
}

AFCFDRequest::AFCFDRequest(Kind kind, AFCSocketHandle descriptor, uint32_t eventMask)
    : kind_(kind), descriptor_(descriptor), pendingMask_(eventMask) {}

AFCFDRequest::~AFCFDRequest() {
  if (registry_ != nullptr) registry_->removeRequest(*this);
}

void AFCFDRequest::setEventMask(uint32_t mask) {
  pendingMask_.store(mask);
  if (registry_ != nullptr) registry_->changeRequest(*this);
}

void AFCFDRequest::callNotify(uint32_t events) noexcept {
  try {
    notify(events);
  } catch (const std::exception& e) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "AFCFDRequest::callNotify returned with exception: " << e.what() << '\n';
  } catch (...) {
    AFC_REPORT(AFC_ERRLOG_ERROR, "libAFC",
               "AFCFDRequest::callNotify returned with unknown exception!");
  }
}

AFCFDAsyncRegistry::~AFCFDAsyncRegistry() {
  std::lock_guard guard(lock_);
  for (const Entry& entry : entries_) entry.request->registry_ = nullptr;
}

void AFCFDAsyncRegistry::addRequest(AFCFDRequest& request) {
  AFCFDAsyncRegistry* previous = request.registry_;
  if (previous != nullptr && previous != this) previous->removeRequest(request);
  std::lock_guard guard(lock_);
  request.mask_ = request.pendingMask_.load();
  request.writeArmed_.store(true);
  if (previous == this) return;
  request.closePending_ = false;
  request.closeDelivered_ = false;
  request.registry_ = this;
  entries_.push_back({&request, nextSerial_++});
}

void AFCFDAsyncRegistry::removeRequest(AFCFDRequest& request) {
  std::lock_guard guard(lock_);
  if (request.registry_ != this) return;
  request.registry_ = nullptr;
  std::erase_if(entries_, [&](const Entry& entry) { return entry.request == &request; });
}

void AFCFDAsyncRegistry::changeRequest(AFCFDRequest& request) {
  std::lock_guard guard(lock_);
  if (request.registry_ != this) return;
  const uint32_t added = request.pendingMask_.load() & ~request.mask_;
  request.mask_ = request.pendingMask_.load();
  // Asking for write again reports the present state once, as WSAAsyncSelect() does.
  if ((added & AFC_FD_WRITE) != 0) request.writeArmed_.store(true);
}

bool AFCFDAsyncRegistry::contains(const AFCFDRequest& request) const {
  std::lock_guard guard(lock_);
  return request.registry_ == this;
}

std::size_t AFCFDAsyncRegistry::getRequestCount() const {
  std::lock_guard guard(lock_);
  return entries_.size();
}

std::vector<AFCFDAsyncRegistry::Entry> AFCFDAsyncRegistry::snapshot() const {
  std::lock_guard guard(lock_);
  return entries_;
}

bool AFCFDAsyncRegistry::isRegistered(const Entry& entry) const {
  std::lock_guard guard(lock_);
  return std::any_of(entries_.begin(), entries_.end(), [&](const Entry& e) {
    return e.request == entry.request && e.serial == entry.serial;
  });
}

namespace {
// The default handler that getDefault() made for this thread. A plain pointer: thread-local
// objects with destructors are not reliable under every threads runtime we build with.
thread_local AFCFDHandler* threadDefault = nullptr;
}  // namespace

AFCFDHandler::~AFCFDHandler() {
  AFCThreadData& data = AFCThreadData::current();
  if (data.getFDHandler() == this) data.setFDHandler(nullptr);
}

bool AFCFDHandler::wakeUp() { return false; }

void AFCFDHandler::mainLoop(int) {
  AFC_REPORT(AFC_ERRLOG_ERROR, "libAFC", "AFCFDHandler: simpleMainLoop is not supported");
}

void AFCFDHandler::attachToCurrentThread() { AFCThreadData::current().setFDHandler(this); }

AFCFDHandler* AFCFDHandler::getThreadHandler() { return AFCThreadData::current().getFDHandler(); }

AFCFDHandler& AFCFDHandler::getDefault() {
  AFCThreadData& data = AFCThreadData::current();
  if (data.getFDHandler() != nullptr) return *data.getFDHandler();
  std::unique_ptr<AFCFDHandler> made = makePlatformDefault();
  made->attachToCurrentThread();
  threadDefault = made.release();
  return *threadDefault;
}

void AFCFDHandler::releaseDefault() { delete std::exchange(threadDefault, nullptr); }

namespace {
thread_local int threadDefaultHolders = 0;
}  // namespace

AFCDefaultFDHandler::AFCDefaultFDHandler() : handler_(AFCFDHandler::getDefault()) {
  ++threadDefaultHolders;
}

AFCDefaultFDHandler::~AFCDefaultFDHandler() {
  if (--threadDefaultHolders == 0) AFCFDHandler::releaseDefault();
}

void AFCFDHandler::deliver(const Entry& entry, uint32_t events) {
  AFCFDRequest& request = *entry.request;
  // A waitable handle has no mask: its being signalled is the one event it has.
  if (request.getKind() == AFCFDRequest::KIND_HANDLE) {
    request.callNotify(events);
    return;
  }
  {
    std::lock_guard guard(lock_);
    if (request.closeDelivered_) events &= ~AFC_FD_CLOSE;
    if ((events & AFC_FD_CLOSE) != 0) {
      if (afcSocketBytesWaiting(request.getDescriptor()) > 0) {
        events &= ~AFC_FD_CLOSE;
        request.closePending_ = true;
      } else {
        // A close is wanted whatever the mask says: the owner must learn that the peer went.
        request.mask_ |= AFC_FD_CLOSE;
        request.closeDelivered_ = true;
      }
    }
    if ((events & request.mask_) == 0) return;
  }
  request.callNotify(events);
  if ((events & AFC_FD_READ) != 0 && isRegistered(entry)) deliverHeldClose(entry);
}

bool AFCFDHandler::deliverHeldClose(const Entry& entry) {
  AFCFDRequest& request = *entry.request;
  {
    std::lock_guard guard(lock_);
    if (!request.closePending_ || afcSocketBytesWaiting(request.getDescriptor()) > 0) {
      return false;
    }
    request.closePending_ = false;
    request.closeDelivered_ = true;
    request.mask_ |= AFC_FD_CLOSE;
  }
  request.callNotify(AFC_FD_CLOSE);
  return true;
}

AFCFDHandler::Readiness AFCFDHandler::wantedReadiness(const Entry& entry) const {
  std::lock_guard guard(lock_);
  const AFCFDRequest& request = *entry.request;
  Readiness wanted;
  if (request.getKind() == AFCFDRequest::KIND_HANDLE) {
    wanted.read = true;
    return wanted;
  }
  // After the close the socket would only report it again and again.
  if (request.closeDelivered_) return wanted;
  const uint32_t mask = request.mask_;
  wanted.read = (mask & (AFC_FD_READ | AFC_FD_ACCEPT)) != 0;
  wanted.write =
      (mask & AFC_FD_CONNECT) != 0 || ((mask & AFC_FD_WRITE) != 0 && request.writeArmed_.load());
  return wanted;
}

uint32_t AFCFDHandler::readinessEvents(const Entry& entry, bool readable, bool writable,
                                       bool failed) {
  AFCFDRequest& request = *entry.request;
  if (request.getKind() == AFCFDRequest::KIND_HANDLE) return readable ? uint32_t{AFC_FD_READ} : 0;
  const uint32_t mask = request.getEventMask();
  // The connect's outcome, good or bad, is all a connecting socket can report.
  if ((mask & AFC_FD_CONNECT) != 0)
    return readable || writable || failed ? uint32_t{AFC_FD_CONNECT} : 0;
  uint32_t events = 0;
  if (failed) readable = true;
  if (writable) {
    request.writeArmed_.store(false);
    events |= AFC_FD_WRITE;
  }
  if (readable && (mask & AFC_FD_ACCEPT) != 0) {
    events |= AFC_FD_ACCEPT;
  } else if (readable) {
    // Readable with nothing to read is the end of the stream (or an error a read will report).
    events |= afcSocketBytesWaiting(request.getDescriptor()) > 0 ? AFC_FD_READ : AFC_FD_CLOSE;
  }
  return events;
}
