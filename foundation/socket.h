#pragma once
// TCP sockets over IPv4: a client socket that resolves a host and connects (optionally within a
// time limit), a server socket that binds, listens and accepts, reads and writes, the socket
// options the transport needs, and the table that turns WinSock error numbers into text. Error
// numbers are WinSock's on every platform. A socket is a descriptor-handler request, so its
// readiness reaches the overridable notifications below through its registry.
#include <cstddef>
#include <cstdint>
#include <string>

#include "foundation/buffer.h"
#include "foundation/exception.h"
#include "foundation/fd_handler.h"

// The WinSock error numbers the socket layer acts on.
enum AFCSocketError : int {
  AFC_WSAEINTR = 10004,
  AFC_WSAEWOULDBLOCK = 10035,
  AFC_WSAEINPROGRESS = 10036,
  AFC_WSAEALREADY = 10037,
  AFC_WSAEISCONN = 10056,
  AFC_WSAETIMEDOUT = 10060,
  AFC_WSAECONNREFUSED = 10061,
};

// The text of a WinSock error number: the table's row, else the system's text for the code,
// else "Unknown error 0x%08x".
std::string afcSocketErrorText(int code);
// "%d.%d.%d.%d" of an IPv4 address in host order.
std::string afcSocketAddressText(uint32_t address);

AFC_DECLARE_EXCEPTION(AFCSocketException, AFCException);

// "Can't connect to <host>, <error text>."
class AFCSocketConnectFailedException : public AFCSocketException {
 public:
  AFCSocketConnectFailedException(std::string host, int port, int errorCode)
      : host_(std::move(host)), port_(port), errorCode_(errorCode) {}
  void print(std::string& out) const override;
  const std::string& getHost() const { return host_; }
  int getPort() const { return port_; }
  int getErrorCode() const { return errorCode_; }

 private:
  std::string host_;
  int port_;
  int errorCode_;
};

class AFCSocketDisconnectedException : public AFCSocketException {
 public:
  AFCSocketDisconnectedException() : AFCSocketException("Client disconnected.") {}
};

// "IO error, <operation>, <error text>."
class AFCSocketIOErrorException : public AFCSocketException {
 public:
  AFCSocketIOErrorException(std::string operation, int errorCode)
      : operation_(std::move(operation)), errorCode_(errorCode) {}
  void print(std::string& out) const override;
  const std::string& getOperation() const { return operation_; }
  int getErrorCode() const { return errorCode_; }

 private:
  std::string operation_;
  int errorCode_;
};

class AFCSocketWrongPortException : public AFCSocketException {
 public:
  AFCSocketWrongPortException() : AFCSocketException("Wrong port number") {}
};

// Unknown host "<host>"
class AFCUnknownHostException : public AFCSocketException {
 public:
  AFCUnknownHostException(std::string host, int port) : host_(std::move(host)), port_(port) {}
  void print(std::string& out) const override;
  const std::string& getHost() const { return host_; }
  int getPort() const { return port_; }

 private:
  std::string host_;
  int port_;
};

// Keeps the platform's socket library (WinSock 2.0) started while any guard lives; the first
// guard of the process starts it, the last one stops it. Thread safe. The constructor throws
// AFCSocketException "AFCSocket: WinSocket library is not available!" or "AFCSocket: Required
// version of WinSocket library is not available! Available is:<version>".
class AFCSocketLibrary {
 public:
  AFCSocketLibrary();
  ~AFCSocketLibrary();
  AFCSocketLibrary(const AFCSocketLibrary&) = delete;
  AFCSocketLibrary& operator=(const AFCSocketLibrary&) = delete;
};

// A TCP socket: its handle (owned; invalid until created), the remote host and port, the time
// limit of connects, accepts and exact reads, and its modes. Used by the thread that owns its
// descriptor handler; writes may come from another thread when the caller serialises them.
// Reads and writes throw AFCSocketDisconnectedException and AFCSocketIOErrorException; the
// option setters throw AFCSocketException for a closed socket. Notifications run on the
// handler's thread; what they throw is logged as "AFCSocket: client exception: ".
// On Windows, registering with the event or window handler makes the socket non-blocking (WinSock
// does so); readExact() and writeAll() wait for readiness then, so callers see no difference.
class AFCSocket : public AFCFDRequest {
 public:
  AFCSocket();
  // Closes the socket.
  ~AFCSocket() override;

  // Makes the handle when there is none: blocking, Nagle on, no keep-alive. Throws
  // AFCSocketException "Socket create failed".
  void create();
  bool isOpen() const { return getDescriptor() != AFC_INVALID_SOCKET; }
  const std::string& getHost() const { return host_; }
  int getPort() const { return port_; }
  // The local port the socket is bound to (useful after binding port 0), or -1.
  int getLocalPort() const;
  // Milliseconds; 0 means no limit. Bounds connects, accepts, and the waits of readExact() and
  // writeAll() on a socket that does not block.
  void setTimeLimit(int milliseconds) { timeLimitMs_ = milliseconds; }
  int getTimeLimit() const { return timeLimitMs_; }

  void setBlocking(bool blocking);
  bool isBlocking() const { return blocking_; }
  // Nagle's algorithm on or off (off sets TCP_NODELAY).
  void setNagleBuffer(bool nagle);
  bool isNagleBuffer() const { return nagle_; }
  void setKeepAlive(bool keepAlive);
  bool isKeepAlive() const { return keepAlive_; }

  // One receive of at most size bytes: what is there, waiting only when nothing is (and the
  // socket blocks). 0 when a non-blocking socket has nothing or the call was interrupted.
  std::size_t readAvailable(void* data, std::size_t size);
  // Receives until size bytes are in or the socket would block; the count read.
  std::size_t read(void* data, std::size_t size);
  // Appends at most maxCount bytes that are there now (see readAvailable); the count read.
  std::size_t read(AFCBuffer& buffer, std::size_t maxCount);
  // Receives exactly size bytes. A socket that does not block waits for readiness, and past the
  // time limit throws AFCSocketIOErrorException "read() failed" with the time-out error.
  void readExact(void* data, std::size_t size);
  // Sends until all is out or the socket would block; the count sent.
  std::size_t write(const void* data, std::size_t size);
  std::size_t write(const AFCBuffer& buffer) { return write(buffer.data(), buffer.size()); }
  // Sends all of it, waiting for readiness as readExact() does ("write() failed").
  void writeAll(const void* data, std::size_t size);

  // Leaves the registry and closes the handle; failures are logged, not thrown.
  void close();
  // The registry the socket's owner uses: the calling thread's default handler unless
  // overridden.
  virtual AFCFDAsyncRegistry* getAsyncRegistry();
  // Registers with getAsyncRegistry() for the events, or changes them when registered.
  void enableEvents(uint32_t mask);

 protected:
  // Notifications from the handler; the defaults do nothing.
  virtual void onReadable() {}
  virtual void onWritable() {}
  // The peer closed and every byte it sent was read.
  virtual void onPeerClosed() {}
  void notify(uint32_t events) override;
  // Handles events other than read, write and close; the default ignores them.
  virtual void notifyOther(uint32_t events);

  // Takes over an open (accepted) handle, closing what the socket held.
  void adopt(AFCSocketHandle handle, std::string host, int port);
  // Waits until the socket is readable (or writable, or failed) for at most timeoutMs (no limit
  // when not positive); false on time-out. A failed wait throws for the operation.
  bool waitReady(bool forWrite, int timeoutMs, const char* operation);

  std::string host_;
  int port_ = 0;

 private:
  AFCSocketLibrary library_;
  int timeLimitMs_ = 0;
  bool blocking_ = true;
  bool nagle_ = true;
  bool keepAlive_ = false;
};

// A socket that connects to a server. connect() throws AFCSocketWrongPortException,
// AFCUnknownHostException, AFCSocketConnectFailedException (the socket is closed then, so the
// next connect starts afresh) and AFCSocketException "Socket create failed".
class AFCClientSocket : public AFCSocket {
 public:
  // A blocking socket waits for the connection (within the time limit, when one is set); a
  // non-blocking one registers for the connect event and returns, the handler finishes it.
  void connect(const std::string& host, int port);
  bool isConnecting() const { return connecting_; }

 protected:
  // The connection is up; the socket now asks for read and write events.
  virtual void onConnected() {}
  void notifyOther(uint32_t events) override;

 private:
  friend class AFCServerSocket;
  // One round of the connect loop; true when connected.
  bool tryConnect();
  void connected();
  [[noreturn]] void fail(int errorCode);

  uint32_t address_ = 0;
  bool connecting_ = false;
};

// A listening socket on all local addresses. bind() throws AFCSocketException "Can't bind
// socket", listen() "listen() failed", accept() "accept() failed" and, when the time limit runs
// out first, "accept() failed, timeout". Registered for the accept event, it calls serveClient
// on the handler's thread; what that throws is logged as "AFCServerSocket: client exception: ".
class AFCServerSocket : public AFCSocket {
 public:
  // Port 0 takes a free port; getLocalPort() tells which. An empty host binds all local
  // addresses; otherwise the host's (IPv4) address, such as "127.0.0.1".
  void bind(int port, const std::string& host = {});
  void listen();
  // Waits for the next connection and hands it to client, closing what client held.
  void accept(AFCClientSocket& client);

 protected:
  // A connection waits. The default accepts and drops it: a server that serves overrides this.
  virtual void serveClient();
  void notifyOther(uint32_t events) override;
};
