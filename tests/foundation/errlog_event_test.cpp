#include "foundation/errlog_event.h"

#include <gtest/gtest.h>

#include "foundation/attribute.h"
#include "tests/foundation/stream_bytes.h"

namespace {

const AFCTimestamp kTime(AFCDate(7, 3, 2014), AFCTime(9, 5, 3));

AFCErrLogEvent sampleEvent() {
  return AFCErrLogEvent(AFC_ERRLOG_ERROR, "libAFC", kTime, "socket.cpp", 12, "connect failed");
}

Bytes bytesOf(AFCPersistentOutputStreamBuffer& out) {
  const AFCBuffer& buffer = out.getBuffer();
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

}  // namespace

TEST(ErrLogEvent, UnknownAreaAndFileReadAsUnknown) {
  const AFCErrLogEvent event(AFC_ERRLOG_INFO, "", kTime, "", 0, "started");
  EXPECT_EQ(event.getArea(), "-unknown-");
  EXPECT_EQ(event.getSourceFileName(), "-unknown-");
  EXPECT_FALSE(event.hasArea());
  EXPECT_FALSE(event.hasSourceFile());
}

TEST(ErrLogEvent, NamesItsLevelAndTime) {
  const AFCErrLogEvent event = sampleEvent();
  EXPECT_EQ(event.getTypeString(), "ERROR");
  EXPECT_EQ(event.getTimeString(), "07.03.2014 09:05:03");
  EXPECT_EQ(AFCErrLogEvent().getTypeString(), "NONE");
  EXPECT_EQ(afcErrLogLevelName(AFC_ERRLOG_DEBUG), "DEBUG");
  EXPECT_EQ(afcErrLogLevelName(AFC_ERRLOG_INFO), "INFO");
  EXPECT_EQ(afcErrLogLevelName(AFC_ERRLOG_WARNING), "WARNING");
  EXPECT_EQ(afcErrLogLevelName(9), "9");
}

TEST(ErrLogEvent, SameReportIgnoresTheTime) {
  const AFCErrLogEvent event = sampleEvent();
  AFCErrLogEvent later(AFC_ERRLOG_ERROR, "libAFC", AFCTimestamp::now(), "socket.cpp", 12,
                       "connect failed");
  EXPECT_TRUE(event.isSameReport(later));
  later.setMessage("connect failed, 10061");
  EXPECT_FALSE(event.isSameReport(later));
  EXPECT_FALSE(event.isSameReport(
      AFCErrLogEvent(AFC_ERRLOG_ERROR, "libAFC", kTime, "socket.cpp", 13, "connect failed")));
  EXPECT_FALSE(event.isSameReport(
      AFCErrLogEvent(AFC_ERRLOG_WARNING, "libAFC", kTime, "socket.cpp", 12, "connect failed")));
}

TEST(ErrLogEvent, PersistsBasePartThenFieldsInWireOrder) {
  AFCPersistentOutputStreamBuffer out;
  sampleEvent().write(out);
  EXPECT_EQ(bytesOf(out), kBasePart + uint32Bytes(0x06, 4) + stringBytes("libAFC") +
                              stringBytes("07.03.2014 09:05:03") + stringBytes("socket.cpp") +
                              uint32Bytes(0x05, 12) + stringBytes("connect failed"));
}

TEST(ErrLogEvent, ReadsBackAsObjectByItsClassName) {
  AFCErrLogEvent::staticClass();
  AFCPersistentOutputStreamBuffer out;
  const AFCErrLogEvent event = sampleEvent();
  out.writeObject(&event);
  const Bytes bytes = bytesOf(out);

  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  const auto read = in.readOwnedObject<AFCErrLogEvent>();
  ASSERT_NE(read, nullptr);
  EXPECT_TRUE(read->isSameReport(event));
  EXPECT_EQ(read->getTime(), kTime);
  EXPECT_TRUE(in.atEnd());
}

TEST(ErrLogEvent, UnreadableTimeLeavesTheEventUnchanged) {
  AFCPersistentOutputStreamBuffer out;
  out.writeHeader(AFC_PC_PERSISTENT);
  out.writeUInt32(AFC_ERRLOG_WARNING);
  out.writeString("server");
  out.writeString("yesterday");
  out.writeString("");
  out.writeInt32(0);
  out.writeString("late");
  AFCErrLogEvent event = sampleEvent();
  AFCPersistentInputStreamBuffer in(AFCRef<AFCBuffer>(&out.getBuffer()));
  EXPECT_THROW(event.read(in), AFCInvalidTimestampException);
  EXPECT_TRUE(event.isSameReport(sampleEvent()));
}

TEST(ErrLogEventReflection, AnswersItsReadOperationsByName) {
  registerFoundationClasses();
  const AFCClass* record = AFCClass::forName("AFCErrLogEvent");
  ASSERT_NE(record, nullptr);
  AFCErrLogEvent event(AFC_ERRLOG_WARNING, "libAFC",
                       AFCTimestamp(AFCDate(7, 3, 2014), AFCTime(9, 5, 1)), "x.cpp", 12,
                       "disk full");
  auto call = [&](const char* name) { return record->invoke(&event, name, {})->toString(); };
  EXPECT_EQ(call("getTypeString"), "WARNING");
  EXPECT_EQ(call("getArea"), "libAFC");
  EXPECT_EQ(call("getTimeString"), event.getTimeString());
  EXPECT_EQ(call("getSourceFileName"), "x.cpp");
  EXPECT_EQ(call("getSourceLineNumber"), "12");
  EXPECT_EQ(call("getMessage"), "disk full");
}
