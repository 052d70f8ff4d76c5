#include "foundation/socket.h"

#include <chrono>
#include <mutex>

#include "foundation/errlog.h"
#include "foundation/socket_ops.h"

namespace {
std::mutex libraryLock;
int libraryUsers = 0;  // guarded by libraryLock

// Runs one notification, logging what it throws under the given prefix.
template <class Call>
void guarded(const char* prefix, Call call) {
  try {
    call();
  } catch (const std::exception& e) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC") << prefix << e.what() << '\n';
  }
}

void logFailedCall(const char* call, int code) {
  AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
      << call << " failed, " << afcSocketErrorText(code) << '\n';
}

int millisecondsLeft(std::chrono::steady_clock::time_point deadline) {
  const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
      deadline - std::chrono::steady_clock::now());
  return static_cast<int>(std::max<int64_t>(left.count(), 0));
}
}  // namespace

AFCSocketLibrary::AFCSocketLibrary() {
  std::lock_guard guard(libraryLock);
  if (libraryUsers == 0) afcSocketLibraryStart();
  ++libraryUsers;
}

AFCSocketLibrary::~AFCSocketLibrary() {
  std::lock_guard guard(libraryLock);
  if (--libraryUsers == 0) afcSocketLibraryStop();
}

AFCSocket::AFCSocket() : AFCFDRequest(KIND_SOCKET) {}

AFCSocket::~AFCSocket() { close(); }

void AFCSocket::create() {
  if (isOpen()) return;
  const AFCSocketHandle handle = afcSocketOpenTcp();
  if (handle == AFC_INVALID_SOCKET) throw AFCSocketException("Socket create failed");
  setDescriptor(handle);
}

void AFCSocket::adopt(AFCSocketHandle handle, std::string host, int port) {
  close();
  setDescriptor(handle);
  host_ = std::move(host);
  port_ = port;
}

int AFCSocket::getLocalPort() const { return isOpen() ? afcSocketLocalPort(getDescriptor()) : -1; }

void AFCSocket::setBlocking(bool blocking) {
  if (!isOpen()) throw AFCSocketException("Can't set blocking mode for closed socket!");
  if (afcSocketSetBlocking(getDescriptor(), blocking) != 0) {
    logFailedCall(blocking ? "ioctl(BlockingMode)" : "ioctl(NonBlockingMode)",
                  afcSocketLastError());
    return;
  }
  blocking_ = blocking;
}

void AFCSocket::setNagleBuffer(bool nagle) {
  if (!isOpen()) throw AFCSocketException("Can't set NagleBuffer mode for closed socket!");
  if (afcSocketSetNoDelay(getDescriptor(), !nagle) != 0) {
    logFailedCall("setsockopt(TCP_NODELAY)", afcSocketLastError());
    return;
  }
  nagle_ = nagle;
}

void AFCSocket::setKeepAlive(bool keepAlive) {
  if (!isOpen()) throw AFCSocketException("Can't set KeepAlive mode for closed socket!");
  if (afcSocketSetKeepAlive(getDescriptor(), keepAlive) != 0) {
    logFailedCall("setsockopt(SO_KEEPALIVE)", afcSocketLastError());
    return;
  }
  keepAlive_ = keepAlive;
}

std::size_t AFCSocket::readAvailable(void* data, std::size_t size) {
  if (size == 0) return 0;
  const long count = afcSocketRecv(getDescriptor(), data, size);
  if (count > 0) return static_cast<std::size_t>(count);
  if (count == 0) throw AFCSocketDisconnectedException();
  const int code = afcSocketLastError();
  if (code == AFC_WSAEWOULDBLOCK || code == AFC_WSAEINTR) return 0;
  throw AFCSocketIOErrorException("read() failed", code);
}

std::size_t AFCSocket::read(void* data, std::size_t size) {
  auto* bytes = static_cast<uint8_t*>(data);
  std::size_t total = 0;
  while (total < size) {
    const std::size_t count = readAvailable(bytes + total, size - total);
    if (count == 0) break;
    total += count;
  }
  return total;
}

std::size_t AFCSocket::read(AFCBuffer& buffer, std::size_t maxCount) {
  const std::size_t used = buffer.size();
  buffer.reserve(used + maxCount);
  const std::size_t count = readAvailable(buffer.data() + used, maxCount);
  buffer.setSizeUnchecked(used + count);
  return count;
}

void AFCSocket::readExact(void* data, std::size_t size) {
  auto* bytes = static_cast<uint8_t*>(data);
  std::size_t total = 0;
  while (total < size) {
    const std::size_t count = readAvailable(bytes + total, size - total);
    total += count;
    if (count == 0 && !waitReady(false, timeLimitMs_, "read() failed")) {
      throw AFCSocketIOErrorException("read() failed", AFC_WSAETIMEDOUT);
    }
  }
}

std::size_t AFCSocket::write(const void* data, std::size_t size) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  std::size_t total = 0;
  while (total < size) {
    const long count = afcSocketSend(getDescriptor(), bytes + total, size - total);
    if (count >= 0) {
      total += static_cast<std::size_t>(count);
      continue;
    }
    const int code = afcSocketLastError();
    if (code == AFC_WSAEINTR) continue;
    if (code != AFC_WSAEWOULDBLOCK) throw AFCSocketIOErrorException("write() failed", code);
    armWriteEvent();
    break;
  }
  return total;
}

void AFCSocket::writeAll(const void* data, std::size_t size) {
  const auto* bytes = static_cast<const uint8_t*>(data);
  std::size_t total = 0;
  while (total < size) {
    const std::size_t count = write(bytes + total, size - total);
    total += count;
    if (total < size && !waitReady(true, timeLimitMs_, "write() failed")) {
      throw AFCSocketIOErrorException("write() failed", AFC_WSAETIMEDOUT);
    }
  }
}

bool AFCSocket::waitReady(bool forWrite, int timeoutMs, const char* operation) {
  std::vector<AFCSocketWait> sockets{{getDescriptor(), !forWrite, forWrite}};
  const int ready = afcSocketSelect(sockets, timeoutMs > 0 ? timeoutMs : -1);
  if (ready < 0) afcThrowSocketError(operation);
  return ready > 0;
}

void AFCSocket::close() {
  if (getRegistry() != nullptr) getRegistry()->removeRequest(*this);
  if (!isOpen()) return;
  const AFCSocketHandle handle = getDescriptor();
  setDescriptor(AFC_INVALID_SOCKET);
  blocking_ = true;
  nagle_ = true;
  keepAlive_ = false;
  const int code = afcSocketClose(handle);
  if (code != 0) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libAFC")
        << "AFCSocket close failed: " << afcSocketErrorText(code) << '\n';
  }
}

AFCFDAsyncRegistry* AFCSocket::getAsyncRegistry() { return &AFCFDHandler::getDefault(); }

void AFCSocket::enableEvents(uint32_t mask) {
  setEventMask(mask);
  if (getRegistry() == nullptr) getAsyncRegistry()->addRequest(*this);
}

void AFCSocket::notify(uint32_t events) {
  constexpr uint32_t kOther = ~uint32_t{AFC_FD_READ | AFC_FD_WRITE | AFC_FD_CLOSE};
  const char* prefix = "AFCSocket: client exception: ";
  if ((events & kOther) != 0) guarded(prefix, [&] { notifyOther(events & kOther); });
  if ((events & AFC_FD_READ) != 0 && isOpen()) guarded(prefix, [&] { onReadable(); });
  if ((events & AFC_FD_WRITE) != 0 && isOpen()) guarded(prefix, [&] { onWritable(); });
  if ((events & AFC_FD_CLOSE) != 0) guarded(prefix, [&] { onPeerClosed(); });
}

void AFCSocket::notifyOther(uint32_t) {}

void AFCClientSocket::connect(const std::string& host, int port) {
  create();
  // 0, and anything a TCP port cannot be, is refused before any lookup.
  if (port <= 0 || port > 65535) throw AFCSocketWrongPortException();
  uint32_t address = 0;
  if (!afcSocketResolve(host, address)) throw AFCUnknownHostException(host, port);
  host_ = host;
  port_ = port;
  address_ = address;
  // A blocking socket with a time limit connects without blocking, so that it can stop waiting.
  const bool async = !isBlocking();
  const bool limited = !async && getTimeLimit() > 0;
  const auto deadline =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(getTimeLimit());
  if (limited) setBlocking(false);
  while (!tryConnect()) {
    if (async) {
      connecting_ = true;
      enableEvents(AFC_FD_CONNECT);
      return;
    }
    const int waitMs = limited ? millisecondsLeft(deadline) : -1;
    if (waitMs == 0 || !waitReady(true, waitMs, "connect() failed")) fail(AFC_WSAETIMEDOUT);
  }
  if (limited) setBlocking(true);
  connected();
}

bool AFCClientSocket::tryConnect() {
  const int pending = afcSocketPendingError(getDescriptor());
  if (pending != 0 && pending != AFC_WSAEWOULDBLOCK && pending != AFC_WSAEINPROGRESS) {
    fail(pending);
  }
  const int result = afcSocketConnect(getDescriptor(), address_, port_);
  if (result == 0 || result == AFC_WSAEISCONN) return true;
  if (result < AFC_WSAEWOULDBLOCK || result > AFC_WSAEALREADY) fail(result);
  return false;
}

void AFCClientSocket::connected() {
  connecting_ = false;
  setEventMask(AFC_FD_READ | AFC_FD_WRITE);
  onConnected();
}

void AFCClientSocket::fail(int errorCode) {
  connecting_ = false;
  close();
  throw AFCSocketConnectFailedException(host_, port_, errorCode);
}

void AFCClientSocket::notifyOther(uint32_t events) {
  if ((events & AFC_FD_CONNECT) != 0 && connecting_ && tryConnect()) connected();
}

void AFCServerSocket::bind(int port, const std::string& host) {
  create();
  uint32_t address = 0;
  if (!host.empty() && !afcSocketResolve(host, address)) throw AFCUnknownHostException(host, port);
  if (afcSocketBind(getDescriptor(), address, port) != 0) {
    throw AFCSocketException("Can't bind socket");
  }
  host_ = host;
  port_ = port;
}

void AFCServerSocket::listen() {
  if (afcSocketListen(getDescriptor()) != 0) throw AFCSocketException("listen() failed");
}

void AFCServerSocket::accept(AFCClientSocket& client) {
  if (getTimeLimit() > 0 && !waitReady(false, getTimeLimit(), "accept() failed")) {
    throw AFCSocketException("accept() failed, timeout");
  }
  uint32_t peerAddress = 0;
  int peerPort = 0;
  const AFCSocketHandle handle = afcSocketAccept(getDescriptor(), peerAddress, peerPort);
  if (handle == AFC_INVALID_SOCKET) throw AFCSocketException("accept() failed");
  client.adopt(handle, afcSocketAddressText(peerAddress), peerPort);
}

void AFCServerSocket::serveClient() {
  AFCClientSocket dropped;
  accept(dropped);
}

void AFCServerSocket::notifyOther(uint32_t events) {
  if ((events & AFC_FD_ACCEPT) != 0) {
    guarded("AFCServerSocket: client exception: ", [this] { serveClient(); });
  }
}
