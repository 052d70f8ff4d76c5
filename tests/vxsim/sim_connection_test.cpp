#include "tools/vxsim/sim_connection.h"

#include <gtest/gtest.h>

#include "client/client_exceptions.h"
#include "tests/vxsim/sim_test_support.h"

namespace {

// The packets of a byte stream from the simulator.
std::vector<WrittenPacket> packetsOf(const std::vector<uint8_t>& bytes) {
  std::vector<WrittenPacket> packets;
  std::size_t at = 0;
  auto word = [&](std::size_t offset) {
    return (uint32_t{bytes[offset]} << 24) | (uint32_t{bytes[offset + 1]} << 16) |
           (uint32_t{bytes[offset + 2]} << 8) | uint32_t{bytes[offset + 3]};
  };
  while (at + 12 <= bytes.size()) {
    EXPECT_EQ(word(at), 0x56585001u);
    const uint32_t length = word(at + 8);
    packets.push_back(
        {word(at + 4), Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(at + 12),
                             bytes.begin() + static_cast<std::ptrdiff_t>(at + 12 + length))});
    at += 12 + length;
  }
  EXPECT_EQ(at, bytes.size());
  return packets;
}

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
  try {
    connection.feed(bad.data(), bad.size());
    FAIL();
  } catch (const VXCommunicationErrorException& e) {
    EXPECT_STREQ(e.what(), "Communication error, Bad magic in packet header");
  }
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
  try {
    wrong.connect();
    FAIL();
  } catch (const VXClientException& e) {
    EXPECT_STREQ(e.what(), "Incorrect password.");
  }
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
