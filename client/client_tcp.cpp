#include "client/client_tcp.h"

#include <charconv>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "client/client_exceptions.h"
#include "foundation/errlog.h"
#include "foundation/fd_handler.h"

namespace {

// Large enough that a burst of asynchronous packets comes in with one receive.
constexpr std::size_t kReadBufferSize = 64 * 1024;

std::string environment(const char* name, bool& set) {
  const char* value = std::getenv(name);
  set = value != nullptr;
  return set ? value : "";
}

// Entry index (from 0) of a comma-separated list; nullopt past its end.
std::optional<std::string> listEntry(const std::string& list, int32_t index) {
  std::size_t begin = 0;
  for (int32_t i = 0;; ++i) {
    const std::size_t comma = list.find(',', begin);
    if (i == index) return list.substr(begin, comma == std::string::npos ? comma : comma - begin);
    if (comma == std::string::npos) return std::nullopt;
    begin = comma + 1;
  }
}

// "host:port"; a missing or zero port is the default one, an unreadable one -1 (which the
// socket refuses as a wrong port number).
std::pair<std::string, int> splitHostPort(const std::string& address) {
  const std::size_t colon = address.find(':');
  if (colon == std::string::npos) return {address, VXClientTcp::kDefaultPort};
  const std::string text = address.substr(colon + 1);
  int port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (text.empty())
    port = 0;
  else if (error != std::errc() || end != text.data() + text.size())
    port = -1;
  return {address.substr(0, colon), port == 0 ? VXClientTcp::kDefaultPort : port};
}

}  // namespace

VXClientTcp::VXClientTcp(int32_t clientIndex)
    : VXClientStream(clientIndex), readBuffer_(kReadBufferSize) {
  setUpDebugOutput();
}

VXClientTcp::~VXClientTcp() {
  socket_.close();
  clearOpenActions();
}

void VXClientTcp::setUpDebugOutput() {
  bool set = false;
  const std::string value = environment("VX2DEBUG", set);
  if (!set) return;
  int number = 0;
  const auto [end, error] = std::from_chars(value.data(), value.data() + value.size(), number);
  if (error == std::errc() && end == value.data() + value.size() && number > 0) {
    setDebug(true, &std::cerr);
    return;
  }
  if (value.size() < 4) return;
  auto file = std::make_unique<std::ofstream>(value);
  if (!*file) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX") << "Can't open VX2DEBUG file " << value << '\n';
    setDebug(true, &std::cerr);
    return;
  }
  debugFile_ = std::move(file);
  setDebug(true, debugFile_.get());
}

std::string VXClientTcp::getServerAddress() const {
  if (!serverAddress_.empty()) return serverAddress_;
  bool set = false;
  const std::string hosts = environment("VX2HOST", set);
  if (!set) return "localhost";
  if (getClientIndex() == 0) return hosts;
  return listEntry(hosts, getClientIndex() - 1).value_or("");
}

bool VXClientTcp::isOpen() const { return socket_.isOpen() && !socket_.isConnecting(); }

void VXClientTcp::setAsyncRegistry(AFCFDAsyncRegistry* registry) {
  if (registry != nullptr && isOpen()) {
    throw VXClientException("Cannot change AsyncRegistry while client is open");
  }
  asyncRegistry_ = registry;
}

AFCFDAsyncRegistry* VXClientTcp::Socket::getAsyncRegistry() {
  return session_.asyncRegistry_ ? session_.asyncRegistry_ : AFCClientSocket::getAsyncRegistry();
}

void VXClientTcp::connectTransport() {
  if (isOpen()) return;
  const std::string address = getServerAddress();
  debugLine("connecting to ", address);
  if (address.empty()) {
    throw VXClientException("Vexel connection failed, VX2HOST has no entry for client index " +
                            std::to_string(getClientIndex()));
  }
  const auto [host, port] = splitHostPort(address);
  try {
    socket_.setTimeLimit(kTimeLimitMs);
    socket_.connect(host, port);
    connectedHost_ = host;
    // Our socket layer has no setting that the number 4865 would name; the time limit, the
    // blocking mode and TCP_NODELAY are what the transport relies on.
    socket_.setNagleBuffer(false);
    readBegin_ = readEnd_ = 0;
    socket_.enableEvents(AFC_FD_READ | AFC_FD_CLOSE);
  } catch (const AFCSocketException& e) {
    socket_.close();
    throw VXClientException("Vexel connection failed, " + e.toString());
  }
  debugLine("connected to ", address);
}

void VXClientTcp::disconnectTransport() {
  socket_.close();
  readBegin_ = readEnd_ = 0;
}

void VXClientTcp::fillBuffer() {
  readBegin_ = 0;
  readEnd_ = socket_.readAvailable(readBuffer_.data(), readBuffer_.size());
  if (readEnd_ == 0) {
    // A socket that does not block (registered on Windows) had nothing yet: wait for one byte
    // within the time limit, then take what else came with it in one more receive. A close
    // right behind the data must not cost the data: the next read reports it.
    socket_.readExact(readBuffer_.data(), 1);
    readEnd_ = 1;
    try {
      readEnd_ += socket_.readAvailable(readBuffer_.data() + 1, readBuffer_.size() - 1);
    } catch (const AFCSocketDisconnectedException&) {
    }
  }
}

void VXClientTcp::readExact(uint8_t* dest, std::size_t count) {
  while (count > 0) {
    if (buffered() == 0) fillBuffer();
    const std::size_t n = std::min(count, buffered());
    std::memcpy(dest, readBuffer_.data() + readBegin_, n);
    readBegin_ += n;
    dest += n;
    count -= n;
  }
}

void VXClientTcp::writeAll(const uint8_t* bytes, std::size_t count) {
  socket_.writeAll(bytes, count);
}

void VXClientTcp::request(uint32_t type, const AFCBuffer& payload, uint32_t replyType,
                          AFCBuffer& reply) {
  std::lock_guard<std::recursive_mutex> reading(readLock_);
  VXClientStream::request(type, payload, replyType, reply);
  // Packets that came in with the reply are in the buffer now, where no readable event would
  // announce them: dispatch the whole ones here. A partial one ends with bytes still to come.
  // The reply itself was good, so a bad packet behind it fails the connection, not the request.
  try {
    while (isOpen() && packetBuffered()) processIncoming();
  } catch (const AFCException& e) {
    onStreamFailure(e);
  }
}

bool VXClientTcp::packetBuffered() const {
  if (buffered() < VXPacketFrame::kHeaderSize) return false;
  const uint32_t payload = VXPacketFrame::decodeHeader(readBuffer_.data() + readBegin_).length;
  return payload > VXPacketFrame::kMaxPayload || buffered() - VXPacketFrame::kHeaderSize >= payload;
}

void VXClientTcp::onReadable() {
  std::unique_lock<std::recursive_mutex> reading(readLock_, std::try_to_lock);
  if (!reading.owns_lock()) return;  // the request's own reader takes the bytes
  try {
    // A readiness whose bytes a request has read already (a socket that does not block keeps
    // the event) finds nothing: it must not wait for the next packet here.
    if (buffered() == 0) {
      readBegin_ = 0;
      readEnd_ = socket_.readAvailable(readBuffer_.data(), readBuffer_.size());
      if (readEnd_ == 0) return;
    }
    do {
      processIncoming();
    } while (isOpen() && buffered() > 0);
  } catch (const AFCException& e) {
    onStreamFailure(e);
  }
}

void VXClientTcp::onStreamFailure(const AFCException& e) {
  if (!isOpen()) return;  // closed while reading: the close has been handled
  AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX") << "VX2Client: IO error, " << e.toString() << '\n';
  onServerDisconnected();
}
