#include "client/client_stream.h"

#include <cstring>

#include "client/client_exceptions.h"
#include "foundation/errlog.h"

VXClientStream::VXClientStream(int32_t clientIndex) : VXClientPacket(clientIndex) {}

VXClientStream::~VXClientStream() = default;

void VXClientStream::openTransport() {
  connectTransport();
  onTransportConnected();
}

void VXClientStream::closeTransport() { disconnectTransport(); }

void VXClientStream::onTransportConnected() { onConnected(); }

void VXClientStream::onServerDisconnected() {
  debugLine("server disconnected");
  onDisconnected();
}

void VXClientStream::sendPacket(uint32_t type, const AFCBuffer& payload) {
  AFCMutexLock lock(sendLock_);
  if (!isOpen()) {
    debugLine("sendPacket: not connected!");
    return;
  }
  AFCBuffer packet;
  packet.resize(VXPacketFrame::kHeaderSize + payload.size());
  VXPacketFrame::encodeHeader(packet.data(),
                              {VXPacketFrame::kMagic, type, static_cast<uint32_t>(payload.size())});
  if (!payload.empty()) {
    std::memcpy(packet.data() + VXPacketFrame::kHeaderSize, payload.data(), payload.size());
  }
  try {
    writeAll(packet.data(), packet.size());
  } catch (const AFCException& e) {
    if (!getSilentErrors()) throw;
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX") << "VX2Client: IO error, " << e.what() << '\n';
    close();
  }
}

void VXClientStream::readPacket(uint32_t& type, AFCBuffer& payload) {
  if (!isOpen()) {
    debugLine("readPacket: not connected!");
    throw VXCommunicationErrorException("Client is not connected");
  }
  try {
    readPacketUnchecked(type, payload);
  } catch (const AFCException& e) {
    payload.clear();
    debugLine("readPacket failed: ", e.what());
    throw;
  }
}

void VXClientStream::readPacketUnchecked(uint32_t& type, AFCBuffer& payload) {
  uint8_t bytes[VXPacketFrame::kHeaderSize];
  readExact(bytes, VXPacketFrame::kHeaderSize);
  const VXPacketFrame::Header header = VXPacketFrame::decodeHeader(bytes);
  if (header.magic != VXPacketFrame::kMagic) {
    throw VXCommunicationErrorException("Bad magic in packet header");
  }
  type = header.type;
  const uint32_t length = header.length;
  if (length > VXPacketFrame::kMaxPayload) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX")
        << "Declared packet length " << length << ", PacketType=" << type << '\n';
    throw VXCommunicationErrorException("Wrong packet length");
  }
  payload.resize(length);
  if (length > 0) readExact(payload.data(), length);
}

void VXClientStream::waitReply(uint32_t expected, AFCBuffer& reply) {
  if (!isOpen()) {
    debugLine("readPacket: not connected!");
    return;
  }
  uint32_t type = 0;
  readPacket(type, reply);
  while (type != expected) {
    handleAsyncPacket(type, reply);
    readPacket(type, reply);
  }
}

void VXClientStream::request(uint32_t type, const AFCBuffer& payload, uint32_t replyType,
                             AFCBuffer& reply) {
  if (!isOpen()) throw VXCommunicationErrorException("Not connected");
  sendPacket(type, payload);
  waitReply(replyType, reply);
}

void VXClientStream::processIncoming() {
  uint32_t type = 0;
  AFCBuffer payload;
  readPacket(type, payload);
  handleAsyncPacket(type, payload);
}
