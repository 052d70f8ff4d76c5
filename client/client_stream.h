#pragma once
// Packets on a byte stream: the frame of client/packet_frame.h (a 12-byte header before the
// payload) and the limit on what the reader accepts, one write per packet under
// the send lock, and the synchronous request/reply exchange. Packets met while a reply is
// awaited go to the asynchronous dispatcher first, in arrival order, so a reply never overtakes
// the events sent before it.
//
// The byte transport is left to the subclass (readExact, writeAll, connectTransport,
// disconnectTransport, isOpen). Only sending is locked; a reply is read by the thread that made
// the request. Read failures throw VXCommunicationErrorException or the transport's exception;
// send failures propagate unless silent errors are on (then logged, and the session closed).
#include <cstddef>
#include <cstdint>

#include "client/client_packet.h"
#include "foundation/mutex.h"

class VXClientStream : public VXClientPacket {
 public:
  explicit VXClientStream(int32_t clientIndex = 0);
  ~VXClientStream() override;

 protected:
  friend class VXSessionTestAccess;

  // Connects the transport, then runs the handshake.
  void openTransport() override;
  void closeTransport() override;
  void sendPacket(uint32_t type, const AFCBuffer& payload) override;
  void request(uint32_t type, const AFCBuffer& payload, uint32_t replyType,
               AFCBuffer& reply) override;

  // Reads one packet; the type is stored even when the length is refused. On failure the
  // payload buffer is left empty.
  void readPacket(uint32_t& type, AFCBuffer& payload);
  // Reads packets until one of type expected arrives, dispatching the others. Returns at once,
  // with reply untouched, when the session is closed.
  void waitReply(uint32_t expected, AFCBuffer& reply);

  // Reads one packet and dispatches it; for the transport when data is readable and no request
  // is waiting.
  virtual void processIncoming();
  virtual void onTransportConnected();
  // The server closed the connection.
  virtual void onServerDisconnected();

  // The byte transport. connectTransport only connects (the handshake follows it); both it and
  // disconnectTransport do nothing when already in the wanted state.
  virtual void connectTransport() = 0;
  virtual void disconnectTransport() = 0;
  // Exactly count bytes into dest, or throw.
  virtual void readExact(uint8_t* dest, std::size_t count) = 0;
  // All count bytes, or throw.
  virtual void writeAll(const uint8_t* bytes, std::size_t count) = 0;

 private:
  void readPacketUnchecked(uint32_t& type, AFCBuffer& payload);

  AFCMutex sendLock_{"VXClientStream send lock"};
};
