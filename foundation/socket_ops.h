#pragma once
// The platform seam under the socket classes and the descriptor handlers: plain calls on neutral
// handles, implemented once in socket_posix.cpp and once in socket_win32.cpp. Failures come back
// as WinSock error numbers on every platform (afcSocketLastError()), so the layers above speak
// one set of codes and texts. None of these throws except afcThrowSocketError and the library
// start.
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/fd_handler.h"
#include "foundation/unique_handle.h"

// Starts the platform's socket library (WinSock 2.0); throws AFCSocketException when it cannot.
// Does nothing on POSIX.
void afcSocketLibraryStart();
void afcSocketLibraryStop();

// The WinSock number of the calling thread's last socket failure.
int afcSocketLastError();
// Throws AFCSocketIOErrorException for the operation with afcSocketLastError().
[[noreturn]] void afcThrowSocketError(const std::string& operation);
// The system's own text for a code without a row in the table, or empty.
std::string afcSocketSystemErrorText(int code);

// A stream (TCP) socket over IPv4, or AFC_INVALID_SOCKET.
AFCSocketHandle afcSocketOpenTcp();
// 0, or the error of the close.
int afcSocketClose(AFCSocketHandle socket);

struct AFCSocketTraits {
  using Type = AFCSocketHandle;
  static Type invalid() noexcept { return AFC_INVALID_SOCKET; }
  static void close(Type socket) noexcept { afcSocketClose(socket); }
};
using AFCUniqueSocket = AFCUniqueHandle<AFCSocketTraits>;

// IPv4 addresses are in host order. False when the name does not resolve; the first address
// the system returns is taken.
bool afcSocketResolve(const std::string& host, uint32_t& address);
// 0 or an error number; these return the error rather than leave it in afcSocketLastError().
int afcSocketConnect(AFCSocketHandle socket, uint32_t address, int port);
int afcSocketPendingError(AFCSocketHandle socket);
int afcSocketBind(AFCSocketHandle socket, uint32_t address, int port);
int afcSocketListen(AFCSocketHandle socket);
// The accepted socket, or AFC_INVALID_SOCKET.
AFCSocketHandle afcSocketAccept(AFCSocketHandle socket, uint32_t& peerAddress, int& peerPort);
// Byte counts, or -1 with afcSocketLastError() set. Sending never raises a signal.
long afcSocketRecv(AFCSocketHandle socket, void* data, std::size_t size);
long afcSocketSend(AFCSocketHandle socket, const void* data, std::size_t size);
// Bytes that a read would return at once, or -1.
long afcSocketBytesWaiting(AFCSocketHandle socket);
// 0, or -1 with afcSocketLastError() set.
int afcSocketSetBlocking(AFCSocketHandle socket, bool blocking);
int afcSocketSetNoDelay(AFCSocketHandle socket, bool noDelay);
int afcSocketSetKeepAlive(AFCSocketHandle socket, bool keepAlive);
// The local port, or -1.
int afcSocketLocalPort(AFCSocketHandle socket);

// One socket of a select(): what is asked for, and what came back.
struct AFCSocketWait {
  AFCSocketHandle socket;
  bool wantRead = false;
  bool wantWrite = false;
  bool readable = false;
  bool writable = false;
  bool failed = false;  // an exceptional condition (a failed connect on Windows)
};
// select() over the sockets; timeoutMs < 0 waits for ever. The number of ready sockets, 0 on
// time-out, -1 with afcSocketLastError() set.
int afcSocketSelect(std::vector<AFCSocketWait>& sockets, int timeoutMs);
