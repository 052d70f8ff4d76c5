#pragma once
// The packet frame shared by the session, the simulator, the fuzzers and the tests: a 12-byte
// header of three big-endian words (magic 0x56585001, packet type, payload length) before the
// payload, the packet types, and the limit a reader puts on the declared length. Pure byte
// work: no I/O, nothing thrown.
#include <cstddef>
#include <cstdint>

struct VXPacketFrame {
  static constexpr uint32_t kMagic = 0x56585001;
  static constexpr std::size_t kHeaderSize = 12;
  // A reader refuses a declared payload length above this; a writer puts no limit.
  static constexpr uint32_t kMaxPayload = 10000000;

  enum Type : uint32_t {
    kAction = 0,
    kSetZoneState = 2,
    kGetZoneState = 3,
    kZoneState = 4,
    kVersionRequest = 5,
    kVersionReply = 6,
    kZoneRegister = 7,
    kZoneUnregister = 8,
    kROARequest = 9,
    kROAReply = 10,
    kErrLogSubscribe = 11,
    kErrLogUnsubscribe = 12,
    kErrLogEntry = 13,
    kCommandCallback = 14,
    kPickResult = 15,
    kServerMessage = 16,
    kLoginChallengeRequest = 17,
    kLoginChallenge = 18,
    kLoginResponse = 19,
    kLoginAnswer = 20,
  };

  struct Header {
    uint32_t magic = kMagic;
    uint32_t type = 0;
    uint32_t length = 0;
  };

  static void putWord(uint8_t* out, uint32_t value) {
    out[0] = static_cast<uint8_t>(value >> 24);
    out[1] = static_cast<uint8_t>(value >> 16);
    out[2] = static_cast<uint8_t>(value >> 8);
    out[3] = static_cast<uint8_t>(value);
  }
  static uint32_t getWord(const uint8_t* in) {
    return (uint32_t{in[0]} << 24) | (uint32_t{in[1]} << 16) | (uint32_t{in[2]} << 8) |
           uint32_t{in[3]};
  }
  // Writes kHeaderSize bytes.
  static void encodeHeader(uint8_t* out, const Header& header) {
    putWord(out, header.magic);
    putWord(out + 4, header.type);
    putWord(out + 8, header.length);
  }
  // Reads kHeaderSize bytes.
  static Header decodeHeader(const uint8_t* in) {
    return {getWord(in), getWord(in + 4), getWord(in + 8)};
  }
};
