#pragma once
// A session whose transport is two in-memory byte queues: the bytes the "server" sends are
// queued by the test (scripted before the client asks), and every byte the client writes is
// kept. No sockets: the framing and protocol code is fed bytes. Packets are put together here
// from the wire layout (magic, type, length, big-endian), never by the code under test.
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
#include "client/register.h"
#include "tests/commands/command_test_support.h"

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

class ScriptedSession : public VXClientStream {
 public:
  explicit ScriptedSession(int32_t clientIndex = 0) : VXClientStream(clientIndex) {}

  // Bytes the server sends next.
  void serverSends(const Bytes& bytes) {
    incoming_.insert(incoming_.end(), bytes.begin(), bytes.end());
  }
  const Bytes& written() const { return written_; }
  // The packets written so far, decoded from the written bytes.
  std::vector<WrittenPacket> writtenPackets() const;
  std::vector<uint32_t> writtenTypes() const;
  void clearWritten() { written_.clear(); }
  // Bytes the client has taken from the server's side.
  std::size_t bytesRead() const { return bytesRead_; }
  std::size_t bytesPending() const { return incoming_.size(); }
  // Makes the next write fail with this text.
  void failNextWrite(std::string text) { writeFailure_ = std::move(text); }
  // Opens the transport without a handshake, for tests of what comes after it.
  void openWithoutHandshake() { open_ = true; }

  // Debug output captured as text.
  void captureDebug() { setDebug(true, &debug_); }
  std::string debugText() const { return debug_.str(); }

  void setServerAddress(const std::string& address) override { address_ = address; }
  std::string getServerAddress() const override { return address_; }
  bool isOpen() const override { return open_; }

  using VXClientStream::readExact;

 protected:
  void connectTransport() override { open_ = true; }
  void disconnectTransport() override { open_ = false; }
  // Running out of scripted bytes is the peer closing the connection.
  void readExact(uint8_t* dest, std::size_t count) override {
    if (incoming_.size() < count) throw AFCException("Connection closed by peer");
    for (std::size_t i = 0; i < count; ++i) {
      dest[i] = incoming_.front();
      incoming_.pop_front();
    }
    bytesRead_ += count;
  }
  void writeAll(const uint8_t* bytes, std::size_t count) override {
    if (!writeFailure_.empty()) throw AFCException(std::exchange(writeFailure_, {}));
    written_.insert(written_.end(), bytes, bytes + count);
  }

 private:
  bool open_ = false;
  std::string address_;
  std::deque<uint8_t> incoming_;
  std::size_t bytesRead_ = 0;
  Bytes written_;
  std::string writeFailure_;
  std::ostringstream debug_;
};

inline std::vector<WrittenPacket> ScriptedSession::writtenPackets() const {
  std::vector<WrittenPacket> packets;
  std::size_t at = 0;
  auto word = [this](std::size_t offset) {
    return (uint32_t{written_[offset]} << 24) | (uint32_t{written_[offset + 1]} << 16) |
           (uint32_t{written_[offset + 2]} << 8) | uint32_t{written_[offset + 3]};
  };
  while (at + 12 <= written_.size()) {
    EXPECT_EQ(word(at), 0x56585001u);
    const uint32_t length = word(at + 8);
    EXPECT_LE(at + 12 + length, written_.size());
    packets.push_back(
        {word(at + 4), Bytes(written_.begin() + static_cast<std::ptrdiff_t>(at + 12),
                             written_.begin() + static_cast<std::ptrdiff_t>(at + 12 + length))});
    at += 12 + length;
  }
  EXPECT_EQ(at, written_.size());
  return packets;
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
