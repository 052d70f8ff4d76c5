#pragma once
// The packet exchange that protocol layers above the framing rely on: fire-and-forget packets
// and synchronous request/reply. Implemented by the session's stream layer.
#include <cstdint>

class AFCBuffer;

class VXCommProtocol {
 public:
  virtual ~VXCommProtocol() = default;

  // Sends one packet; a closed session drops it silently.
  virtual void sendPacket(uint32_t type, const AFCBuffer& payload) = 0;
  // Sends one packet and waits for the packet of replyType, whose payload replaces reply's
  // contents. Throws VXCommunicationErrorException when not connected.
  virtual void request(uint32_t type, const AFCBuffer& payload, uint32_t replyType,
                       AFCBuffer& reply) = 0;
};
