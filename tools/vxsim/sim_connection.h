#pragma once
// One client of the simulator, without the socket: fed the bytes the client sent, it frames
// them into packets (client/packet_frame.h), serves each packet against the hub and leaves
// the framed bytes to send in its output. So the whole server side can be driven, tested and
// fuzzed with buffers.
//
// Owned by whoever carries its bytes (the server's socket, a test); it attaches itself to the
// hub for its lifetime. Not thread safe: hub and connections run on one thread. feed() throws
// VXCommunicationErrorException ("Bad magic in packet header", "Wrong packet length") when the
// framing breaks; the connection is then closed and takes no more bytes. A packet whose payload
// cannot be decoded is logged and dropped; a request among them is still answered.
//
// The hub's fault orders are carried out here: received packets are counted for a close order,
// the next packet framed gets a bad magic or length, and a reply under a delay is held back, with
// everything framed after it, until it is due; takeOutput() gives only what is due.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "foundation/buffer.h"

class VXSimHub;

class VXSimConnection {
 public:
  // What a magic fault writes instead of the frame's magic.
  static constexpr uint32_t kBadMagic = 0x0BADF00D;
  using Clock = std::chrono::steady_clock;

  VXSimConnection(VXSimHub& hub, int id);
  ~VXSimConnection();
  VXSimConnection(const VXSimConnection&) = delete;
  VXSimConnection& operator=(const VXSimConnection&) = delete;

  int getId() const { return id_; }
  // Takes the bytes and serves every whole packet among them.
  void feed(const uint8_t* bytes, std::size_t count);
  // The framed packets to send since the last call, up to the first held reply not due at now.
  std::vector<uint8_t> takeOutput(Clock::time_point now = Clock::now());
  // Anything framed and not yet taken, due or not.
  bool hasOutput() const { return !output_.empty() || !held_.empty(); }
  // When the first held reply is due; nothing when none is held.
  std::optional<Clock::time_point> nextDue() const;
  // Framing broke or the operator dropped the connection: the bytes carrier should close it.
  bool isClosed() const { return closed_; }
  void markClosed() { closed_ = true; }

  // Appends one framed packet to the output.
  void send(uint32_t type, const AFCBuffer& payload);
  // The same for the reply to a request, which a delay fault holds back.
  void sendReply(uint32_t type, const AFCBuffer& payload);
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
  void frame(std::vector<uint8_t>& out, uint32_t type, const AFCBuffer& payload);
  // Counts a received packet against a close order; closes when it was the last one.
  void countForCloseFault();

  // A reply a delay holds back, and what was framed after it.
  struct Held {
    Clock::time_point due;
    std::vector<uint8_t> bytes;
  };

  VXSimHub& hub_;
  const int id_;
  std::vector<uint8_t> input_;
  std::vector<uint8_t> output_;
  std::deque<Held> held_;
  std::vector<std::pair<uint32_t, AFCBuffer>> afterReply_;
  bool closed_ = false;
  bool loggedIn_;
  bool errLogSubscriber_ = false;
  std::vector<uint8_t> challenge_;  // the last one sent, until it is answered
  std::set<std::string> zones_;
  // The hub's fault orders carried out, by number (see VXSimFaults).
  uint64_t magicDone_ = 0;
  uint64_t lengthDone_ = 0;
  uint64_t closeSeen_ = 0;
  uint32_t packetsLeft_ = 0;  // before the close order is carried out
};
