#include "client/client_stream.h"

#include <gtest/gtest.h>

#include "tests/client/scripted_session.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {

AFCBuffer bufferOf(const Bytes& bytes) { return AFCBuffer(bytes.data(), bytes.size()); }
Bytes bytesOf(const AFCBuffer& buffer) {
  return Bytes(buffer.data(), buffer.data() + buffer.size());
}

}  // namespace

TEST(ClientStream, FramesAPacketWithTheHeaderInNetworkOrder) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.sendPacket(0x01020304, bufferOf({0xAA, 0xBB}));
  EXPECT_EQ(session.written(),
            (Bytes{0x56, 0x58, 0x50, 0x01, 0x01, 0x02, 0x03, 0x04, 0, 0, 0, 2, 0xAA, 0xBB}));
}

TEST(ClientStream, SendsAndReadsAnEmptyPayloadAsTwelveBytes) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.sendPacket(11, AFCBuffer());
  EXPECT_EQ(session.written(), packetBytes(11));
  EXPECT_EQ(session.written().size(), 12u);

  session.serverSends(packetBytes(12));
  uint32_t type = 0;
  AFCBuffer payload(bufferOf({1, 2, 3}));
  session.readPacket(type, payload);
  EXPECT_EQ(type, 12u);
  EXPECT_TRUE(payload.empty());
}

TEST(ClientStream, DropsAPacketSentWhileClosedWithADebugLine) {
  ScriptedSession session;
  session.captureDebug();
  session.sendPacket(0, bufferOf({1}));
  EXPECT_TRUE(session.written().empty());
  EXPECT_EQ(session.debugText(), "sendPacket: not connected!\n");
}

TEST(ClientStream, RefusesToReadOrRequestWhileClosed) {
  ScriptedSession session;
  uint32_t type = 0;
  AFCBuffer payload;
  EXPECT_EQ(failureOf<VXCommunicationErrorException>([&] { session.readPacket(type, payload); }),
            "Communication error, Client is not connected");
  EXPECT_EQ(failureOf<VXCommunicationErrorException>(
                [&] { session.request(5, AFCBuffer(), 6, payload); }),
            "Communication error, Not connected");
}

TEST(ClientStream, WaitReplyOnAClosedSessionLeavesTheReplyAlone) {
  ScriptedSession session;
  session.captureDebug();
  AFCBuffer reply(bufferOf({9}));
  session.waitReply(6, reply);
  EXPECT_EQ(bytesOf(reply), Bytes{9});
  EXPECT_EQ(session.debugText(), "readPacket: not connected!\n");
}

TEST(ClientStream, RefusesABadMagicAndSaysSoOnTheDebugStream) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.captureDebug();
  Bytes packet = packetBytes(4);
  packet[3] = 0x02;
  session.serverSends(packet);
  uint32_t type = 0;
  AFCBuffer payload;
  EXPECT_THROW(session.readPacket(type, payload), VXCommunicationErrorException);
  EXPECT_EQ(session.debugText(),
            "readPacket failed: Communication error, Bad magic in packet header\n");
}

TEST(ClientStream, RefusesALengthAboveTheLimitBeforeReadingThePayload) {
  CapturedErrLog log;
  ScriptedSession session;
  session.openWithoutHandshake();
  session.serverSends(wordBytes(0x56585001) + wordBytes(16) + wordBytes(10000001) + Bytes{1, 2});
  uint32_t type = 0;
  AFCBuffer payload;
  EXPECT_EQ(failureOf<VXCommunicationErrorException>([&] { session.readPacket(type, payload); }),
            "Communication error, Wrong packet length");
  EXPECT_EQ(type, 16u);
  EXPECT_EQ(session.bytesRead(), 12u);
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"Declared packet length 10000001, PacketType=16"});
}

TEST(ClientStream, AcceptsALengthOfExactlyTheLimit) {
  ScriptedSession session;
  session.openWithoutHandshake();
  Bytes payload(10000000, 0x5A);
  session.serverSends(packetBytes(16, payload));
  uint32_t type = 0;
  AFCBuffer read;
  session.readPacket(type, read);
  EXPECT_EQ(read.size(), 10000000u);
  EXPECT_EQ(read.data()[9999999], 0x5A);
}

TEST(ClientStream, LeavesNothingHalfReadWhenThePayloadIsCutShort) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.serverSends(wordBytes(0x56585001) + wordBytes(16) + wordBytes(10) + Bytes{1, 2, 3});
  uint32_t type = 0;
  AFCBuffer payload;
  EXPECT_THROW(session.readPacket(type, payload), AFCException);
  EXPECT_TRUE(payload.empty());
}

TEST(ClientStream, DispatchesPacketsMetBeforeTheReplyInArrivalOrder) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.openWithoutHandshake();
  session.addServerMessageListener(&listener);
  session.addCommandCallbackListener(&listener);
  session.serverSends(packetBytes(16, stringBytes("first")) + packetBytes(14, int32Bytes(3)) +
                      packetBytes(16, stringBytes("third")) + packetBytes(18, {0xC0}) +
                      packetBytes(16, stringBytes("after")));

  AFCBuffer reply;
  session.request(17, AFCBuffer(), 18, reply);
  EXPECT_EQ(bytesOf(reply), Bytes{0xC0});
  EXPECT_EQ(calls,
            (std::vector<std::string>{"l: message first", "l: callback 3", "l: message third"}));
  EXPECT_EQ(session.writtenTypes(), std::vector<uint32_t>{17});

  session.processIncoming();
  EXPECT_EQ(calls.back(), "l: message after");
}

TEST(ClientStream, KeepsWaitingForAReplyUntilTheConnectionFails) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.serverSends(packetBytes(99) + packetBytes(98));
  CapturedErrLog log;
  AFCBuffer reply;
  EXPECT_THROW(session.request(5, AFCBuffer(), 6, reply), AFCException);
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"Unexpected async packet received 99",
                                                      "Unexpected async packet received 98"}));
}

TEST(ClientStream, WriteErrorsPropagateUnlessSilentThenTheyCloseTheSession) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.failNextWrite("broken pipe");
  EXPECT_THROW(session.sendPacket(0, AFCBuffer()), AFCException);
  EXPECT_TRUE(session.isOpen());

  CapturedErrLog log;
  session.setSilentErrors(true);
  session.failNextWrite("broken pipe");
  session.sendPacket(0, AFCBuffer());
  EXPECT_FALSE(session.isOpen());
  EXPECT_EQ(log.messages(), std::vector<std::string>{"VX2Client: IO error, broken pipe"});

  // An end() whose send closes the session: every open action goes with it.
  session.openWithoutHandshake();
  session.beginImmediate(false);
  session.beginImmediate(false);
  session.deleteNode("a");
  session.failNextWrite("broken pipe");
  session.end();
  EXPECT_FALSE(session.isOpen());
  EXPECT_EQ(session.depth(), 0);
}

TEST(ClientStream, APeerCloseRunsTheDisconnectListenersOnce) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session(3);
  session.openWithoutHandshake();
  session.captureDebug();
  session.addDisconnectListener(&listener);
  session.onServerDisconnected();
  EXPECT_FALSE(session.isOpen());
  EXPECT_EQ(calls, std::vector<std::string>{"l: disconnect 3"});
  EXPECT_EQ(session.debugText(),
            "addDisconnectListener\nserver disconnected\nclose\ncalling Disconnect listener\n");
}
