// The simulator's remote objects, asked by the client's own remote-object manager.
#include <gtest/gtest.h>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/vxsim/sim_test_support.h"

namespace {

// The text of the exception the call throws, or "no exception".
template <class Call>
std::string failureOf(Call call) {
  try {
    call();
  } catch (const AFCException& e) {
    return e.what();
  }
  return "no exception";
}

}  // namespace

TEST(SimRemoteObjects, RemoteObjectsGetAndSetNodeAttributesAndNameWhatIsMissing) {
  VXSimHub hub;
  PipedSession session(hub, 1);
  session.connect();
  session.createNode("Text", "txt", "");
  const AFCAttributeInt32 value(7);
  session.remoteSetAttr("Root/txt.Size", &value);
  const auto back = session.remoteGetAttr("Root/txt.Size");
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->getInt(), 7);
  EXPECT_NE(dynamic_cast<const AFCAttributeInt32*>(back.get()), nullptr);

  auto textOf = [&](std::string_view path) {
    try {
      session.remoteGetAttr(path);
    } catch (const AFCException& e) {
      return std::string(e.what());
    }
    return std::string("no exception");
  };
  EXPECT_EQ(textOf("Root/nope.Size"), "Remote exception: object Root/nope not found!");
  EXPECT_EQ(textOf("Root/txt.Color"), "Remote exception: Attribute Color not found!");
  EXPECT_EQ(textOf("::Camera.zoom"), "Remote exception: object ::Camera not found!");
}

TEST(SimRemoteObjects, PreviewIdsIncreaseAndAPickAnswersThenSendsItsResult) {
  VXSimHub hub;
  std::vector<std::string> seen;
  RecordingListener listener(&seen);
  PipedSession session(hub, 1);
  session.addPickResultListener(&listener);
  session.connect();
  session.createNode("Group", "a", "");
  const auto first = session.remoteInvoke("::Preview.generateID", {});
  const auto second = session.remoteInvoke("::Preview.generateID", {});
  EXPECT_EQ(second->getInt(), first->getInt() + 1);

  EXPECT_EQ(session.remoteInvoke("::Pick.sendRequest", {}), nullptr);
  session.dispatchPending();
  EXPECT_EQ(seen, std::vector<std::string>{
                      "l: pick <?xml version=\"1.0\"?><pick><node path=\"Root/a\"/></pick>"});
}

TEST(SimRemoteObjects, PreviewImagesNeedAGeneratedIdAndCountTheIdsPreviewRecords) {
  RecordingHub recording;
  PipedSession session(recording.hub, 1);
  session.connect();
  const int32_t id = session.remoteInvoke("::Preview.generateID", {})->getInt();
  session.beginImmediate(false);
  session.beginSequencePreview(id);
  session.endSequencePreview(id);
  session.end();
  const AFCAttributeInt32 idValue(id);
  const AFCAttributeString file("seq.png");
  const AFCAttribute* const arguments[] = {&idValue, &file};
  EXPECT_EQ(session.remoteInvoke("::Preview.getSequenceImageFile", arguments)->getInt(), 2);
  EXPECT_EQ(session.remoteInvoke("::Preview.getStillImageFile", arguments), nullptr);
  EXPECT_EQ(recording.lines.back(),
            "client 1: ::Preview.getStillImageFile " + std::to_string(id) + " seq.png");

  const AFCAttributeInt32 unknown(id + 1);
  const AFCAttribute* const unknownArguments[] = {&unknown, &file};
  EXPECT_EQ(
      failureOf([&] { session.remoteInvoke("::Preview.getStillImageFile", unknownArguments); }),
      "Remote exception: Preview " + std::to_string(id + 1) + " not found!");
  EXPECT_EQ(failureOf([&] { session.remoteInvoke("::Preview.getStillImageFile", {}); }),
            "Remote exception: Bad ROA request");
}

TEST(SimRemoteObjects, CameraAndControlCallsAreRecordedAndUnknownMethodsNamed) {
  RecordingHub recording;
  PipedSession session(recording.hub, 1);
  session.connect();
  const AFCAttributeString camera("wide");
  const AFCAttribute* const arguments[] = {&camera};
  EXPECT_EQ(session.remoteInvoke("::CameraManager.switchCamera", arguments), nullptr);
  EXPECT_EQ(recording.hub.getCamera(), "wide");
  EXPECT_EQ(session.remoteInvoke("::Control.writeScene", {}), nullptr);
  EXPECT_EQ(recording.lines.back(), "client 1: ::Control.writeScene");
  EXPECT_EQ(failureOf([&] { session.remoteInvoke("::Control.reboot", {}); }),
            "Remote exception: Method reboot not found!");
  EXPECT_EQ(failureOf([&] { session.remoteGetAttr("::Control.writeScene"); }),
            "Remote exception: Bad ROA request");
}

TEST(SimRemoteObjects, APickByTagNamesTheNodeOfThatName) {
  VXSimHub hub;
  std::vector<std::string> seen;
  RecordingListener listener(&seen);
  PipedSession session(hub, 1);
  session.addPickResultListener(&listener);
  session.connect();
  session.createNode("Group", "a", "");
  session.createNode("Text", "label", "a");
  const AFCAttributeString tag("label");
  const AFCAttribute* const arguments[] = {&tag};
  session.remoteInvoke("::Pick.sendRequest", arguments);
  const AFCAttributeString missing("none");
  const AFCAttribute* const missingArguments[] = {&missing};
  session.remoteInvoke("::Pick.sendRequest", missingArguments);
  session.dispatchPending();
  EXPECT_EQ(seen, (std::vector<std::string>{
                      "l: pick <?xml version=\"1.0\"?><pick tag=\"label\"><node "
                      "path=\"Root/a/label\"/></pick>",
                      "l: pick <?xml version=\"1.0\"?><pick tag=\"none\"></pick>"}));
}
