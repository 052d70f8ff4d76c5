// Remote-object access through the session: requests go out as packet 9, synchronous kinds
// wait for packet 10, and asynchronous packets met on the way are dispatched first.
#include <gtest/gtest.h>

#include "client/roa_exceptions.h"
#include "client/roa_records.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/client/scripted_session.h"
#include "tests/support/failure_text.h"

namespace {

Bytes reply(int32_t kind, std::unique_ptr<AFCAttribute> value = nullptr) {
  VXROAValues values;
  if (value) values.push_back(std::move(value));
  return packetBytes(10, objectBytes(VXROAReply(kind, std::move(values))));
}

std::unique_ptr<VXROARequest> sentRequest(const WrittenPacket& packet) {
  AFCPersistentInputStreamBuffer in(packet.payload.data(), packet.payload.size());
  return in.readOwnedObject<VXROARequest>();
}

class SessionRoa : public ::testing::Test {
 protected:
  void SetUp() override { session_.openWithoutHandshake(); }
  ScriptedSession session_;
};

TEST_F(SessionRoa, GetAttrSendsPacketNineAndReadsTheValueFromPacketTen) {
  session_.serverSends(reply(VX_ROA_REPLY_VALUE, std::make_unique<AFCAttributeInt32>(42)));
  std::unique_ptr<AFCAttribute> value = session_.remoteGetAttr("::Preview.generateID");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->getInt(), 42);
  const auto packets = session_.writtenPackets();
  ASSERT_EQ(packets.size(), 1u);
  EXPECT_EQ(packets[0].type, 9u);
  auto request = sentRequest(packets[0]);
  EXPECT_EQ(request->getTarget(), "::Preview.generateID");
  EXPECT_EQ(request->getKind(), VX_ROA_GET_ATTR);
}

TEST_F(SessionRoa, AsyncSetSendsWithoutWaitingForAReply) {
  AFCAttributeString text("Jane");
  session_.remoteSetAttrAsync("Root/t.Text", &text);
  EXPECT_EQ(session_.bytesRead(), 0u);
  const auto packets = session_.writtenPackets();
  ASSERT_EQ(packets.size(), 1u);
  EXPECT_EQ(sentRequest(packets[0])->getKind(), VX_ROA_SET_ATTR_ASYNC);
}

TEST_F(SessionRoa, ARemoteExceptionReachesTheCallerWithTheServersText) {
  session_.serverSends(
      reply(VX_ROA_REPLY_EXCEPTION, std::make_unique<AFCAttributeString>("object x not found!")));
  AFCAttributeInt32 value(1);
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session_.remoteSetAttr("x.y", &value); }),
            "Remote exception: object x not found!");
}

TEST_F(SessionRoa, AsynchronousPacketsBeforeTheReplyAreDispatchedFirst) {
  struct Messages : VXServerMessageListener {
    std::vector<std::string> seen;
    void onMessage(const std::string& text) override { seen.push_back(text); }
  } messages;
  session_.addServerMessageListener(&messages);
  session_.serverSends(packetBytes(16, stringBytes("first")));
  session_.serverSends(reply(VX_ROA_REPLY_VOID));
  session_.remoteInvoke("::Control.writeScene", {});
  EXPECT_EQ(messages.seen, std::vector<std::string>{"first"});
  session_.removeServerMessageListener(&messages);
}

}  // namespace
