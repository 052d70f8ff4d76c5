#include "foundation/errlog_backend.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

namespace {
AFCErrLogEvent eventNow(std::string message) {
  return AFCErrLogEvent(AFC_ERRLOG_WARNING, "vx", AFCTimestamp::now(), "", 0, std::move(message));
}

// Sends std::cerr into a string while it lives.
class CapturedCerr {
 public:
  CapturedCerr() : saved_(std::cerr.rdbuf(text_.rdbuf())) {}
  ~CapturedCerr() { std::cerr.rdbuf(saved_); }
  std::string text() const { return text_.str(); }

 private:
  std::ostringstream text_;
  std::streambuf* saved_;
};
}  // namespace

TEST(ErrLogBackendStream, WritesTodaysEventsWithTimeOnly) {
  std::ostringstream out;
  AFCErrLogBackendStream backend(out);
  const AFCErrLogEvent event = eventNow("low memory");
  backend.write(event);
  EXPECT_EQ(out.str(), "WARN:  vx " + event.getTime().format("(%H:%M:%S)") + "\n low memory\n");
}

TEST(ErrLogBackendStream, KeepsTheLayoutItWasGiven) {
  std::ostringstream out;
  AFCErrLogBackendStream backend(out, AFCErrLogLayout::withPartsOff("at"));
  backend.write(eventNow("one"));
  backend.write(eventNow("two"));
  EXPECT_EQ(out.str(), "WARN:  \n one\nWARN:  \n two\n");
}

TEST(ErrLogBackendCerr, WritesToStandardError) {
  CapturedCerr captured;
  AFCErrLogBackendCerr backend;
  backend.write(eventNow("to stderr"));
  EXPECT_NE(captured.text().find("\n to stderr\n"), std::string::npos) << captured.text();
}

TEST(ErrLogBackendMemory, KeepsEventsInOrderUntilCleared) {
  AFCErrLogBackendMemory memory;
  memory.write(eventNow("first"));
  memory.write(eventNow("second"));
  EXPECT_EQ(memory.messages(), (std::vector<std::string>{"first", "second"}));
  ASSERT_EQ(memory.events().size(), 2u);
  EXPECT_EQ(memory.events()[1].getArea(), "vx");
  memory.clear();
  EXPECT_TRUE(memory.events().empty());
}
