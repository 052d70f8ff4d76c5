#include "client/client_packet.h"

#include <gtest/gtest.h>

#include "client/login.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "tests/client/scripted_session.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {

const std::vector<uint8_t> kChallenge = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};

}  // namespace

TEST(ClientPacket, HandshakeAsksTheVersionAndSkipsTheLoginForOlderServers) {
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session(2);
  session.addConnectListener(&listener);
  session.serverSends(versionReply(2295, 106, 4711));  // beta 6: combined 2295006
  session.captureDebug();
  EXPECT_TRUE(session.connect());
  EXPECT_TRUE(session.isConnected());
  EXPECT_EQ(session.writtenTypes(), std::vector<uint32_t>{5});
  EXPECT_EQ(session.getCombinedVersion(), 2295006u);
  EXPECT_EQ(session.getServerVersion(), "2295beta6");
  EXPECT_EQ(session.getServerVersionBuild(), 4711u);
  EXPECT_EQ(session.getServerVersionWord1(), 7u);
  EXPECT_EQ(calls, std::vector<std::string>{"l: connect 2"});
  EXPECT_EQ(session.debugText(),
            "server version 2295beta6\nsetProject for 0 channels\nreapplyErrLogListeners\n"
            "reapplyZoneNotifyListeners for 0\ncalling connect listener\n");
  EXPECT_TRUE(session.connect());  // already open: nothing more is sent
  EXPECT_EQ(session.writtenTypes(), std::vector<uint32_t>{5});
}

TEST(ClientPacket, LogsInFromTheFirstBetaSevenAndEveryRelease) {
  for (uint32_t minor : {107u, 6u}) {
    ScriptedSession session;
    session.setPassword("secret");
    session.serverSends(versionReply(2295, minor) + packetBytes(18, kChallenge) +
                        packetBytes(20, Bytes{1}));
    EXPECT_TRUE(session.connect()) << minor;
    const auto packets = session.writtenPackets();
    ASSERT_EQ(packets.size(), 3u);
    EXPECT_EQ(packets[1].type, 17u);
    EXPECT_TRUE(packets[1].payload.empty());
    EXPECT_EQ(packets[2].type, 19u);
    EXPECT_EQ(packets[2].payload, vxLoginResponse("secret", kChallenge));
  }
}

TEST(ClientPacket, AnEmptyChallengeEndsTheLogin) {
  ScriptedSession session;
  session.serverSends(versionReply(2296, 1) + packetBytes(18));
  EXPECT_TRUE(session.connect());
  EXPECT_EQ(session.writtenTypes(), (std::vector<uint32_t>{5, 17}));
}

TEST(ClientPacket, AWrongPasswordClosesTheSessionAndFailsTheConnect) {
  CapturedErrLog log;
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.addConnectListener(&listener);
  session.setPassword("wrong");
  session.serverSends(versionReply(2295, 7) + packetBytes(18, kChallenge) +
                      packetBytes(20, Bytes{0}));
  EXPECT_EQ(failureOf<VXClientException>([&] { session.connect(); }), "Incorrect password.");
  EXPECT_FALSE(session.isOpen());
  EXPECT_FALSE(session.isConnected());
  EXPECT_EQ(session.getServerVersionMajor(), 0u);
  EXPECT_TRUE(calls.empty());
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Can't authenticate, Incorrect password."});
  EXPECT_EQ(session.getConnectFailure(), "Can't authenticate, Incorrect password.");
}

TEST(ClientPacket, AnEmptyLoginAnswerIsARefusal) {
  CapturedErrLog log;
  ScriptedSession session;
  session.serverSends(versionReply(2295, 7) + packetBytes(18, kChallenge) + packetBytes(20));
  EXPECT_THROW(session.connect(), VXClientException);
}

TEST(ClientPacket, AFailedVersionQueryClosesButTheHandshakeGoesOn) {
  CapturedErrLog log;
  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  ScriptedSession session;
  session.addConnectListener(&listener);
  session.serverSends(packetBytes(6, Bytes{0, 0, 0}));  // too short for five words
  EXPECT_FALSE(session.connect());
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{
                "Can't get server version, Communication error, Incorrect data length"});
  EXPECT_EQ(session.getServerVersionWord1(), 1u);
  EXPECT_EQ(session.getServerVersionMajor(), 0u);
  EXPECT_EQ(calls, std::vector<std::string>{"l: connect 0"});
  EXPECT_EQ(session.getConnectFailure(), log.messages().front());
  session.serverSends(versionReply(2100, 1));
  EXPECT_TRUE(session.connect());
  EXPECT_EQ(session.getConnectFailure(), "");
}

TEST(ClientPacket, RendersTheVersionText) {
  ScriptedSession session;
  session.serverSends(versionReply(0x40000000u | 2295u, 103));
  session.connect();
  EXPECT_EQ(session.getServerVersion(), "2295beta3 debug");
  EXPECT_EQ(session.getServerVersionMajor(), 2295u);
  session.close();
  session.serverSends(versionReply(2295, 7));
  session.serverSends(packetBytes(18));
  session.connect();
  EXPECT_EQ(session.getServerVersion(), "2295.7");
  EXPECT_EQ(session.getCombinedVersion(), 2295107u);
  session.close();
  session.serverSends(versionReply(1900, 0));
  session.connect();
  EXPECT_EQ(session.getServerVersion(), "1900");
}

TEST(ClientPacket, CloseForgetsTheVersionAndPendingCommands) {
  ScriptedSession session;
  session.serverSends(versionReply(2100, 5));
  session.connect();
  session.beginImmediate(false);
  session.deleteNode("a");
  session.captureDebug();
  EXPECT_FALSE(session.close());
  EXPECT_EQ(session.depth(), 0);
  EXPECT_EQ(session.getServerVersionMajor(), 0u);
  EXPECT_EQ(session.debugText(), "close\n");
}

TEST(ClientPacket, SendsAnActionAsOneNewObjectInPacketZero) {
  ScriptedSession session;
  session.openWithoutHandshake();
  session.captureDebug();
  session.deleteNode("a");
  const auto packets = session.writtenPackets();
  ASSERT_EQ(packets.size(), 1u);
  EXPECT_EQ(packets[0].type, 0u);
  AFCPersistentOutputStreamBuffer reference(session.getCombinedVersion());
  VXImmediateAction action;
  action.addCommand(std::make_unique<VXDeleteNodeCommand>("a"));
  reference.writeObject(&action);
  const AFCBuffer& bytes = reference.getBuffer();
  EXPECT_EQ(packets[0].payload, Bytes(bytes.data(), bytes.data() + bytes.size()));
  const Bytes header = newObjectHeader("VXImmediateAction");
  EXPECT_TRUE(std::equal(header.begin(), header.end(), packets[0].payload.begin()));
  EXPECT_NE(session.debugText().find("sendAction, channel 0\n"), std::string::npos);
}

TEST(ClientPacket, KeepsTheProjectPerChannelAndResendsItOnConnect) {
  ScriptedSession session;
  session.setProject("zero");  // closed: kept only
  session.setChannel(3);
  session.setProject("old");
  session.setProject("three");
  EXPECT_EQ(session.getProject(), "three");
  EXPECT_TRUE(session.written().empty());

  session.serverSends(versionReply(2100, 5));
  session.connect();
  const auto packets = session.writtenPackets();
  ASSERT_EQ(packets.size(), 3u);
  const Bytes immediate = newObjectHeader("VXImmediateAction") + kBasePart + uint32Bytes(0x06, 1) +
                          newObjectHeader("VXSetProjectCommand");
  EXPECT_TRUE(std::equal(immediate.begin(), immediate.end(), packets[1].payload.begin()));
  const Bytes channel = newObjectHeader("VXChannelAction");
  EXPECT_TRUE(std::equal(channel.begin(), channel.end(), packets[2].payload.begin()));
  EXPECT_EQ(Bytes(packets[2].payload.end() - 6, packets[2].payload.end()), int32Bytes(3));

  session.clearWritten();
  session.setProject("now");
  EXPECT_EQ(session.writtenTypes(), std::vector<uint32_t>{0});
}

TEST(ClientPacket, ZoneStateOperationsNeedMajor2016) {
  ScriptedSession session;
  session.serverSends(versionReply(2015, 1));
  session.connect();
  session.captureDebug();
  VXZonesState zones;
  zones.set("Z", true);
  session.setZoneState1(zones);
  session.getZoneState1(zones);
  EXPECT_EQ(session.writtenTypes(), std::vector<uint32_t>{5});
  EXPECT_EQ(session.debugText(),
            "setZoneStateRequest not supported by server\ngetZoneState not supported by server\n");
}

TEST(ClientPacket, SetsAndQueriesZoneStatesAsTheBareRecord) {
  ScriptedSession session;
  session.serverSends(versionReply(2016, 1));
  session.connect();
  session.clearWritten();
  VXZonesState zones;
  zones.set("Z", true);
  session.setZoneState1(zones);

  session.serverSends(packetBytes(4, uint32Bytes(0x06, 1) + stringBytes("Z") + boolBytes(false)));
  session.getZoneState1(zones);
  const Bytes record = uint32Bytes(0x06, 1) + stringBytes("Z") + boolBytes(true);
  const auto packets = session.writtenPackets();
  ASSERT_EQ(packets.size(), 2u);
  EXPECT_EQ(packets[0].type, 2u);
  EXPECT_EQ(packets[0].payload, record);
  EXPECT_EQ(packets[1].type, 3u);
  EXPECT_EQ(packets[1].payload, record);
  EXPECT_FALSE(zones.get("Z"));
}
