#pragma once
// The in-memory session (tests/support/memory_session.h) with the tests' helpers. Packets are
// put together here from the wire layout (magic, type, length, big-endian), never by the code
// under test.
#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "client/client_exceptions.h"
#include "client/client_stream.h"
#include "client/packet_frame.h"
#include "client/register.h"
#include "tests/commands/command_test_support.h"
#include "tests/support/memory_session.h"
#include "tests/support/session_test_access.h"

class ClientClasses : public ::testing::Environment {
 public:
  void SetUp() override { registerClientClasses(); }
};
inline ::testing::Environment* const kClientClasses =
    ::testing::AddGlobalTestEnvironment(new ClientClasses);

inline Bytes wordBytes(uint32_t v) {
  return {static_cast<uint8_t>(v >> 24), static_cast<uint8_t>(v >> 16),
          static_cast<uint8_t>(v >> 8), static_cast<uint8_t>(v)};
}

// A whole packet: header and payload.
inline Bytes packetBytes(uint32_t type, const Bytes& payload = {}) {
  return wordBytes(0x56585001) + wordBytes(type) +
         wordBytes(static_cast<uint32_t>(payload.size())) + payload;
}

// The version reply: one word not interpreted, then word1, word2 (the build), major, minor.
inline Bytes versionReply(uint32_t major, uint32_t minor, uint32_t build = 0) {
  return packetBytes(6, wordBytes(0xDEADBEEF) + wordBytes(7) + wordBytes(build) + wordBytes(major) +
                            wordBytes(minor));
}

struct WrittenPacket {
  uint32_t type;
  Bytes payload;
};

// The in-memory session with the tests' views of what it wrote and of its debug output.
class ScriptedSession : public VXMemorySession {
 public:
  using VXMemorySession::VXMemorySession;

  void serverSends(const Bytes& bytes) { VXMemorySession::serverSends(bytes.data(), bytes.size()); }
  // The packets written so far, decoded from the written bytes.
  std::vector<WrittenPacket> writtenPackets() const;
  std::vector<uint32_t> writtenTypes() const;

  // Debug output captured as text.
  void captureDebug() { setDebug(true, &debug_); }
  std::string debugText() const { return debug_.str(); }

 private:
  std::ostringstream debug_;
};

// The packets of a byte stream, each checked for the magic, the whole stream for its end.
inline std::vector<WrittenPacket> packetsOf(const Bytes& bytes) {
  std::vector<WrittenPacket> packets;
  std::size_t at = 0;
  while (at + VXPacketFrame::kHeaderSize <= bytes.size()) {
    const VXPacketFrame::Header header = VXPacketFrame::decodeHeader(bytes.data() + at);
    EXPECT_EQ(header.magic, 0x56585001u);
    const std::size_t begin = at + VXPacketFrame::kHeaderSize;
    EXPECT_LE(begin + header.length, bytes.size());
    if (begin + header.length > bytes.size()) break;
    packets.push_back(
        {header.type, Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                            bytes.begin() + static_cast<std::ptrdiff_t>(begin + header.length))});
    at = begin + header.length;
  }
  EXPECT_EQ(at, bytes.size());
  return packets;
}

inline std::vector<WrittenPacket> ScriptedSession::writtenPackets() const {
  return packetsOf(written());
}

inline std::vector<uint32_t> ScriptedSession::writtenTypes() const {
  std::vector<uint32_t> types;
  for (const WrittenPacket& packet : writtenPackets()) types.push_back(packet.type);
  return types;
}

// Listeners that record their calls; fail() makes every later call throw an AFCException, or
// with foreign set a std::runtime_error.
struct RecordingListener : VXConnectListener,
                           VXDisconnectListener,
                           VXErrLogListener,
                           VXPickResultListener,
                           VXServerMessageListener,
                           VXCallbackCommandListener,
                           VXZoneStateListener {
  explicit RecordingListener(std::vector<std::string>* log, std::string name = "l")
      : log_(log), name_(std::move(name)) {}
  void fail(std::string text, bool foreign = false) {
    failure_ = std::move(text);
    foreign_ = foreign;
  }

  void onServerConnect(int32_t index) override { note("connect " + std::to_string(index)); }
  void onServerDisconnect(int32_t index) override { note("disconnect " + std::to_string(index)); }
  void onNewErrLog(const AFCErrLogEvent& entry) override { note("errlog " + entry.getMessage()); }
  void onPickResult(const std::string& result) override { note("pick " + result); }
  void onMessage(const std::string& message) override { note("message " + message); }
  void onCommandCallback(int32_t id) override { note("callback " + std::to_string(id)); }
  void onZoneStateChange(const VXZonesState& zones) override {
    note("zones " + VXZonesStateObject(zones).toString());
  }
  // Hook run inside each call, before the failure.
  std::function<void()> during;

 private:
  void note(const std::string& what) {
    log_->push_back(name_ + ": " + what);
    if (during) during();
    if (failure_.empty()) return;
    if (foreign_) throw std::runtime_error(failure_);
    throw AFCException(failure_);
  }
  std::vector<std::string>* log_;
  std::string name_;
  std::string failure_;
  bool foreign_ = false;
};
