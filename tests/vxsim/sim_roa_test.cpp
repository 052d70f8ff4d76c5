// The simulator's remote objects, asked by the client's own remote-object manager.
#include <gtest/gtest.h>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"
#include "tests/vxsim/sim_test_support.h"

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
    return failureOf([&] { session.remoteGetAttr(path); });
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

namespace {

// A session that also issues the request kinds the client has no operation for.
class RemoteSession : public PipedSession {
 public:
  using PipedSession::PipedSession;
  using VXROAManager::roaCall;

  // The texts of a reply's values; "<NULL>" for a null one.
  std::vector<std::string> call(const std::string& target, int32_t kind,
                                const std::vector<std::string>& names = {}) {
    VXROAValues arguments;
    for (const std::string& name : names) {
      arguments.push_back(std::make_unique<AFCAttributeString>(name));
    }
    const std::unique_ptr<VXROAReply> reply =
        roaCall(VXROARequest(target, kind, std::move(arguments)));
    std::vector<std::string> texts;
    if (!reply) return texts;
    texts.push_back(std::string(vxROAReplyKindName(reply->getKind())));
    for (const auto& value : reply->getValues()) {
      texts.push_back(value ? value->toString() : "<NULL>");
    }
    return texts;
  }
};

// A node in the scene with two attributes of different kinds.
void makeTitle(PipedSession& session) {
  session.createNode("LowerThird", "t", "");
  session.setAttribute("Root/t", "Text", std::make_unique<AFCAttributeString>("Jane"));
  session.setAttribute("Root/t", "Size", std::make_unique<AFCAttributeInt32>(12));
}

// A local class named like the simulator's node type, so that a listing can be matched.
const AFCClass& lowerThirdClass() {
  static const AFCClass& record =
      (new AFCClassEx("LowerThird", &AFCObject::staticClass()))->registerClass();
  return record;
}

}  // namespace

TEST(SimRemoteObjects, PropertyListingsNameTheClassThenEveryAttributeOrMethod) {
  VXSimHub hub;
  RemoteSession session(hub, 1);
  session.connect();
  makeTitle(session);
  EXPECT_EQ(session.call("Root/t", VX_ROA_ENUM_PROPS),
            (std::vector<std::string>{"PROPS", "LowerThird", "Size", "Text"}));
  EXPECT_EQ(session.call("Root", VX_ROA_ENUM_PROPS), (std::vector<std::string>{"PROPS", "Node"}));
  EXPECT_EQ(session.call("::Preview", VX_ROA_ENUM_PROPS),
            (std::vector<std::string>{"PROPS", "Preview", "generateID", "getSequenceImageFile",
                                      "getStillImageFile"}));
  EXPECT_EQ(failureOf([&] { session.call("Root/t.Text", VX_ROA_ENUM_PROPS); }),
            "Remote exception: object Root/t.Text not found!");
  EXPECT_EQ(failureOf([&] { session.call("::Camera", VX_ROA_ENUM_PROPS); }),
            "Remote exception: object ::Camera not found!");
}

TEST(SimRemoteObjects, TheClientMatchesAListingToItsLocalClassOrLogsTheUnknownOne) {
  lowerThirdClass();
  VXSimHub hub;
  PipedSession session(hub, 1);
  session.connect();
  makeTitle(session);
  session.createNode("Text", "plain", "");
  const std::optional<VXROAClassInfo> matched = session.remoteEnumProps("Root/t");
  ASSERT_TRUE(matched.has_value());
  EXPECT_EQ(matched->localClass, &lowerThirdClass());
  ASSERT_EQ(matched->properties.size(), 2u);
  EXPECT_EQ(matched->properties[0]->toString(), "Size");

  CapturedErrLog log;
  EXPECT_FALSE(session.remoteEnumProps("Root/plain").has_value());
  EXPECT_EQ(log.messages(), std::vector<std::string>{"Remote class Text not found in local eoe!"});
}

TEST(SimRemoteObjects, AMultipleGetAnswersTheValuesInTheOrderAskedOrNamesTheMissingOne) {
  VXSimHub hub;
  RemoteSession session(hub, 1);
  session.connect();
  makeTitle(session);
  EXPECT_EQ(session.call("Root/t", VX_ROA_GET_MULTI_ATTR, {"Text", "Size", "Text"}),
            (std::vector<std::string>{"VALUE", "Jane", "12", "Jane"}));
  const auto reply = session.roaCall(VXROARequest("Root/t", VX_ROA_GET_MULTI_ATTR, [] {
    VXROAValues names;
    names.push_back(std::make_unique<AFCAttributeString>("Size"));
    return names;
  }()));
  ASSERT_EQ(reply->getValues().size(), 1u);
  EXPECT_NE(dynamic_cast<const AFCAttributeInt32*>(reply->getValues()[0].get()), nullptr);

  EXPECT_EQ(failureOf([&] {
              session.call("Root/t", VX_ROA_GET_MULTI_ATTR, {"Size", "Color"});
            }),
            "Remote exception: Attribute Color not found!");
  EXPECT_EQ(failureOf([&] { session.call("Root/t", VX_ROA_GET_MULTI_ATTR); }),
            "Remote exception: Bad ROA request");
  EXPECT_EQ(failureOf([&] { session.call("::Preview", VX_ROA_GET_MULTI_ATTR, {"id"}); }),
            "Remote exception: Attribute id not found!");
  EXPECT_EQ(failureOf([&] { session.call("Root/none", VX_ROA_GET_MULTI_ATTR, {"Size"}); }),
            "Remote exception: object Root/none not found!");
}

TEST(SimRemoteObjects, FeaturesListEveryKindServed) {
  VXSimHub hub;
  RemoteSession session(hub, 1);
  session.connect();
  EXPECT_EQ(
      session.call("::Server", VX_ROA_FEATURES),
      (std::vector<std::string>{"VALUE", "0", "1", "2", "3", "4", "5", "6", "7", "256", "257"}));
}

TEST(SimRemoteObjects, AWatchedAttributeTellsItsWatcherOfEveryChangeAsAMessage) {
  VXSimHub hub;
  std::vector<std::string> seen;
  RecordingListener listener(&seen, "w");
  RemoteSession watcher(hub, 1);
  RemoteSession changer(hub, 2);
  watcher.addServerMessageListener(&listener);
  watcher.connect();
  changer.connect();
  makeTitle(changer);
  EXPECT_EQ(watcher.call("Root/t.Size", VX_ROA_WATCH_ATTR), std::vector<std::string>{"VOID"});

  changer.setAttribute("Root/t", "Size", std::make_unique<AFCAttributeInt32>(14));
  changer.setAttribute("Root/t", "Size", std::make_unique<AFCAttributeInt32>(14));  // no change
  changer.setAttribute("Root/t", "Text", std::make_unique<AFCAttributeString>("Joe"));
  const AFCAttributeInt32 remote(16);
  changer.remoteSetAttr("Root/t.Size", &remote);
  changer.deleteNode("Root/t");
  watcher.dispatchPending();
  EXPECT_EQ(seen,
            (std::vector<std::string>{"w: message Root/t.Size=14", "w: message Root/t.Size=16",
                                      "w: message Root/t.Size=<undefined>"}));
}

TEST(SimRemoteObjects, AWatchNeedsAnExistingAttributeAndEndsWithItsConnection) {
  VXSimHub hub;
  RemoteSession session(hub, 1);
  session.connect();
  makeTitle(session);
  EXPECT_EQ(failureOf([&] { session.call("Root/t.Color", VX_ROA_WATCH_ATTR); }),
            "Remote exception: Attribute Color not found!");
  EXPECT_EQ(failureOf([&] { session.call("::Preview.generateID", VX_ROA_WATCH_ATTR); }),
            "Remote exception: Attribute generateID not found!");
  EXPECT_EQ(failureOf([&] { session.call("Root/t", VX_ROA_WATCH_ATTR); }),
            "Remote exception: Bad ROA request");
  EXPECT_EQ(hub.getWatches().size(), 0u);
  {
    RemoteSession watcher(hub, 2);
    watcher.connect();
    watcher.call("Root/t.Text", VX_ROA_WATCH_ATTR);
    watcher.call("Root/t.Text", VX_ROA_WATCH_ATTR);
    EXPECT_EQ(hub.getWatches().size(), 1u);
  }
  EXPECT_EQ(hub.getWatches().size(), 0u);
  // A change after the watcher is gone goes nowhere.
  session.setAttribute("Root/t", "Text", std::make_unique<AFCAttributeString>("Ann"));
  EXPECT_EQ(session.remoteGetAttr("Root/t.Text")->toString(), "Ann");
}
