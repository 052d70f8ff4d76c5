#pragma once
// A begin/end builder that keeps what it sends instead of putting it on a wire, for the tests of
// every layer that drives a builder: each sent action as its class, channel, the text form of
// each record and the exact bytes a packet would carry; trace lines as text.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "commands/begin_end_builder.h"
#include "foundation/persistent_stream.h"

class VXRecordingBuilder : public VXCommandListBeginEndBuilder {
 public:
  struct Sent {
    std::string className;
    uint32_t channel = 0;
    std::vector<std::string> commands;  // toString() of each record, in order
    std::vector<uint8_t> bytes;         // the action as one new object, as a packet holds it
  };

  explicit VXRecordingBuilder(bool tracing = true) : tracing_(tracing) {}

  const std::vector<Sent>& sent() const { return sent_; }
  // The trace lines written so far, each ending with a line break.
  std::string traceText() const { return trace_.str(); }
  // Makes the next sendAction throw this text (once).
  void failNextSend(std::string text) { failure_ = std::move(text); }

 protected:
  void sendAction(const VXAction& action) override {
    std::lock_guard lock(lock_);
    if (!failure_.empty()) throw AFCException(std::exchange(failure_, {}));
    Sent sent;
    sent.className = action.getClass()->getName();
    sent.channel = action.getChannel();
    for (const auto& record : action.getCommands()) sent.commands.push_back(record->toString());
    AFCPersistentOutputStreamBuffer out;
    out.writeObject(&action);
    const AFCBuffer& buffer = out.getBuffer();
    sent.bytes.assign(buffer.data(), buffer.data() + buffer.size());
    sent_.push_back(std::move(sent));
  }
  bool traceEnabled() const override { return tracing_; }
  std::ostream& traceStream() override { return trace_; }

 private:
  std::mutex lock_;
  bool tracing_;
  std::vector<Sent> sent_;
  std::ostringstream trace_;
  std::string failure_;
};
