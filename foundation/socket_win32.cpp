// WinSock behind the neutral seam. Error numbers are WinSock's own here; handles are SOCKETs
// carried as AFCSocketHandle (INVALID_SOCKET is -1 there).
#define FD_SETSIZE 1024
#include <winsock2.h>
#include <ws2tcpip.h>
// WinSock's headers come before the rest of Windows'.
#include <windows.h>

#include <algorithm>
#include <climits>

#include "foundation/socket.h"
#include "foundation/socket_ops.h"

namespace {
SOCKET raw(AFCSocketHandle socket) { return static_cast<SOCKET>(socket); }

int clampSize(std::size_t size) { return static_cast<int>(std::min<std::size_t>(size, INT_MAX)); }

sockaddr_in ipv4(uint32_t address, int port) {
  sockaddr_in socketAddress{};
  socketAddress.sin_family = AF_INET;
  socketAddress.sin_addr.s_addr = htonl(address);
  socketAddress.sin_port = htons(static_cast<u_short>(port));
  return socketAddress;
}

int resultOf(int result) { return result == 0 ? 0 : afcSocketLastError(); }

int setFlag(AFCSocketHandle socket, int level, int option, bool on) {
  const BOOL value = on ? TRUE : FALSE;
  return setsockopt(raw(socket), level, option, reinterpret_cast<const char*>(&value),
                    sizeof value) == 0
             ? 0
             : -1;
}

void fill(fd_set& set, const std::vector<AFCSocketWait>& sockets, bool AFCSocketWait::*wanted) {
  FD_ZERO(&set);
  for (const AFCSocketWait& wait : sockets) {
    if (wait.*wanted) FD_SET(raw(wait.socket), &set);
  }
}
}  // namespace

void afcSocketLibraryStart() {
  WSADATA data;
  if (WSAStartup(MAKEWORD(2, 0), &data) != 0) {
    throw AFCSocketException("AFCSocket: WinSocket library is not available!");
  }
  if (LOBYTE(data.wVersion) < 2) {
    WSACleanup();
    throw AFCSocketException(
        "AFCSocket: Required version of WinSocket library is not available! Available is:" +
        std::to_string(LOBYTE(data.wVersion)) + "." + std::to_string(HIBYTE(data.wVersion)));
  }
}

void afcSocketLibraryStop() { WSACleanup(); }

int afcSocketLastError() { return WSAGetLastError(); }

void afcThrowSocketError(const std::string& operation) {
  throw AFCSocketIOErrorException(operation, afcSocketLastError());
}

std::string afcSocketSystemErrorText(int code) {
  char* text = nullptr;
  const DWORD length = FormatMessageA(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, static_cast<DWORD>(code), 0, reinterpret_cast<char*>(&text), 0, nullptr);
  std::string result = length != 0 ? std::string(text, length) : std::string();
  LocalFree(text);
  while (!result.empty() && (result.back() == '\n' || result.back() == '\r')) result.pop_back();
  return result;
}

AFCSocketHandle afcSocketOpenTcp() {
  const SOCKET socket = ::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
  return socket == INVALID_SOCKET ? AFC_INVALID_SOCKET : static_cast<AFCSocketHandle>(socket);
}

int afcSocketClose(AFCSocketHandle socket) { return resultOf(closesocket(raw(socket))); }

bool afcSocketResolve(const std::string& host, uint32_t& address) {
  addrinfo hints{};
  hints.ai_family = AF_INET;
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &found) != 0 || found == nullptr) return false;
  address = ntohl(reinterpret_cast<const sockaddr_in*>(found->ai_addr)->sin_addr.s_addr);
  freeaddrinfo(found);
  return true;
}

int afcSocketConnect(AFCSocketHandle socket, uint32_t address, int port) {
  const sockaddr_in target = ipv4(address, port);
  return resultOf(
      ::connect(raw(socket), reinterpret_cast<const sockaddr*>(&target), sizeof target));
}

int afcSocketPendingError(AFCSocketHandle socket) {
  int error = 0;
  int length = sizeof error;
  if (getsockopt(raw(socket), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &length) !=
      0) {
    return afcSocketLastError();
  }
  return error;
}

int afcSocketBind(AFCSocketHandle socket, uint32_t address, int port) {
  const sockaddr_in local = ipv4(address, port);
  return resultOf(::bind(raw(socket), reinterpret_cast<const sockaddr*>(&local), sizeof local));
}

int afcSocketListen(AFCSocketHandle socket) { return resultOf(::listen(raw(socket), SOMAXCONN)); }

AFCSocketHandle afcSocketAccept(AFCSocketHandle socket, uint32_t& peerAddress, int& peerPort) {
  sockaddr_in peer{};
  int length = sizeof peer;
  const SOCKET accepted = ::accept(raw(socket), reinterpret_cast<sockaddr*>(&peer), &length);
  if (accepted == INVALID_SOCKET) return AFC_INVALID_SOCKET;
  // An accepted socket inherits the listener's event selection and with it non-blocking mode;
  // it starts plain and blocking, as it does on POSIX.
  WSAEventSelect(accepted, nullptr, 0);
  u_long nonBlocking = 0;
  ioctlsocket(accepted, FIONBIO, &nonBlocking);
  peerAddress = ntohl(peer.sin_addr.s_addr);
  peerPort = ntohs(peer.sin_port);
  return static_cast<AFCSocketHandle>(accepted);
}

long afcSocketRecv(AFCSocketHandle socket, void* data, std::size_t size) {
  return ::recv(raw(socket), static_cast<char*>(data), clampSize(size), 0);
}

long afcSocketSend(AFCSocketHandle socket, const void* data, std::size_t size) {
  return ::send(raw(socket), static_cast<const char*>(data), clampSize(size), 0);
}

long afcSocketBytesWaiting(AFCSocketHandle socket) {
  u_long count = 0;
  return ioctlsocket(raw(socket), FIONREAD, &count) == 0 ? static_cast<long>(count) : -1;
}

int afcSocketSetBlocking(AFCSocketHandle socket, bool blocking) {
  u_long nonBlocking = blocking ? 0 : 1;
  return ioctlsocket(raw(socket), FIONBIO, &nonBlocking) == 0 ? 0 : -1;
}

int afcSocketSetNoDelay(AFCSocketHandle socket, bool noDelay) {
  return setFlag(socket, IPPROTO_TCP, TCP_NODELAY, noDelay);
}

int afcSocketSetKeepAlive(AFCSocketHandle socket, bool keepAlive) {
  return setFlag(socket, SOL_SOCKET, SO_KEEPALIVE, keepAlive);
}

int afcSocketLocalPort(AFCSocketHandle socket) {
  sockaddr_in local{};
  int length = sizeof local;
  if (getsockname(raw(socket), reinterpret_cast<sockaddr*>(&local), &length) != 0) return -1;
  return ntohs(local.sin_port);
}

int afcSocketSelect(std::vector<AFCSocketWait>& sockets, int timeoutMs) {
  if (sockets.size() > FD_SETSIZE) {
    WSASetLastError(WSAEINVAL);
    return -1;
  }
  fd_set readSet, writeSet, failSet;
  fill(readSet, sockets, &AFCSocketWait::wantRead);
  fill(writeSet, sockets, &AFCSocketWait::wantWrite);
  // A connect that fails shows in the exception set, not the write set.
  fill(failSet, sockets, &AFCSocketWait::wantWrite);
  timeval limit{timeoutMs / 1000, (timeoutMs % 1000) * 1000};
  const int ready = ::select(0, &readSet, &writeSet, &failSet, timeoutMs < 0 ? nullptr : &limit);
  if (ready <= 0) return ready;
  for (AFCSocketWait& wait : sockets) {
    wait.readable = FD_ISSET(raw(wait.socket), &readSet) != 0;
    wait.writable = FD_ISSET(raw(wait.socket), &writeSet) != 0;
    wait.failed = FD_ISSET(raw(wait.socket), &failSet) != 0;
  }
  return ready;
}
