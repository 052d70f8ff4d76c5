#include "client/roa_manager.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "client/roa_exceptions.h"
#include "commands/begin_end_builder.h"
#include "tests/client/roa_test_support.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {

TEST(RoaManager, SetAttrSendsOneSetRequestAndAcceptsVoid) {
  ScriptedRoaSession session;
  session.replies = {replyBytes(VX_ROA_REPLY_VOID, {})};
  const auto value = text("Hello");
  session.remoteSetAttr("Root/t/txt.Text", value.get());
  ASSERT_EQ(session.requests.size(), 1u);
  EXPECT_EQ(session.requests[0], requestBytes("Root/t/txt.Text", 1, {textBytes("Hello")}));
  EXPECT_TRUE(session.sends.empty());
  EXPECT_EQ(session.debugLines.str(), "ROA-REQ[SET_ATTR,Root/t/txt.Text,Hello]\nROA-REPLY[VOID\n");
}

TEST(RoaManager, SetAttrAsyncOnlySendsAndTracesAsync) {
  ScriptedRoaSession session;
  session.remoteSetAttrAsync("n.Pos", nullptr);
  session.replies = {replyBytes(VX_ROA_REPLY_VALUE, {textBytes("3")})};
  // A later synchronous call still gets its own reply.
  EXPECT_EQ(session.remoteGetAttr("n.Pos")->toString(), "3");
  ASSERT_EQ(session.sends.size(), 1u);
  EXPECT_EQ(session.sends[0], requestBytes("n.Pos", 257, {kNullObject}));
  EXPECT_EQ(session.requests.size(), 1u);
  EXPECT_EQ(session.debugLines.str(),
            "ROA-REQ[SET_ATTR_ASYNC,n.Pos,<NULL>] ASYNC\n"
            "ROA-REQ[GET_ATTR,n.Pos]\nROA-REPLY[VALUE,3\n");
}

TEST(RoaManager, GetAttrReturnsTheFirstValueOrNothingForANullOne) {
  ScriptedRoaSession session;
  session.replies = {replyBytes(VX_ROA_REPLY_VALUE, {kNullObject}),
                     replyBytes(VX_ROA_REPLY_VOID, {})};
  EXPECT_EQ(session.remoteGetAttr("n.Text"), nullptr);
  EXPECT_EQ(session.remoteGetAttr("n.Text"), nullptr);
  EXPECT_EQ(session.requests[0], requestBytes("n.Text", 2, {}));
  EXPECT_NE(session.debugLines.str().find("ROA-REPLY[VALUE,<NULL>\n"), std::string::npos);
}

TEST(RoaManager, InvokeSendsEveryArgumentInOrderAndReturnsTheResult) {
  ScriptedRoaSession session;
  session.replies = {replyBytes(VX_ROA_REPLY_VALUE, {textBytes("id7")}),
                     replyBytes(VX_ROA_REPLY_VOID, {})};
  const auto first = text("a");
  const AFCAttribute* arguments[] = {first.get(), nullptr};
  EXPECT_EQ(session.remoteInvoke("::Preview.generateID", arguments)->toString(), "id7");
  EXPECT_EQ(session.requests[0],
            requestBytes("::Preview.generateID", 3, {textBytes("a"), kNullObject}));
  EXPECT_EQ(session.remoteInvoke("n.play", {}), nullptr);
}

TEST(RoaManager, AnExceptionReplyThrowsTheServerText) {
  ScriptedRoaSession session;
  session.replies = {replyBytes(VX_ROA_REPLY_EXCEPTION, {textBytes("No node n")}),
                     replyBytes(VX_ROA_REPLY_EXCEPTION, {}),
                     replyBytes(VX_ROA_REPLY_EXCEPTION, {kNullObject})};
  const auto value = text("x");
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session.remoteSetAttr("n.a", value.get()); }),
            "Remote exception: No node n");
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session.remoteGetAttr("n.a"); }),
            "Remote exception: ? bad reply ?");
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session.remoteInvoke("n.f", {}); }),
            "Remote exception: ? bad reply ?");
}

TEST(RoaManager, AMissingReplyOrAnUnknownReplyKindThrows) {
  ScriptedRoaSession session;
  session.replies = {kNullObject, replyBytes(7, {textBytes("v")})};
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session.remoteGetAttr("n.a"); }),
            "Remote exception: ? null reply ?");
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session.remoteGetAttr("n.a"); }),
            "Remote exception: ? bad reply ?");
  // No reply payload at all: the session was closed while waiting.
  EXPECT_EQ(failureOf<VXROARemoteException>([&] { session.remoteGetAttr("n.a"); }),
            "Remote exception: ? null reply ?");
  EXPECT_NE(session.debugLines.str().find("ROA-REPLY[,v\n"), std::string::npos);
}

TEST(RoaManager, AMalformedReplyFailsWithTheStreamText) {
  ScriptedRoaSession session;
  Bytes truncated = replyBytes(VX_ROA_REPLY_VALUE, {textBytes("long text")});
  truncated.resize(truncated.size() - 3);
  session.replies = {truncated, replyBytes(VX_ROA_REPLY_PROPS, {})};
  session.replies[1][session.replies[1].size() - 1] = 0xFF;  // a count of 255 values, none there
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(failureOf<AFCPersistentReadException2>([&] { session.remoteGetAttr("n.a"); }),
              "Incorrect data length");
  }
}

TEST(RoaManager, ARequestWithoutTargetIsRefusedBeforeAnythingIsSent) {
  ScriptedRoaSession session;
  EXPECT_THROW(session.remoteGetAttr(""), VXROABadRequest);
  EXPECT_THROW(session.remoteSetAttrAsync("", nullptr), VXROABadRequest);
  EXPECT_TRUE(session.requests.empty() && session.sends.empty());
}

TEST(RoaManager, TracesNothingWhenDebugIsOff) {
  ScriptedRoaSession session;
  session.debug = false;
  session.replies = {replyBytes(VX_ROA_REPLY_VOID, {})};
  session.remoteSetAttr("n.a", nullptr);
  session.remoteSetAttrAsync("n.a", nullptr);
  EXPECT_EQ(session.debugLines.str(), "");
}

TEST(RoaManager, EnumPropsMatchesTheRemoteClassToALocalOne) {
  ScriptedRoaSession session;
  session.replies = {
      replyBytes(VX_ROA_REPLY_PROPS, {textBytes("AFCAttributeString"), textBytes("Text")})};
  auto info = session.remoteEnumProps("Root/t/txt");
  ASSERT_TRUE(info);
  EXPECT_EQ(info->localClass, &AFCAttributeString::staticClass());
  ASSERT_EQ(info->properties.size(), 1u);
  EXPECT_EQ(info->properties[0]->toString(), "Text");
  EXPECT_EQ(session.requests[0], requestBytes("Root/t/txt", 5, {}));
}

TEST(RoaManager, EnumPropsOfAClassUnknownHereLogsAndReturnsNothing) {
  CapturedErrLog log;
  ScriptedRoaSession session;
  session.replies = {replyBytes(VX_ROA_REPLY_PROPS, {textBytes("RemoteOnly")}),
                     replyBytes(VX_ROA_REPLY_PROPS, {kNullObject}),
                     replyBytes(VX_ROA_REPLY_VOID, {})};
  EXPECT_FALSE(session.remoteEnumProps("a"));
  EXPECT_FALSE(session.remoteEnumProps("b"));
  EXPECT_FALSE(session.remoteEnumProps("c"));
  EXPECT_EQ(log.messages(),
            (std::vector<std::string>{"Remote class RemoteOnly not found in local eoe!",
                                      "Remote class  not found in local eoe!"}));
}

// The session is a command-list builder too: one pair of trace overrides serves both bases.
class BuilderSession : public VXCommandListBeginEndBuilder, public VXROAManager {
 public:
  std::ostringstream lines;

 protected:
  void sendAction(const VXAction&) override {}
  void roaSend(const AFCBuffer&) override {}
  void roaRequest(const AFCBuffer&, AFCBuffer&) override {}
  bool traceEnabled() const override { return true; }
  std::ostream& traceStream() override { return lines; }
};

TEST(RoaManager, SharesTheTraceStreamWithTheCommandListBuilder) {
  BuilderSession session;
  session.end();
  session.remoteSetAttrAsync("n.a", nullptr);
  EXPECT_EQ(session.lines.str(), "end (no begin!)\nROA-REQ[SET_ATTR_ASYNC,n.a,<NULL>] ASYNC\n");
}

}  // namespace
