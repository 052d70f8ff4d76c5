#include "client/roa_records.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/client/roa_test_support.h"
#include "tests/support/failure_text.h"

namespace {

VXROAValues values(std::unique_ptr<AFCAttribute> a, std::unique_ptr<AFCAttribute> b = nullptr) {
  VXROAValues list;
  list.push_back(std::move(a));
  list.push_back(std::move(b));
  return list;
}

template <class T>
std::unique_ptr<T> readBytes(const Bytes& bytes) {
  AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
  auto record = in.readOwnedObject<T>();
  EXPECT_TRUE(in.atEnd());
  return record;
}

TEST(RoaRequest, WritesTargetKindCountAndEachArgumentAsAReference) {
  EXPECT_EQ(objectBytes(VXROARequest("Root/t/txt.Text", VX_ROA_INVOKE, values(text("ab")))),
            requestBytes("Root/t/txt.Text", 3, {textBytes("ab"), kNullObject}));
  EXPECT_EQ(objectBytes(VXROARequest("::Preview.generateID", VX_ROA_GET_ATTR)),
            requestBytes("::Preview.generateID", 2, {}));
}

TEST(RoaRequest, ReadsBackTargetKindAndArgumentsIncludingNulls) {
  auto request = readBytes<VXROARequest>(
      requestBytes("a.b", VX_ROA_SET_ATTR_ASYNC, {kNullObject, textBytes("x")}));
  ASSERT_TRUE(request);
  EXPECT_EQ(request->getTarget(), "a.b");
  EXPECT_EQ(request->getKind(), 257);
  ASSERT_EQ(request->getArguments().size(), 2u);
  EXPECT_EQ(request->getArguments()[0], nullptr);
  EXPECT_EQ(request->getArguments()[1]->toString(), "x");
}

TEST(RoaReply, WritesKindCountAndValues) {
  const VXROAReply reply(VX_ROA_REPLY_PROPS, values(text("Node"), text("Text")));
  EXPECT_EQ(objectBytes(reply), replyBytes(3, {textBytes("Node"), textBytes("Text")}));
}

TEST(RoaReply, RoundTripsThroughTheClassRegistry) {
  const VXROAReply reply(VX_ROA_REPLY_VALUE, values(text("7")));
  auto copy = roundTrip(reply);
  ASSERT_TRUE(copy);
  EXPECT_EQ(copy->getKind(), VX_ROA_REPLY_VALUE);
  EXPECT_EQ(copy->toTrace(), "ROA-REPLY[VALUE,7,<NULL>");
}

TEST(RoaReply, AHugeCountOnAShortPayloadFailsAndLeavesTheReplyUnchanged) {
  const Bytes contents = kBasePart + int32Bytes(VX_ROA_REPLY_EXCEPTION) + countBytes(0x7FFFFFFF) +
                         textBytes("only one");
  VXROAReply reply(VX_ROA_REPLY_VOID, values(text("kept")));
  AFCPersistentInputStreamBuffer in(contents.data(), contents.size());
  EXPECT_EQ(failureOf([&] { reply.read(in); }), "Incorrect data length");
  EXPECT_EQ(reply.toTrace(), "ROA-REPLY[VOID,kept,<NULL>");
}

TEST(RoaRecords, NameEveryKindAndNothingForUnknownCodes) {
  EXPECT_EQ(vxROARequestKindName(0), "NULL");
  EXPECT_EQ(vxROARequestKindName(6), "GET_MULTI_ATTR");
  EXPECT_EQ(vxROARequestKindName(7), "FEATURES");
  EXPECT_EQ(vxROARequestKindName(256), "NULL_ASYNC");
  EXPECT_EQ(vxROARequestKindName(257), "SET_ATTR_ASYNC");
  EXPECT_EQ(vxROARequestKindName(8), "");
  EXPECT_EQ(vxROARequestKindName(-1), "");
  EXPECT_EQ(vxROAReplyKindName(1), "EXCEPTION");
  EXPECT_EQ(vxROAReplyKindName(4), "");
}

TEST(RoaRecords, TraceArgumentsValuesAndNulls) {
  EXPECT_EQ(VXROARequest("a.b", VX_ROA_NULL_ASYNC).toTrace(), "ROA-REQ[NULL_ASYNC,a.b]");
  EXPECT_EQ(VXROARequest("n.f", VX_ROA_INVOKE, values(text("1"))).toTrace(),
            "ROA-REQ[INVOKE,n.f,1,<NULL>]");
  EXPECT_EQ(VXROARequest("n", 99).toTrace(), "ROA-REQ[,n]");
  EXPECT_EQ(
      VXROAReply(VX_ROA_REPLY_EXCEPTION, values(std::make_unique<AFCAttributeString>())).toTrace(),
      "ROA-REPLY[EXCEPTION,<undefined>,<NULL>");
  EXPECT_EQ(VXROAReply(42).toTrace(), "ROA-REPLY[");
}

TEST(RoaRecords, MemberTargetJoinsObjectAndMemberWithADot) {
  EXPECT_EQ(vxROAMemberTarget("Root/_Br5_Title_1/txt", "Text"), "Root/_Br5_Title_1/txt.Text");
}

}  // namespace
