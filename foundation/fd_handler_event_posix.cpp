// The event variant on POSIX: poll() over the registered descriptors, with a non-blocking pipe
// standing in for the event object, so that another thread can wake the wait. A byte 'w' in the
// pipe is a wakeUp(); 'r' only makes the wait look at the changed registrations again.
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>

#include "foundation/errlog.h"
#include "foundation/fd_handler.h"
#include "foundation/fd_wait_deadline.h"
#include "foundation/unique_handle.h"

namespace {
struct FdTraits {
  using Type = int;
  static int invalid() noexcept { return -1; }
  static void close(int fd) noexcept { ::close(fd); }
};
using UniqueFd = AFCUniqueHandle<FdTraits>;

constexpr char kWake = 'w';
constexpr char kRefresh = 'r';
}  // namespace

struct AFCFDHandlerEvent::Impl {
  UniqueFd wakeRead, wakeWrite;

  void post(char byte) const {
    // A full pipe already holds a wake-up or refresh; losing this byte loses nothing.
    [[maybe_unused]] const ssize_t written = ::write(wakeWrite.get(), &byte, 1);
  }
  // Empties the pipe; true when it held a wakeUp().
  bool drain() const {
    bool woken = false;
    char bytes[64];
    ssize_t count;
    while ((count = ::read(wakeRead.get(), bytes, sizeof bytes)) > 0) {
      for (ssize_t i = 0; i < count; ++i) woken = woken || bytes[i] == kWake;
    }
    return woken;
  }
};

AFCFDHandlerEvent::AFCFDHandlerEvent() : impl_(std::make_unique<Impl>()) {
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
    throw AFCSelectFailedException("Cannot create socket async event");
  }
  impl_->wakeRead.reset(ends[0]);
  impl_->wakeWrite.reset(ends[1]);
}

AFCFDHandlerEvent::~AFCFDHandlerEvent() = default;

void AFCFDHandlerEvent::addRequest(AFCFDRequest& request) {
  AFCFDHandler::addRequest(request);
  impl_->post(kRefresh);
}

void AFCFDHandlerEvent::removeRequest(AFCFDRequest& request) {
  AFCFDHandler::removeRequest(request);
  impl_->post(kRefresh);
}

void AFCFDHandlerEvent::changeRequest(AFCFDRequest& request) {
  AFCFDHandler::changeRequest(request);
  impl_->post(kRefresh);
}

bool AFCFDHandlerEvent::wakeUp() {
  impl_->post(kWake);
  return true;
}

namespace {
// The descriptors to poll: the pipe first, then one per request (-1 for a request that wants
// nothing now, which poll() skips).
template <class Entries, class Wanted>
std::vector<pollfd> pollSet(int pipe, const Entries& entries, Wanted wanted) {
  std::vector<pollfd> polled{{pipe, POLLIN, 0}};
  for (const auto& entry : entries) {
    const auto readiness = wanted(entry);
    const short events =
        static_cast<short>((readiness.read ? POLLIN : 0) | (readiness.write ? POLLOUT : 0));
    const int fd = events != 0 ? static_cast<int>(entry.request->getDescriptor()) : -1;
    polled.push_back({fd, events, 0});
  }
  return polled;
}
}  // namespace

bool AFCFDHandlerEvent::pass(int waitMs, bool& handled) {
  const std::vector<Entry> entries = snapshot();
  std::vector<pollfd> polled = pollSet(impl_->wakeRead.get(), entries,
                                       [this](const Entry& e) { return wantedReadiness(e); });
  const int ready = ::poll(polled.data(), polled.size(), waitMs);
  if (ready < 0) {
    if (errno == EINTR) return true;
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC") << "WaitForMultipleObjects, e=" << errno << '\n';
    return false;
  }
  if (ready == 0) return false;
  const bool woken = polled[0].revents != 0 && impl_->drain();
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const short revents = polled[i + 1].revents;
    if (revents == 0 || !isRegistered(entries[i])) continue;
    const uint32_t events =
        readinessEvents(entries[i], (revents & POLLIN) != 0, (revents & POLLOUT) != 0,
                        (revents & (POLLERR | POLLHUP | POLLNVAL)) != 0);
    if (events == 0) continue;
    deliver(entries[i], events);
    handled = true;
  }
  return !woken;
}

void AFCFDHandlerEvent::mainLoop(int timeoutMs) {
  const AFCFDWaitDeadline deadline(timeoutMs);
  for (;;) {
    bool handled = false;
    if (!pass(deadline.waitMs(), handled)) return;
    if (timeoutMs == 0 || (timeoutMs == -2 && handled)) return;
  }
}

AFCFDHandlerEvent::WaitResult AFCFDHandlerEvent::waitForEvents(int timeoutMs) {
  for (;;) {
    const std::vector<Entry> entries = snapshot();
    std::vector<pollfd> polled = pollSet(impl_->wakeRead.get(), entries,
                                         [this](const Entry& e) { return wantedReadiness(e); });
    const int ready = ::poll(polled.data(), polled.size(), timeoutMs < 0 ? -1 : timeoutMs);
    if (ready < 0 && errno == EINTR) continue;
    if (ready < 0) {
      AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
          << "AFCFDHandlerEventThread::WaitForMultipleObjects, e=" << errno << '\n';
      return WaitResult::Failed;
    }
    if (ready == 0) return WaitResult::TimedOut;
    if (polled[0].revents != 0 && impl_->drain()) return WaitResult::Woken;
    // Only a refresh: look again with the changed registrations.
    if (ready > 1 || polled[0].revents == 0) return WaitResult::Ready;
  }
}
