// The texts of WinSock error numbers and the socket exceptions that show them.
#include <algorithm>
#include <cstdio>
#include <iterator>

#include "foundation/socket.h"
#include "foundation/socket_ops.h"

namespace {
struct ErrorRow {
  int code;
  const char* text;
};

// Sorted by code.
constexpr ErrorRow kErrorRows[] = {
    {10004, "Interrupted function call"},
    {10009, "Bad file number"},
    {10013, "Permission denied"},
    {10014, "Bad address"},
    {10022, "Invalid argument"},
    {10024, "Too many open files"},
    {10035, "Operation would block"},
    {10036, "Operation now in progress"},
    {10037, "Operation already in progress"},
    {10038, "Socket operation on non-socket"},
    {10039, "Destination address required"},
    {10040, "Inappropriate message buffer length"},
    {10041, "Protocol wrong type for socket"},
    {10042, "Protocol not available"},
    {10043, "Protocol not supported"},
    {10044, "Socket type not supported"},
    {10045, "Operation not supported on socket"},
    {10046, "Protocol family not supported"},
    {10047, "Address family not supported by protocol family"},
    {10048, "Address already in use"},
    {10049, "Can't assign requested address"},
    {10050, "Network is down"},
    {10051, "Network is unreachable"},
    {10052, "Network dropped connection because of reset"},
    {10053, "Software caused connection abort"},
    {10054, "Connection reset by peer"},
    {10055, "No buffer space available"},
    {10056, "Socket is already connected"},
    {10057, "Socket is not connected"},
    {10058, "Can't send after socket shutdown"},
    {10059, "Too many references: can't splice"},
    {10060, "Connection timed out"},
    {10061, "Connection refused"},
    {10062, "Symbolic link loop"},
    {10063, "Filename too long"},
    {10064, "Host is down"},
    {10065, "No route to host"},
    {10066, "Directory not empty"},
    {10067, "Process limit reached"},
    {10068, "Too many users"},
    {10069, "DQUOT"},
    {10070, "Stale NFS file handle"},
    {10071, "The object is remote"},
    {10091, "SYSNOTREADY"},
    {10092, "VERNOTSUPPORTED"},
    {10093, "NOTINITIALISED"},
    {10101, "DISCON"},
    {10102, "NOMORE"},
    {10103, "AIO operation canceled"},
    {10104, "INVALIDPROCTABLE"},
    {10105, "INVALIDPROVIDER"},
    {10106, "PROVIDERFAILEDINIT"},
    {10107, "SYSCALLFAILURE"},
    {10110, "NO_MORE"},
    {10111, "CANCELLED"},
    {10112, "REFUSED"},
    {11005, "at least one Reserve has arrived"},
    {11006, "at least one Path has arrived"},
    {11007, "there are no senders"},
    {11008, "there are no receivers"},
    {11009, "Reserve has been confirmed"},
    {11010, "error due to lack of resources"},
    {11011, "rejected for administrative reasons - bad credentials"},
    {11012, "unknown or conflicting style"},
    {11013, "problem with some part of the filterspec or providerspecif"},
    {11014, "problem with some part of the flowspec"},
    {11015, "general error"},
};
}  // namespace

std::string afcSocketErrorText(int code) {
  const auto row = std::lower_bound(std::begin(kErrorRows), std::end(kErrorRows), code,
                                    [](const ErrorRow& r, int c) { return r.code < c; });
  if (row != std::end(kErrorRows) && row->code == code) return row->text;
  std::string text = afcSocketSystemErrorText(code);
  if (!text.empty()) return text;
  char unknown[32];
  std::snprintf(unknown, sizeof unknown, "Unknown error 0x%08x", static_cast<unsigned>(code));
  return unknown;
}

std::string afcSocketAddressText(uint32_t address) {
  char text[16];
  std::snprintf(text, sizeof text, "%d.%d.%d.%d", static_cast<int>(address >> 24),
                static_cast<int>((address >> 16) & 0xff), static_cast<int>((address >> 8) & 0xff),
                static_cast<int>(address & 0xff));
  return text;
}

void AFCSocketConnectFailedException::print(std::string& out) const {
  out += "Can't connect to " + host_ + ", " + afcSocketErrorText(errorCode_) + ".";
}

void AFCSocketIOErrorException::print(std::string& out) const {
  out += "IO error, " + operation_ + ", " + afcSocketErrorText(errorCode_) + ".";
}

void AFCUnknownHostException::print(std::string& out) const {
  out += "Unknown host \"" + host_ + "\"";
}
