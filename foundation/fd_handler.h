#pragma once
// Descriptor handlers: readiness of sockets (and, in the event variant, of waitable handles)
// becomes callbacks on the thread that pumps the handler with mainLoop(). The transport only
// sees the registry side (add, change, remove of a request); the variants differ in how they
// wait: select(), an event object (poll() and a wake-up pipe on POSIX), or window messages
// (Windows only, see fd_handler_window.h).
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "foundation/exception.h"

// A socket or waitable handle without the platform's types: a descriptor on POSIX, a SOCKET or
// HANDLE on Windows.
using AFCSocketHandle = std::intptr_t;
inline constexpr AFCSocketHandle AFC_INVALID_SOCKET = -1;

// The event mask of requests and notifications. WinSock numbers its FD_ events differently
// (accept, connect and close are 8, 16 and 32 there); afcFDMaskToNetworkEvents() and
// afcFDNetworkEventsToMask() translate.
enum AFCFDEvent : uint32_t {
  AFC_FD_READ = 1,
  AFC_FD_WRITE = 2,
  AFC_FD_CLOSE = 8,
  AFC_FD_ACCEPT = 16,
  AFC_FD_CONNECT = 32,
};

// WinSock's network events for a mask; close is always included, so that no peer close is lost.
uint32_t afcFDMaskToNetworkEvents(uint32_t mask);
// The mask of WinSock network events; events without a place in the mask are dropped.
uint32_t afcFDNetworkEventsToMask(uint32_t networkEvents);

AFC_DECLARE_EXCEPTION(AFCSelectFailedException, AFCException);

class AFCFDHandlerWindowHandleException : public AFCException {
 public:
  AFCFDHandlerWindowHandleException()
      : AFCException("Waiting for HANDLE is not supported in Window FD Handler") {}
};

class AFCFDAsyncRegistry;
class AFCFDHandler;

// One registration: a socket or waitable handle, the events it wants and what to call when they
// come. The wanted events are set as a pending mask that the registry applies when the request
// is added or changed. A request belongs to at most one registry and leaves it when destroyed.
// It is used on the thread that owns its registry; only armWriteEvent() may be called elsewhere.
// callNotify() never throws: what leaves notify() becomes one error-log line.
class AFCFDRequest {
 public:
  enum Kind { KIND_SOCKET = 0, KIND_HANDLE = 1 };

  explicit AFCFDRequest(Kind kind = KIND_SOCKET, AFCSocketHandle descriptor = AFC_INVALID_SOCKET,
                        uint32_t eventMask = 0);
  virtual ~AFCFDRequest();
  AFCFDRequest(const AFCFDRequest&) = delete;
  AFCFDRequest& operator=(const AFCFDRequest&) = delete;

  Kind getKind() const { return kind_; }
  AFCSocketHandle getDescriptor() const { return descriptor_; }
  // The events the registry watches for this request.
  uint32_t getEventMask() const { return mask_; }
  // The events asked for by setEventMask() and not yet applied.
  uint32_t getPendingEventMask() const { return pendingMask_; }
  // Asks for other events; applied at once when registered, else by the next addRequest.
  void setEventMask(uint32_t mask);
  AFCFDAsyncRegistry* getRegistry() const { return registry_; }

  // Calls notify() with the events, logging whatever it throws.
  void callNotify(uint32_t events) noexcept;

 protected:
  virtual void notify(uint32_t events) = 0;
  void setDescriptor(AFCSocketHandle descriptor) { descriptor_ = descriptor; }
  // Write readiness is reported once after registration and then only after a write stopped
  // because the socket would block, as WinSock does; writers call this when they stop so.
  void armWriteEvent() { writeArmed_.store(true); }

 private:
  friend class AFCFDAsyncRegistry;
  friend class AFCFDHandler;

  const Kind kind_;
  AFCSocketHandle descriptor_;
  uint32_t mask_ = 0;
  std::atomic<uint32_t> pendingMask_;
  AFCFDAsyncRegistry* registry_ = nullptr;
  std::atomic<bool> writeArmed_{true};
  bool closePending_ = false;    // the peer closed while bytes were still waiting
  bool closeDelivered_ = false;  // a close is reported once
};

// A request that calls a stored function.
class AFCFDRequestCallback : public AFCFDRequest {
 public:
  using Callback = std::function<void(AFCFDRequest& request, uint32_t events)>;

  AFCFDRequestCallback(Kind kind, AFCSocketHandle descriptor, uint32_t eventMask, Callback callback)
      : AFCFDRequest(kind, descriptor, eventMask), callback_(std::move(callback)) {}

 protected:
  void notify(uint32_t events) override { callback_(*this, events); }

 private:
  Callback callback_;
};

// The list of registered requests with the add, change and remove operations. The list has its
// own lock, so a request may be added from another thread than the one pumping the handler (the
// variants that can be woken are woken to see it); removing and destroying a request must still
// happen on the pumping thread, which may be calling it. Requests are not owned.
class AFCFDAsyncRegistry {
 public:
  AFCFDAsyncRegistry() = default;
  virtual ~AFCFDAsyncRegistry();
  AFCFDAsyncRegistry(const AFCFDAsyncRegistry&) = delete;
  AFCFDAsyncRegistry& operator=(const AFCFDAsyncRegistry&) = delete;

  // Registers the request with its pending mask; one registered elsewhere moves here, one
  // already registered here is changed.
  virtual void addRequest(AFCFDRequest& request);
  virtual void removeRequest(AFCFDRequest& request);
  // Applies the request's pending mask.
  virtual void changeRequest(AFCFDRequest& request);

  bool contains(const AFCFDRequest& request) const;
  std::size_t getRequestCount() const;

 protected:
  // A registered request; the serial tells a request from a later one at the same address.
  struct Entry {
    AFCFDRequest* request;
    uint64_t serial;
  };
  std::vector<Entry> snapshot() const;
  // False when the entry's request was removed since the snapshot.
  bool isRegistered(const Entry& entry) const;

  mutable std::mutex lock_;  // guards the list and the registry fields of its requests

 private:
  std::vector<Entry> entries_;
  uint64_t nextSerial_ = 1;
};

// A registry that dispatches: mainLoop(timeoutMs) waits for events and calls the requests on the
// calling thread. timeoutMs -2 returns after the first pass that handled an event, 0 only takes
// what is pending, a positive value runs until that many milliseconds have passed; the meaning
// of -1 differs by variant (for ever, or until wakeUp()). Callbacks may add, change and remove
// requests, their own included. Construction failures throw AFCSelectFailedException.
class AFCFDHandler : public AFCFDAsyncRegistry {
 public:
  ~AFCFDHandler() override;

  // Makes a mainLoop() in progress return soon; may be called from any thread. False when the
  // variant cannot be woken.
  virtual bool wakeUp();
  virtual void mainLoop(int timeoutMs);

  // Makes this the handler that the calling thread's sockets use by default.
  void attachToCurrentThread();
  // The handler attached to the calling thread, or nullptr.
  static AFCFDHandler* getThreadHandler();
  // The handler attached to the calling thread; when there is none, the platform's default
  // variant (the window on Windows, the event variant on POSIX) is made, attached, and owned by
  // the thread until the thread's last AFCDefaultFDHandler goes (hold one while using it).
  static AFCFDHandler& getDefault();

 protected:
  AFCFDHandler() = default;

  // Hands native events to a request: a close is held back while bytes are still waiting and
  // delivered once they are gone; the request is called only for events it watches.
  void deliver(const Entry& entry, uint32_t events);
  // For the select() and poll() waits: which readiness a request asks for.
  struct Readiness {
    bool read = false;
    bool write = false;
  };
  Readiness wantedReadiness(const Entry& entry) const;
  // ...and how readiness turns into events: readable data is a read, readable with nothing
  // waiting the peer's close, writable a completed connect or a write.
  uint32_t readinessEvents(const Entry& entry, bool readable, bool writable, bool failed);

 private:
  friend class AFCDefaultFDHandler;
  static std::unique_ptr<AFCFDHandler> makePlatformDefault();
  // Destroys the calling thread's handler made by getDefault(), if any.
  static void releaseDefault();
  // Sends a held-back close once no byte is left; true when it did.
  bool deliverHeldClose(const Entry& entry);
};

// Holds the calling thread's default handler: the first holder of a thread makes it (or takes the
// one attached), and when the thread's last holder goes, a handler that getDefault() made is
// destroyed. Bound to its thread: neither copied nor moved, destroyed on the thread that made it.
class AFCDefaultFDHandler {
 public:
  AFCDefaultFDHandler();
  ~AFCDefaultFDHandler();
  AFCDefaultFDHandler(const AFCDefaultFDHandler&) = delete;
  AFCDefaultFDHandler& operator=(const AFCDefaultFDHandler&) = delete;

  AFCFDHandler& get() const { return handler_; }
  AFCFDHandler* operator->() const { return &handler_; }

 private:
  AFCFDHandler& handler_;
};

// The select() variant, on both platforms. It cannot be woken; with no request it sleeps a
// thousandth of the asked time. A failed select() throws AFCSelectFailedException ("Select()
// failed, " and the error text). timeoutMs -1, like -2, waits for the first readiness, but
// returns after that pass even when it handled nothing.
class AFCFDHandlerSelect : public AFCFDHandler {
 public:
  void mainLoop(int timeoutMs) override;
};

// The event variant: one event object (on POSIX a wake-up pipe beside poll()) shared by all its
// sockets, plus waitable handles (descriptors on POSIX) that are reported as read when signalled.
// A wakeUp() ends mainLoop() and waitForEvents(). timeoutMs -1 waits until woken. Wait
// failures are logged, not thrown.
class AFCFDHandlerEvent : public AFCFDHandler {
 public:
  enum class WaitResult { Ready, Woken, TimedOut, Failed };

  // Throws AFCSelectFailedException "Cannot create socket async event".
  AFCFDHandlerEvent();
  ~AFCFDHandlerEvent() override;

  void addRequest(AFCFDRequest& request) override;
  void removeRequest(AFCFDRequest& request) override;
  void changeRequest(AFCFDRequest& request) override;
  bool wakeUp() override;
  void mainLoop(int timeoutMs) override;
  // Waits until a request has work or wakeUp() is called, without calling anything; mainLoop(0)
  // then dispatches. For hosts that wait on their own (the async processor).
  WaitResult waitForEvents(int timeoutMs);

 private:
  struct Impl;
  // One wait and the dispatch of what it found; false when the loop must end.
  bool pass(int waitMs, bool& handled);
  std::unique_ptr<Impl> impl_;
};
