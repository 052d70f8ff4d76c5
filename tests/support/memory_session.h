#pragma once
// A session whose transport is two in-memory byte queues: the bytes the "server" sends are queued
// beforehand (running out of them is the peer closing the connection), and every byte the client
// writes is kept. No sockets: the framing and protocol code is fed bytes. Serves the tests and the
// fuzz harnesses; one thread at a time.
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "client/client_stream.h"

class VXMemorySession : public VXClientStream {
 public:
  explicit VXMemorySession(int32_t clientIndex = 0) : VXClientStream(clientIndex) {}

  // Bytes the server sends next.
  void serverSends(const uint8_t* bytes, std::size_t count) {
    incoming_.insert(incoming_.end(), bytes, bytes + count);
  }
  void serverSends(const std::vector<uint8_t>& bytes) { serverSends(bytes.data(), bytes.size()); }
  const std::vector<uint8_t>& written() const { return written_; }
  void clearWritten() { written_.clear(); }
  // Bytes the client has taken from the server's side, and those still waiting.
  std::size_t bytesRead() const { return bytesRead_; }
  std::size_t bytesPending() const { return incoming_.size(); }
  // Makes the next write fail with this text.
  void failNextWrite(std::string text) { writeFailure_ = std::move(text); }
  // Opens the transport without a handshake, for what comes after it.
  void openWithoutHandshake() { open_ = true; }

  void setServerAddress(const std::string& address) override { address_ = address; }
  std::string getServerAddress() const override { return address_; }
  bool isOpen() const override { return open_; }

 protected:
  void connectTransport() override { open_ = true; }
  void disconnectTransport() override { open_ = false; }
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
  std::vector<uint8_t> written_;
  std::string writeFailure_;
};
