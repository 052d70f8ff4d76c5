#pragma once
// One client of the simulator, without the socket: fed the bytes the client sent, it frames
// them into packets (the 12-byte header with magic 0x56585001, type and payload length, all
// big-endian; at most 10,000,000 payload bytes), serves each packet against the hub and leaves
// the framed bytes to send in its output. So the whole server side can be driven, tested and
// fuzzed with buffers.
//
// Owned by whoever carries its bytes (the server's socket, a test); it attaches itself to the
// hub for its lifetime. Not thread safe: hub and connections run on one thread. feed() throws
// VXCommunicationErrorException ("Bad magic in packet header", "Wrong packet length") when the
// framing breaks; the connection is then closed and takes no more bytes. A packet whose payload
// cannot be decoded is logged and dropped; a request among them is still answered.
#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "foundation/buffer.h"

class VXSimHub;

class VXSimConnection {
 public:
  static constexpr uint32_t kMagic = 0x56585001;
  static constexpr std::size_t kHeaderSize = 12;
  static constexpr uint32_t kMaxPayload = 10000000;

  VXSimConnection(VXSimHub& hub, int id);
  ~VXSimConnection();
  VXSimConnection(const VXSimConnection&) = delete;
  VXSimConnection& operator=(const VXSimConnection&) = delete;

  int getId() const { return id_; }
  // Takes the bytes and serves every whole packet among them.
  void feed(const uint8_t* bytes, std::size_t count);
  // The framed packets to send since the last call.
  std::vector<uint8_t> takeOutput();
  bool hasOutput() const { return !output_.empty(); }
  // Framing broke or the operator dropped the connection: the bytes carrier should close it.
  bool isClosed() const { return closed_; }
  void markClosed() { closed_ = true; }

  // Appends one framed packet to the output.
  void send(uint32_t type, const AFCBuffer& payload);
  // Holds a packet back until the reply being made has been sent (a pick result after the
  // remote-object reply that asked for it).
  void sendAfterReply(uint32_t type, AFCBuffer payload);

  bool isLoggedIn() const { return loggedIn_; }
  bool isErrLogSubscriber() const { return errLogSubscriber_; }
  bool isRegisteredForZone(const std::string& zone) const { return zones_.contains(zone); }

 private:
  void servePacket(uint32_t type, const AFCBuffer& payload);
  void serveRequest(uint32_t type, const AFCBuffer& payload);
  void serveVersion();
  void serveChallenge();
  void serveLoginResponse(const AFCBuffer& payload);
  void serveAction(const AFCBuffer& payload);
  void serveSetZoneState(const AFCBuffer& payload);
  void serveGetZoneState(const AFCBuffer& payload);
  void serveZoneRegistration(uint32_t type, const AFCBuffer& payload);
  void serveRemoteObjectRequest(const AFCBuffer& payload);
  void flushAfterReply();

  VXSimHub& hub_;
  const int id_;
  std::vector<uint8_t> input_;
  std::vector<uint8_t> output_;
  std::vector<std::pair<uint32_t, AFCBuffer>> afterReply_;
  bool closed_ = false;
  bool loggedIn_;
  bool errLogSubscriber_ = false;
  std::vector<uint8_t> challenge_;  // the last one sent, until it is answered
  std::set<std::string> zones_;
};
