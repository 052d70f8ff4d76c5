#include "tools/vxsim/sim_connection.h"

#include <gtest/gtest.h>

#include "client/client_exceptions.h"
#include "tests/support/failure_text.h"
#include "tests/vxsim/sim_test_support.h"

namespace {

VXSimOptions withPassword(const std::string& password) {
  VXSimOptions options;
  options.password = password;
  return options;
}

}  // namespace

TEST(SimConnection, AnswersTheVersionQueryWithTheConfiguredWords) {
  VXSimOptions options;
  options.version = {1, 2, 3, 2295 | 0x40000000u, 103};
  VXSimHub hub(options);
  VXSimConnection connection(hub, 1);
  const Bytes request = packetBytes(5);
  connection.feed(request.data(), request.size());
  const auto packets = packetsOf(connection.takeOutput());
  ASSERT_EQ(packets.size(), 1u);
  EXPECT_EQ(packets[0].type, 6u);
  EXPECT_EQ(packets[0].payload, wordBytes(1) + wordBytes(2) + wordBytes(3) +
                                    wordBytes(0x40000000u | 2295) + wordBytes(103));
}

TEST(SimConnection, ServesPacketsSplitAtEveryOffsetExactlyAsWholeOnes) {
  const Bytes stream = packetBytes(5) + packetBytes(17) + packetBytes(5);
  VXSimHub hub;
  VXSimConnection whole(hub, 1);
  whole.feed(stream.data(), stream.size());
  const std::vector<uint8_t> expected = whole.takeOutput();
  for (std::size_t split = 0; split <= stream.size(); ++split) {
    VXSimConnection pieces(hub, 2);
    pieces.feed(stream.data(), split);
    pieces.feed(stream.data() + split, stream.size() - split);
    EXPECT_EQ(pieces.takeOutput(), expected) << "split at " << split;
  }
}

TEST(SimConnection, ABadMagicFailsTheFramingAndClosesTheConnection) {
  VXSimHub hub;
  VXSimConnection connection(hub, 1);
  const Bytes bad = {'B', 'A', 'D', '!', 0, 0, 0, 5, 0, 0, 0, 0};
  EXPECT_EQ(
      failureOf<VXCommunicationErrorException>([&] { connection.feed(bad.data(), bad.size()); }),
      "Communication error, Bad magic in packet header");
  EXPECT_TRUE(connection.isClosed());
  const Bytes version = packetBytes(5);
  connection.feed(version.data(), version.size());
  EXPECT_FALSE(connection.hasOutput());
}

TEST(SimConnection, RefusesALengthAboveTheLimitBeforeAnyPayloadButWaitsForOneAtTheLimit) {
  RecordingHub recording;
  VXSimConnection atLimit(recording.hub, 1);
  const Bytes limit = wordBytes(0x56585001) + wordBytes(0) + wordBytes(10000000);
  atLimit.feed(limit.data(), limit.size());
  EXPECT_FALSE(atLimit.isClosed());

  VXSimConnection above(recording.hub, 2);
  const Bytes tooLong = wordBytes(0x56585001) + wordBytes(0) + wordBytes(10000001);
  EXPECT_THROW(above.feed(tooLong.data(), tooLong.size()), VXCommunicationErrorException);
  EXPECT_EQ(recording.lines.back(), "client 2: declared packet length 10000001, PacketType=0");
}

TEST(SimConnection, AnUndecodablePayloadIsLoggedAndTheConnectionGoesOn) {
  RecordingHub recording;
  VXSimConnection connection(recording.hub, 3);
  const Bytes stream = packetBytes(0, {0xDA, 0x0C, 0xFF}) + packetBytes(5);
  connection.feed(stream.data(), stream.size());
  ASSERT_EQ(recording.lines.size(), 1u);
  EXPECT_EQ(recording.lines[0].rfind("client 3: packet 0 dropped, ", 0), 0u);
  EXPECT_EQ(packetsOf(connection.takeOutput()).at(0).type, 6u);
}

TEST(SimConnection, TheClientHandshakeWithoutPasswordOpensTheSession) {
  VXSimHub hub;
  PipedSession session(hub, 1);
  EXPECT_TRUE(session.connect());
  EXPECT_EQ(session.getServerVersion(), "2295.7");
  // 2295.7 asks for a login; without a password the challenge is empty and ends it.
  EXPECT_EQ(session.writtenTypes(), (std::vector<uint32_t>{5, 17}));
  EXPECT_TRUE(session.connection().isLoggedIn());
}

TEST(SimConnection, TheRightPasswordLogsInAndTheWrongOneIsRefused) {
  RecordingHub recording(withPassword("secret"));
  PipedSession right(recording.hub, 1);
  right.setPassword("secret");
  EXPECT_TRUE(right.connect());
  EXPECT_TRUE(right.connection().isLoggedIn());

  PipedSession wrong(recording.hub, 2);
  wrong.setPassword("guess");
  EXPECT_EQ(failureOf<VXClientException>([&] { wrong.connect(); }), "Incorrect password.");
  EXPECT_FALSE(wrong.connection().isLoggedIn());
  EXPECT_EQ(recording.lines,
            (std::vector<std::string>{"client 1: logged in", "client 2: login refused"}));
}

TEST(SimConnection, NothingButTheHandshakeIsServedBeforeTheLogin) {
  RecordingHub recording(withPassword("secret"));
  VXSimConnection connection(recording.hub, 4);
  const Bytes subscribe = packetBytes(11);
  connection.feed(subscribe.data(), subscribe.size());
  EXPECT_FALSE(connection.isErrLogSubscriber());
  EXPECT_EQ(recording.lines.back(), "client 4: packet 11 before login, ignored");
  // A response without a challenge before it is no login either.
  const Bytes response = packetBytes(19, Bytes(16, 0));
  connection.feed(response.data(), response.size());
  EXPECT_EQ(packetsOf(connection.takeOutput()).at(0).payload, Bytes{0});
}

namespace {

uint32_t headerWord(const std::vector<uint8_t>& bytes, std::size_t offset) {
  EXPECT_LE(offset + 4, bytes.size());
  return offset + 4 <= bytes.size() ? VXPacketFrame::getWord(bytes.data() + offset) : 0;
}

void feed(VXSimConnection& connection, const Bytes& bytes) {
  connection.feed(bytes.data(), bytes.size());
}

}  // namespace

TEST(SimConnectionFaults, ACloseOrderClosesEachConnectionAfterItsNextNPackets) {
  RecordingHub recording;
  VXSimConnection early(recording.hub, 1);
  feed(early, packetBytes(11));  // before the order: not counted
  recording.hub.getFaults().apply("close 3");
  VXSimConnection late(recording.hub, 2);  // connects after the order: carries it out too
  feed(early, packetBytes(11) + packetBytes(11));
  EXPECT_FALSE(early.isClosed());
  // The third packet is served, then the connection closes; the fourth is not looked at.
  feed(early, packetBytes(5) + packetBytes(5));
  EXPECT_TRUE(early.isClosed());
  EXPECT_EQ(packetsOf(early.takeOutput()).size(), 1u);
  EXPECT_EQ(recording.lines.back(), "client 1: closed after 3 packets (fault)");

  feed(late, packetBytes(11) + packetBytes(11) + packetBytes(11));
  EXPECT_TRUE(late.isClosed());

  recording.hub.getFaults().apply("off");
  VXSimConnection after(recording.hub, 3);
  for (int i = 0; i < 5; ++i) feed(after, packetBytes(11));
  EXPECT_FALSE(after.isClosed());
}

TEST(SimConnectionFaults, AMagicOrderSpoilsOnlyTheNextPacketToEachConnection) {
  VXSimHub hub;
  VXSimConnection first(hub, 1);
  VXSimConnection second(hub, 2);
  hub.getFaults().apply("magic");
  feed(first, packetBytes(5) + packetBytes(5));
  const std::vector<uint8_t> bytes = first.takeOutput();
  ASSERT_EQ(bytes.size(), 2 * (12 + 20u));
  EXPECT_EQ(headerWord(bytes, 0), VXSimConnection::kBadMagic);
  EXPECT_EQ(headerWord(bytes, 4), 6u);  // type and length stay right
  EXPECT_EQ(headerWord(bytes, 8), 20u);
  EXPECT_EQ(headerWord(bytes, 32), 0x56585001u);

  hub.broadcastMessage("m");  // the second connection's next packet is this one
  EXPECT_EQ(headerWord(second.takeOutput(), 0), VXSimConnection::kBadMagic);
  EXPECT_EQ(headerWord(first.takeOutput(), 0), 0x56585001u);

  hub.getFaults().apply("magic");  // a new order is carried out once more
  hub.broadcastMessage("m");
  EXPECT_EQ(headerWord(first.takeOutput(), 0), VXSimConnection::kBadMagic);
}

TEST(SimConnectionFaults, ALengthOrderDeclaresOneByteOverTheLimitOnce) {
  RecordingHub recording;
  VXSimConnection connection(recording.hub, 1);
  recording.hub.getFaults().apply("length");
  feed(connection, packetBytes(5) + packetBytes(5));
  const std::vector<uint8_t> bytes = connection.takeOutput();
  ASSERT_EQ(bytes.size(), 2 * (12 + 20u));  // the payload itself is still all there
  EXPECT_EQ(headerWord(bytes, 0), 0x56585001u);
  EXPECT_EQ(headerWord(bytes, 8), 10000001u);
  EXPECT_EQ(headerWord(bytes, 32 + 8), 20u);
  EXPECT_EQ(recording.lines.back(), "client 1: packet 6 sent with a bad length (fault)");
}

TEST(SimConnectionFaults, ADelayHoldsARepliesBackWithEverythingFramedAfterIt) {
  using Clock = VXSimConnection::Clock;
  VXSimHub hub;
  VXSimConnection connection(hub, 1);
  hub.broadcastMessage("before");  // not a reply, and nothing held: goes at once
  hub.getFaults().apply("delay 300");
  const Clock::time_point asked = Clock::now();
  feed(connection, packetBytes(5));
  hub.broadcastMessage("after");  // must not overtake the reply
  ASSERT_TRUE(connection.nextDue().has_value());
  EXPECT_GE(*connection.nextDue(), asked + std::chrono::milliseconds(300));
  EXPECT_LE(*connection.nextDue(), Clock::now() + std::chrono::milliseconds(300));

  auto packets = packetsOf(connection.takeOutput(asked));
  ASSERT_EQ(packets.size(), 1u);
  EXPECT_EQ(packets[0].type, 16u);
  EXPECT_TRUE(connection.hasOutput());

  packets = packetsOf(connection.takeOutput(*connection.nextDue()));
  ASSERT_EQ(packets.size(), 2u);
  EXPECT_EQ(packets[0].type, 6u);
  EXPECT_EQ(packets[1].type, 16u);
  EXPECT_FALSE(connection.nextDue().has_value());
  EXPECT_FALSE(connection.hasOutput());
}

TEST(SimConnectionFaults, HeldRepliesGoOutInTheOrderOfTheirRequests) {
  using Clock = VXSimConnection::Clock;
  VXSimHub hub;
  VXSimConnection connection(hub, 1);
  hub.getFaults().apply("delay 500");
  feed(connection, packetBytes(5));
  hub.getFaults().apply("delay 1");  // a shorter delay must not let the next reply overtake
  feed(connection, packetBytes(17));
  hub.getFaults().apply("off");
  feed(connection, packetBytes(5));
  EXPECT_TRUE(
      packetsOf(connection.takeOutput(Clock::now() + std::chrono::milliseconds(100))).empty());
  std::vector<uint32_t> types;
  for (const auto& packet :
       packetsOf(connection.takeOutput(Clock::now() + std::chrono::hours(1)))) {
    types.push_back(packet.type);
  }
  EXPECT_EQ(types, (std::vector<uint32_t>{6, 18, 6}));
}
