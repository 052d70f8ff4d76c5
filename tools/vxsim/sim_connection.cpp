#include "tools/vxsim/sim_connection.h"

#include "client/client_exceptions.h"
#include "client/login.h"
#include "client/packet_frame.h"
#include "client/roa_exceptions.h"
#include "commands/zone_state.h"
#include "foundation/persistent_stream.h"
#include "tools/vxsim/sim_hub.h"

namespace {

// True once per magic or length order: for the packet being framed when the order is new.
bool takeFault(uint64_t order, uint64_t& done) {
  if (order == 0 || order == done) return false;
  done = order;
  return true;
}

AFCBuffer bufferOf(const std::vector<uint8_t>& bytes) {
  return AFCBuffer(bytes.data(), bytes.size());
}

}  // namespace

VXSimConnection::VXSimConnection(VXSimHub& hub, int id)
    : hub_(hub), id_(id), loggedIn_(hub.getOptions().password.empty()) {
  hub_.attach(*this);
}

VXSimConnection::~VXSimConnection() { hub_.detach(*this); }

std::vector<uint8_t> VXSimConnection::takeOutput(Clock::time_point now) {
  while (!held_.empty() && held_.front().due <= now) {
    const std::vector<uint8_t>& bytes = held_.front().bytes;
    output_.insert(output_.end(), bytes.begin(), bytes.end());
    held_.pop_front();
  }
  return std::exchange(output_, {});
}

std::optional<VXSimConnection::Clock::time_point> VXSimConnection::nextDue() const {
  if (held_.empty()) return std::nullopt;
  return held_.front().due;
}

void VXSimConnection::send(uint32_t type, const AFCBuffer& payload) {
  // Behind a held reply everything waits, so that nothing overtakes it.
  frame(held_.empty() ? output_ : held_.back().bytes, type, payload);
}

void VXSimConnection::sendReply(uint32_t type, const AFCBuffer& payload) {
  const uint32_t delayMs = hub_.getFaults().delayMs;
  if (delayMs == 0) return send(type, payload);
  held_.push_back({Clock::now() + std::chrono::milliseconds(delayMs), {}});
  frame(held_.back().bytes, type, payload);
}

void VXSimConnection::frame(std::vector<uint8_t>& out, uint32_t type, const AFCBuffer& payload) {
  const VXSimFaults& faults = hub_.getFaults();
  const bool badMagic = takeFault(faults.magicOrder, magicDone_);
  const bool badLength = takeFault(faults.lengthOrder, lengthDone_);
  uint8_t header[VXPacketFrame::kHeaderSize];
  VXPacketFrame::encodeHeader(
      header, {badMagic ? kBadMagic : VXPacketFrame::kMagic, type,
               badLength ? VXPacketFrame::kMaxPayload + 1 : static_cast<uint32_t>(payload.size())});
  out.insert(out.end(), header, header + VXPacketFrame::kHeaderSize);
  out.insert(out.end(), payload.data(), payload.data() + payload.size());
  if (badMagic || badLength) {
    hub_.log("client " + std::to_string(id_) + ": packet " + std::to_string(type) + " sent with " +
             (badMagic ? "a bad magic" : "a bad length") + " (fault)");
  }
}

void VXSimConnection::countForCloseFault() {
  const VXSimFaults& faults = hub_.getFaults();
  if (faults.closeOrder == 0) return;
  if (closeSeen_ != faults.closeOrder) {
    closeSeen_ = faults.closeOrder;
    packetsLeft_ = faults.closeAfter;
  }
  if (packetsLeft_ == 0 || --packetsLeft_ > 0) return;
  closed_ = true;
  hub_.log("client " + std::to_string(id_) + ": closed after " + std::to_string(faults.closeAfter) +
           " packets (fault)");
}

void VXSimConnection::sendAfterReply(uint32_t type, AFCBuffer payload) {
  afterReply_.emplace_back(type, std::move(payload));
}

void VXSimConnection::flushAfterReply() {
  for (const auto& [type, payload] : std::exchange(afterReply_, {})) send(type, payload);
}

void VXSimConnection::feed(const uint8_t* bytes, std::size_t count) {
  if (closed_) return;
  input_.insert(input_.end(), bytes, bytes + count);
  std::size_t at = 0;
  try {
    while (!closed_ && input_.size() - at >= VXPacketFrame::kHeaderSize) {
      const uint8_t* bytes = input_.data() + at;
      const auto [magic, type, length] = VXPacketFrame::decodeHeader(bytes);
      if (magic != VXPacketFrame::kMagic) {
        throw VXCommunicationErrorException("Bad magic in packet header");
      }
      if (length > VXPacketFrame::kMaxPayload) {
        hub_.log("client " + std::to_string(id_) + ": declared packet length " +
                 std::to_string(length) + ", PacketType=" + std::to_string(type));
        throw VXCommunicationErrorException("Wrong packet length");
      }
      if (input_.size() - at - VXPacketFrame::kHeaderSize < length) break;
      const AFCBuffer payload(bytes + VXPacketFrame::kHeaderSize, length);
      at += VXPacketFrame::kHeaderSize + length;
      servePacket(type, payload);
      countForCloseFault();
    }
  } catch (const VXCommunicationErrorException&) {
    closed_ = true;
    input_.clear();
    throw;
  }
  input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(at));
}

void VXSimConnection::servePacket(uint32_t type, const AFCBuffer& payload) {
  const bool handshake = type == VXPacketFrame::kVersionRequest ||
                         type == VXPacketFrame::kLoginChallengeRequest ||
                         type == VXPacketFrame::kLoginResponse;
  if (!loggedIn_ && !handshake) {
    hub_.log("client " + std::to_string(id_) + ": packet " + std::to_string(type) +
             " before login, ignored");
    return;
  }
  try {
    serveRequest(type, payload);
  } catch (const AFCException& e) {
    hub_.log("client " + std::to_string(id_) + ": packet " + std::to_string(type) + " dropped, " +
             e.what());
  }
}

void VXSimConnection::serveRequest(uint32_t type, const AFCBuffer& payload) {
  switch (type) {
    case VXPacketFrame::kAction:
      return serveAction(payload);
    case VXPacketFrame::kSetZoneState:
      return serveSetZoneState(payload);
    case VXPacketFrame::kGetZoneState:
      return serveGetZoneState(payload);
    case VXPacketFrame::kVersionRequest:
      return serveVersion();
    case VXPacketFrame::kZoneRegister:
    case VXPacketFrame::kZoneUnregister:
      return serveZoneRegistration(type, payload);
    case VXPacketFrame::kROARequest:
      return serveRemoteObjectRequest(payload);
    case VXPacketFrame::kErrLogSubscribe:
    case VXPacketFrame::kErrLogUnsubscribe:
      errLogSubscriber_ = type == VXPacketFrame::kErrLogSubscribe;
      return;
    case VXPacketFrame::kLoginChallengeRequest:
      return serveChallenge();
    case VXPacketFrame::kLoginResponse:
      return serveLoginResponse(payload);
    default:
      hub_.log("client " + std::to_string(id_) + ": unexpected packet type " +
               std::to_string(type) + ", ignored");
  }
}

void VXSimConnection::serveVersion() {
  const VXSimVersion& version = hub_.getOptions().version;
  std::vector<uint8_t> words;
  for (uint32_t word :
       {version.word0, version.word1, version.word2, version.major, version.minor}) {
    words.resize(words.size() + 4);
    VXPacketFrame::putWord(words.data() + words.size() - 4, word);
  }
  sendReply(VXPacketFrame::kVersionReply, bufferOf(words));
}

void VXSimConnection::serveChallenge() {
  challenge_.clear();
  if (!hub_.getOptions().password.empty()) challenge_ = hub_.makeChallenge();
  sendReply(VXPacketFrame::kLoginChallenge, bufferOf(challenge_));
}

void VXSimConnection::serveLoginResponse(const AFCBuffer& payload) {
  const std::vector<uint8_t> response(payload.data(), payload.data() + payload.size());
  const bool accepted =
      !challenge_.empty() && response == vxLoginResponse(hub_.getOptions().password, challenge_);
  challenge_.clear();  // one answer per challenge
  loggedIn_ = loggedIn_ || accepted;
  hub_.log("client " + std::to_string(id_) + (accepted ? ": logged in" : ": login refused"));
  sendReply(VXPacketFrame::kLoginAnswer, bufferOf({static_cast<uint8_t>(accepted ? 1 : 0)}));
}

void VXSimConnection::serveAction(const AFCBuffer& payload) {
  AFCPersistentInputStreamBuffer in(payload.data(), payload.size(), hub_.getCombinedVersion());
  const std::unique_ptr<VXAction> action = in.readOwnedObject<VXAction>();
  if (action) hub_.runAction(*this, *action);
}

void VXSimConnection::serveSetZoneState(const AFCBuffer& payload) {
  AFCPersistentInputStreamBuffer in(payload.data(), payload.size(), hub_.getCombinedVersion());
  VXZonesState zones;
  zones.read(in);
  hub_.setZones(zones);
}

void VXSimConnection::serveGetZoneState(const AFCBuffer& payload) {
  VXZonesState asked;
  try {
    AFCPersistentInputStreamBuffer in(payload.data(), payload.size(), hub_.getCombinedVersion());
    asked.read(in);
  } catch (const AFCException& e) {
    // The client waits for the reply whatever it sent: it gets an empty state.
    hub_.log("client " + std::to_string(id_) + ": bad zone-state request, " + e.what());
    asked = VXZonesState();
  }
  const VXZonesState& current = hub_.getScene().getZones();
  VXZonesState reply;
  for (const auto& [zone, state] : asked.getZones()) {
    reply.set(zone, current.contains(zone) && current.get(zone));
  }
  AFCPersistentOutputStreamBuffer out(hub_.getCombinedVersion());
  reply.write(out);
  sendReply(VXPacketFrame::kZoneState, out.getBuffer());
}

void VXSimConnection::serveZoneRegistration(uint32_t type, const AFCBuffer& payload) {
  AFCPersistentInputStreamBuffer in(payload.data(), payload.size(), hub_.getCombinedVersion());
  std::string zone = in.readString();
  if (type == VXPacketFrame::kZoneRegister) {
    zones_.insert(std::move(zone));
  } else {
    zones_.erase(zone);
  }
}

void VXSimConnection::serveRemoteObjectRequest(const AFCBuffer& payload) {
  std::unique_ptr<VXROARequest> request;
  VXROAReply reply;
  try {
    AFCPersistentInputStreamBuffer in(payload.data(), payload.size(), hub_.getCombinedVersion());
    request = in.readOwnedObject<VXROARequest>();
    if (!request) throw VXROABadRequest();
    reply = hub_.answer(*this, *request);
  } catch (const AFCException& e) {
    // Unreadable: the client still waits for an answer, unless it asked for none, which cannot
    // be known here; an answer it does not wait for is dispatched as an unexpected packet.
    hub_.log("client " + std::to_string(id_) + ": bad remote-object request, " + e.what());
    reply = vxSimExceptionReply(e.what());
  }
  if (!request || !vxROAIsAsync(request->getKind())) {
    AFCPersistentOutputStreamBuffer out(hub_.getCombinedVersion());
    out.writeObject(&reply);
    sendReply(VXPacketFrame::kROAReply, out.getBuffer());
  }
  flushAfterReply();
}
