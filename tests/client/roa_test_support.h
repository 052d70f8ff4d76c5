#pragma once
// Helpers shared by the remote-object tests: expected bytes of the records put together from
// the wire layout (never from the writer under test), and a session that scripts the server's
// replies.
#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "client/roa_manager.h"
#include "client/roa_records.h"
#include "foundation/attribute_string.h"
#include "tests/commands/command_test_support.h"

class RoaClasses : public ::testing::Environment {
 public:
  void SetUp() override { registerClientRoaClasses(); }
};
inline ::testing::Environment* const kRoaClasses =
    ::testing::AddGlobalTestEnvironment(new RoaClasses);

inline std::unique_ptr<AFCAttribute> text(const std::string& value) {
  return std::make_unique<AFCAttributeString>(value);
}

// An AFCAttributeString as a new object: base part, defined flag, the text.
inline Bytes textBytes(const std::string& value) {
  return newObjectHeader("AFCAttributeString") + kBasePart + boolBytes(true) + stringBytes(value);
}

inline Bytes countBytes(uint32_t count) { return uint32Bytes(0x06, count); }

// A request or reply record as the payload of its packet: one reference to a new object.
inline Bytes requestBytes(const std::string& target, int32_t kind,
                          const std::vector<Bytes>& arguments) {
  Bytes bytes = newObjectHeader("VXROARequest") + kBasePart + stringBytes(target) +
                int32Bytes(kind) + countBytes(static_cast<uint32_t>(arguments.size()));
  for (const Bytes& argument : arguments) bytes = bytes + argument;
  return bytes;
}
inline Bytes replyBytes(int32_t kind, const std::vector<Bytes>& values) {
  Bytes bytes = newObjectHeader("VXROAReply") + kBasePart + int32Bytes(kind) +
                countBytes(static_cast<uint32_t>(values.size()));
  for (const Bytes& value : values) bytes = bytes + value;
  return bytes;
}

inline Bytes bytesOf(const AFCBuffer& buffer) {
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

// Answers each request with the next scripted reply payload (an empty one when none is left,
// as a session closed while waiting does) and keeps every payload it was handed.
class ScriptedRoaSession : public VXROAManager {
 public:
  std::deque<Bytes> replies;
  std::vector<Bytes> requests;  // payloads of roaRequest
  std::vector<Bytes> sends;     // payloads of roaSend
  bool debug = true;
  std::ostringstream debugLines;

 protected:
  void roaSend(const AFCBuffer& requestPayload) override {
    sends.push_back(bytesOf(requestPayload));
  }
  void roaRequest(const AFCBuffer& requestPayload, AFCBuffer& replyPayload) override {
    requests.push_back(bytesOf(requestPayload));
    if (replies.empty()) return;
    replyPayload.append(replies.front().data(), replies.front().size());
    replies.pop_front();
  }
  bool traceEnabled() const override { return debug; }
  std::ostream& traceStream() override { return debugLines; }
};
