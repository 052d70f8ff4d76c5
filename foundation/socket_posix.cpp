// POSIX sockets behind the neutral seam; errno values become their WinSock numbers here, and only
// here.
#include <arpa/inet.h>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "foundation/socket.h"
#include "foundation/socket_ops.h"

namespace {
int toWinSock(int error) {
  switch (error) {
    case 0:
      return 0;
    case EINTR:
      return 10004;
    case EBADF:
      return 10009;
    case EACCES:
      return 10013;
    case EFAULT:
      return 10014;
    case EINVAL:
      return 10022;
    case EMFILE:
      return 10024;
    case EWOULDBLOCK:
      return 10035;
    case EINPROGRESS:
      return 10036;
    case EALREADY:
      return 10037;
    case ENOTSOCK:
      return 10038;
    case EDESTADDRREQ:
      return 10039;
    case EMSGSIZE:
      return 10040;
    case EPROTOTYPE:
      return 10041;
    case ENOPROTOOPT:
      return 10042;
    case EPROTONOSUPPORT:
      return 10043;
    case ESOCKTNOSUPPORT:
      return 10044;
    case EOPNOTSUPP:
      return 10045;
    case EPFNOSUPPORT:
      return 10046;
    case EAFNOSUPPORT:
      return 10047;
    case EADDRINUSE:
      return 10048;
    case EADDRNOTAVAIL:
      return 10049;
    case ENETDOWN:
      return 10050;
    case ENETUNREACH:
      return 10051;
    case ENETRESET:
      return 10052;
    case ECONNABORTED:
      return 10053;
    // A send to a peer that has gone is a reset on Windows.
    case EPIPE:
    case ECONNRESET:
      return 10054;
    case ENOBUFS:
      return 10055;
    case EISCONN:
      return 10056;
    case ENOTCONN:
      return 10057;
    case ESHUTDOWN:
      return 10058;
    case ETOOMANYREFS:
      return 10059;
    case ETIMEDOUT:
      return 10060;
    case ECONNREFUSED:
      return 10061;
    case ELOOP:
      return 10062;
    case ENAMETOOLONG:
      return 10063;
    case EHOSTDOWN:
      return 10064;
    case EHOSTUNREACH:
      return 10065;
    case ENOTEMPTY:
      return 10066;
    case EUSERS:
      return 10068;
    case EDQUOT:
      return 10069;
    case ESTALE:
      return 10070;
    case EREMOTE:
      return 10071;
    case ECANCELED:
      return 10103;
    // Without a WinSock twin the errno value itself is kept; its text is the system's.
    default:
      return error;
  }
}

sockaddr_in ipv4(uint32_t address, int port) {
  sockaddr_in socketAddress{};
  socketAddress.sin_family = AF_INET;
  socketAddress.sin_addr.s_addr = htonl(address);
  socketAddress.sin_port = htons(static_cast<uint16_t>(port));
  return socketAddress;
}

int fd(AFCSocketHandle socket) { return static_cast<int>(socket); }

int resultOf(int result) { return result == 0 ? 0 : afcSocketLastError(); }

int setFlag(AFCSocketHandle socket, int level, int option, bool on) {
  const int value = on ? 1 : 0;
  return setsockopt(fd(socket), level, option, &value, sizeof value) == 0 ? 0 : -1;
}
}  // namespace

void afcSocketLibraryStart() {}

void afcSocketLibraryStop() {}

int afcSocketLastError() { return toWinSock(errno); }

void afcThrowSocketError(const std::string& operation) {
  throw AFCSocketIOErrorException(operation, afcSocketLastError());
}

std::string afcSocketSystemErrorText(int code) {
  // Codes at and above 10000 are WinSock's, for which this system has no words.
  if (code <= 0 || code >= 10000) return {};
  return std::strerror(code);
}

AFCSocketHandle afcSocketOpenTcp() {
  const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
  return socket < 0 ? AFC_INVALID_SOCKET : socket;
}

int afcSocketClose(AFCSocketHandle socket) { return resultOf(::close(fd(socket))); }

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
  return resultOf(::connect(fd(socket), reinterpret_cast<const sockaddr*>(&target), sizeof target));
}

int afcSocketPendingError(AFCSocketHandle socket) {
  int error = 0;
  socklen_t length = sizeof error;
  if (getsockopt(fd(socket), SOL_SOCKET, SO_ERROR, &error, &length) != 0) {
    return afcSocketLastError();
  }
  return toWinSock(error);
}

int afcSocketBind(AFCSocketHandle socket, uint32_t address, int port) {
  const sockaddr_in local = ipv4(address, port);
  return resultOf(::bind(fd(socket), reinterpret_cast<const sockaddr*>(&local), sizeof local));
}

int afcSocketListen(AFCSocketHandle socket) { return resultOf(::listen(fd(socket), SOMAXCONN)); }

AFCSocketHandle afcSocketAccept(AFCSocketHandle socket, uint32_t& peerAddress, int& peerPort) {
  sockaddr_in peer{};
  socklen_t length = sizeof peer;
  const int accepted =
      ::accept4(fd(socket), reinterpret_cast<sockaddr*>(&peer), &length, SOCK_CLOEXEC);
  if (accepted < 0) return AFC_INVALID_SOCKET;
  peerAddress = ntohl(peer.sin_addr.s_addr);
  peerPort = ntohs(peer.sin_port);
  return accepted;
}

long afcSocketRecv(AFCSocketHandle socket, void* data, std::size_t size) {
  return static_cast<long>(::recv(fd(socket), data, size, 0));
}

long afcSocketSend(AFCSocketHandle socket, const void* data, std::size_t size) {
  return static_cast<long>(::send(fd(socket), data, size, MSG_NOSIGNAL));
}

long afcSocketBytesWaiting(AFCSocketHandle socket) {
  int count = 0;
  return ioctl(fd(socket), FIONREAD, &count) == 0 ? count : -1;
}

int afcSocketSetBlocking(AFCSocketHandle socket, bool blocking) {
  const int flags = fcntl(fd(socket), F_GETFL);
  if (flags < 0) return -1;
  const int wanted = blocking ? flags & ~O_NONBLOCK : flags | O_NONBLOCK;
  return fcntl(fd(socket), F_SETFL, wanted) == 0 ? 0 : -1;
}

int afcSocketSetNoDelay(AFCSocketHandle socket, bool noDelay) {
  return setFlag(socket, IPPROTO_TCP, TCP_NODELAY, noDelay);
}

int afcSocketSetKeepAlive(AFCSocketHandle socket, bool keepAlive) {
  return setFlag(socket, SOL_SOCKET, SO_KEEPALIVE, keepAlive);
}

int afcSocketLocalPort(AFCSocketHandle socket) {
  sockaddr_in local{};
  socklen_t length = sizeof local;
  if (getsockname(fd(socket), reinterpret_cast<sockaddr*>(&local), &length) != 0) return -1;
  return ntohs(local.sin_port);
}

// poll() rather than select(): descriptors past FD_SETSIZE must not break the wait.
int afcSocketSelect(std::vector<AFCSocketWait>& sockets, int timeoutMs) {
  std::vector<pollfd> polled;
  polled.reserve(sockets.size());
  for (const AFCSocketWait& wait : sockets) {
    const short events =
        static_cast<short>((wait.wantRead ? POLLIN : 0) | (wait.wantWrite ? POLLOUT : 0));
    polled.push_back({fd(wait.socket), events, 0});
  }
  int ready;
  // A signal only cuts the wait short; waiting the whole time again errs on the safe side.
  do {
    ready = ::poll(polled.data(), polled.size(), timeoutMs < 0 ? -1 : timeoutMs);
  } while (ready < 0 && errno == EINTR);
  if (ready <= 0) return ready;
  for (std::size_t i = 0; i < sockets.size(); ++i) {
    sockets[i].readable = (polled[i].revents & POLLIN) != 0;
    sockets[i].writable = (polled[i].revents & POLLOUT) != 0;
    sockets[i].failed = (polled[i].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
  }
  return ready;
}
