#pragma once
// The one way tests and fuzz harnesses reach a session's wire internals (the transport, framing,
// handshake and dispatch steps), which are not part of its public surface. A friend of the
// session classes; nothing but forwarding.
#include <cstddef>
#include <cstdint>

#include "client/client_stream.h"

class VXSessionTestAccess {
 public:
  static void onConnected(VXClientPacket& session) { session.onConnected(); }
  static void handleAsyncPacket(VXClientPacket& session, uint32_t type, const AFCBuffer& payload) {
    session.handleAsyncPacket(type, payload);
  }
  static void sendPacket(VXClientStream& session, uint32_t type, const AFCBuffer& payload) {
    session.sendPacket(type, payload);
  }
  static void request(VXClientStream& session, uint32_t type, const AFCBuffer& payload,
                      uint32_t replyType, AFCBuffer& reply) {
    session.request(type, payload, replyType, reply);
  }
  static void readPacket(VXClientStream& session, uint32_t& type, AFCBuffer& payload) {
    session.readPacket(type, payload);
  }
  static void waitReply(VXClientStream& session, uint32_t expected, AFCBuffer& reply) {
    session.waitReply(expected, reply);
  }
  static void readExact(VXClientStream& session, uint8_t* dest, std::size_t count) {
    session.readExact(dest, count);
  }
  static void processIncoming(VXClientStream& session) { session.processIncoming(); }
  static void onServerDisconnected(VXClientStream& session) { session.onServerDisconnected(); }
};
