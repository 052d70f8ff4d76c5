// Asynchronous packets, listener registration and subscriptions across reconnects.
#include <gtest/gtest.h>

#include "client/client_packet.h"
#include "tests/client/scripted_session.h"
#include "tests/foundation/errlog_capture.h"

namespace {

AFCBuffer bufferOf(const Bytes& bytes) { return AFCBuffer(bytes.data(), bytes.size()); }

// A connected session that saw a server of the given major.
void connectTo(ScriptedSession& session, uint32_t major) {
  session.serverSends(versionReply(major, 1));
  session.connect();
  session.clearWritten();
}

const Bytes kErrLogEntry = newObjectHeader("AFCErrLogEvent") + kBasePart + uint32Bytes(0x06, 4) +
                           stringBytes("render") + stringBytes("24.12.2023 18:30:00") +
                           stringBytes("scene.cpp") + int32Bytes(42) + stringBytes("boom");

}  // namespace

TEST(ClientPacketEvents, DecodesEachAsynchronousPacketForItsListeners) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.addErrLogListener(&listener);
  session.addCommandCallbackListener(&listener);
  session.addPickResultListener(&listener);
  session.addServerMessageListener(&listener);
  session.addZoneNotifyListener("Z", &listener);

  session.handleAsyncPacket(4, bufferOf(uint32Bytes(0x06, 1) + stringBytes("Z") + boolBytes(true)));
  session.handleAsyncPacket(13, bufferOf(kErrLogEntry));
  session.handleAsyncPacket(14, bufferOf(int32Bytes(-7)));
  session.handleAsyncPacket(15, bufferOf(stringBytes("node1")));
  session.handleAsyncPacket(16, bufferOf(wstringBytes("hello")));
  EXPECT_EQ(calls, (std::vector<std::string>{"l: zones Z=1", "l: errlog boom", "l: callback -7",
                                             "l: pick node1", "l: message hello"}));
}

TEST(ClientPacketEvents, WritesTheDebugLineBeforeEachCall) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.addZoneNotifyListener("B", &listener);
  session.addZoneNotifyListener("A", &listener);
  session.addCommandCallbackListener(&listener);
  session.addPickResultListener(&listener);
  session.addServerMessageListener(&listener);
  session.addErrLogListener(&listener);
  session.captureDebug();
  session.handleAsyncPacket(4,
                            bufferOf(uint32Bytes(0x06, 1) + stringBytes("B") + boolBytes(false)));
  session.callCommandCallbackListeners(5);
  session.callPickResultListeners("p");
  session.callServerMessageListeners("m");
  session.handleAsyncPacket(13, bufferOf(kErrLogEntry));
  EXPECT_EQ(session.debugText(),
            "calling ZoneNotifyListener, zone=A, state=B=0\n"
            "calling ZoneNotifyListener, zone=B, state=B=0\n"
            "calling CallbackCommand listener 5\ncalling PickResult listener p\nonMessage: m\n"
            "calling ErrLogListener\n");
}

TEST(ClientPacketEvents, LogsAndDropsAnUnknownType) {
  CapturedErrLog log;
  ScriptedSession session;
  session.handleAsyncPacket(21, AFCBuffer());
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Unexpected async packet received 21"});
}

TEST(ClientPacketEvents, RefusesAMalformedPayload) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.addCommandCallbackListener(&listener);
  EXPECT_THROW(session.handleAsyncPacket(14, bufferOf(stringBytes("x"))), AFCException);
  EXPECT_THROW(session.handleAsyncPacket(4, bufferOf(uint32Bytes(0x06, 2000000000))), AFCException);
  EXPECT_THROW(session.handleAsyncPacket(13, bufferOf(newObjectHeader("VXImmediateAction") +
                                                      kBasePart + uint32Bytes(0x06, 0))),
               AFCException);
  EXPECT_TRUE(calls.empty());
}

TEST(ClientPacketEvents, AFailingListenerIsLoggedAndTheNextOneStillRuns) {
  // A message listener's failure that is not one of ours is logged as unknown, the others' with
  // their text.
  for (bool foreign : {false, true}) {
    CapturedErrLog log;
    std::vector<std::string> calls;
    RecordingListener bad(&calls, "bad"), good(&calls, "good");
    bad.fail("oops", foreign);
    ScriptedSession session;
    session.addServerMessageListener(&bad);
    session.addServerMessageListener(&good);
    session.addConnectListener(&bad);
    session.addConnectListener(&good);
    session.callServerMessageListeners("m");
    session.serverSends(versionReply(2100, 1));
    session.connect();
    EXPECT_EQ(calls, (std::vector<std::string>{"bad: message m", "good: message m",
                                               "bad: connect 0", "good: connect 0"}));
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{
                  std::string("VXClientPacket: Server Message Listener failed, ") +
                      (foreign ? "unknown excpetion" : "oops"),
                  "VXClientPacket: connect listener failed, oops"}));
  }
}

TEST(ClientPacketEvents, KeepsDuplicatesAndRemovesOneEntryAtATime) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.addPickResultListener(&listener);
  session.addPickResultListener(&listener);
  session.callPickResultListeners("x");
  EXPECT_EQ(calls.size(), 2u);
  session.removePickResultListener(&listener);
  session.callPickResultListeners("y");
  EXPECT_EQ(calls.size(), 3u);
}

TEST(ClientPacketEvents, SubscribesTheErrorLogOnceForAllListeners) {
  std::vector<std::string> calls;
  RecordingListener first(&calls), second(&calls);
  ScriptedSession session;
  connectTo(session, 1878);
  session.addErrLogListener(&first);
  session.addErrLogListener(&second);
  EXPECT_EQ(session.writtenTypes(), std::vector<uint32_t>{11});
  session.removeErrLogListener(&first);
  session.removeErrLogListener(&second);
  session.removeErrLogListener(&second);
  EXPECT_EQ(session.writtenTypes(), (std::vector<uint32_t>{11, 12}));
}

TEST(ClientPacketEvents, OlderServersGetNoErrorLogSubscription) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  connectTo(session, 1877);
  session.captureDebug();
  session.addErrLogListener(&listener);
  session.removeErrLogListener(&listener);
  EXPECT_TRUE(session.written().empty());
  EXPECT_EQ(session.debugText(), "ErrLogListeners not supported by server\n");
}

TEST(ClientPacketEvents, WarnsButKeepsListenersTheServerCannotServe) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  for (uint32_t major : {0u, 2013u, 2014u, 2285u, 2286u}) {
    CapturedErrLog log;
    ScriptedSession session;
    if (major > 0) connectTo(session, major);
    session.addCommandCallbackListener(&listener);
    session.addPickResultListener(&listener);
    std::vector<std::string> expected;
    if (major > 0 && major < 2014) expected.push_back("CallbackCommands not supported by server");
    if (major > 0 && major < 2286) expected.push_back("PickResults not supported by server");
    EXPECT_EQ(log.messages(), expected) << major;
    calls.clear();
    session.callPickResultListeners("p");
    EXPECT_EQ(calls.size(), 1u);
  }
}

TEST(ClientPacketEvents, RegistersAZoneWithTheServerForItsFirstListenerOnly) {
  std::vector<std::string> calls;
  RecordingListener first(&calls), second(&calls);
  ScriptedSession session;
  connectTo(session, 2100);
  session.addZoneNotifyListener("Z", &first);
  session.addZoneNotifyListener("Z", &second);
  session.removeZoneNotifyListener("Z", &first);
  session.removeZoneNotifyListener("Z", &second);
  const auto packets = session.writtenPackets();
  ASSERT_EQ(packets.size(), 2u);
  EXPECT_EQ(packets[0].type, 7u);
  EXPECT_EQ(packets[0].payload, stringBytes("Z"));
  EXPECT_EQ(packets[1].type, 8u);
  EXPECT_EQ(packets[1].payload, stringBytes("Z"));
}

TEST(ClientPacketEvents, AReconnectResubscribesBeforeTheConnectListenersRun) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  listener.during = [&] {
    std::string types;
    for (uint32_t type : session.writtenTypes()) types += std::to_string(type) + " ";
    calls.push_back(types);
  };
  session.addErrLogListener(&listener);
  session.addZoneNotifyListener("B", &listener);
  session.addZoneNotifyListener("A", &listener);
  session.addZoneNotifyListener("A", &listener);
  session.addConnectListener(&listener);
  connectTo(session, 2100);
  session.onServerDisconnected();
  session.clearWritten();
  calls.clear();

  session.serverSends(versionReply(2100, 1));
  session.captureDebug();
  session.connect();
  EXPECT_EQ(calls, (std::vector<std::string>{"l: connect 0", "5 11 7 7 "}));
  const auto packets = session.writtenPackets();
  EXPECT_EQ(packets[2].payload, stringBytes("A"));
  EXPECT_EQ(packets[3].payload, stringBytes("B"));
  EXPECT_NE(session.debugText().find("reapplyErrLogListeners\nreapplyZoneNotifyListeners for 2\n"),
            std::string::npos);
}
