#include "client/roa_resolvable.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "client/roa_exceptions.h"
#include "foundation/attribute_scalar.h"
#include "tests/client/roa_test_support.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

namespace {

// A local object with one declared attribute, one method with a result and one without.
class Lamp : public AFCObject, public VXROAResolvable {
  AFC_DECLARE_CLASS()
 public:
  std::string label = "off";
  int resets = 0;
};

const AFCClass& Lamp::staticClass() {
  static const AFCClass& record =
      (new AFCClassEx("RoaTestLamp", &AFCObject::staticClass()))
          ->attribute(
              "Label", &AFCAttributeString::staticClass(),
              [](const AFCObject& self) -> AFCResult {
                return std::make_unique<AFCAttributeString>(static_cast<const Lamp&>(self).label);
              },
              [](AFCObject& self, const AFCAttribute& value) {
                static_cast<Lamp&>(self).label = value.toString();
              })
          .method("twice", {&AFCAttributeInt32::staticClass()}, &AFCAttributeInt32::staticClass(),
                  [](AFCObject*, AFCArguments args) -> AFCResult {
                    return std::make_unique<AFCAttributeInt32>(2 * args[0]->getInt());
                  })
          .method("reset", {}, nullptr,
                  [](AFCObject* self, AFCArguments) -> AFCResult {
                    ++static_cast<Lamp*>(self)->resets;
                    return nullptr;
                  })
          .registerClass();
  return record;
}

class LocalLookups : public ::testing::Test {
 protected:
  LocalLookups() { lamp.setRoaPath("Root/lamp"); }
  Lamp lamp;
};

TEST_F(LocalLookups, GetSetAndInvokeMembersThroughReflection) {
  VXROAResolvable::localSetAttr("Root/lamp.Label", AFCAttributeString("on"));
  EXPECT_EQ(lamp.label, "on");
  EXPECT_EQ(VXROAResolvable::localGetAttr("Root/lamp.Label")->toString(), "on");
  AFCAttributeInt32 four(4);
  AFCAttribute* args[] = {&four};
  EXPECT_EQ(VXROAResolvable::localInvoke("Root/lamp.twice", args)->toString(), "8");
  EXPECT_EQ(VXROAResolvable::localInvoke("Root/lamp.reset", {}), nullptr);
  EXPECT_EQ(lamp.resets, 1);
}

TEST_F(LocalLookups, NameTheEntityThatIsMissing) {
  EXPECT_EQ(failureOf([] { VXROAResolvable::localGetAttr("Root/none.Label"); }),
            "object Root/none not found!");
  EXPECT_EQ(failureOf([] { VXROAResolvable::localGetAttr("Root/lamp.Colour"); }),
            "Attribute Colour not found!");
  EXPECT_EQ(failureOf([] { VXROAResolvable::localInvoke("Root/lamp.blink", {}); }),
            "Method blink not found!");
  EXPECT_EQ(failureOf([] { VXROAResolvable::localGetAttr("Root/lamp"); }), "Bad ROA request");
}

TEST_F(LocalLookups, AnAsyncSetThatFailsIsLoggedNotThrown) {
  CapturedErrLog log;
  VXROAResolvable::localSetAttrAsync("Root/lamp.Colour", AFCAttributeString("red"));
  VXROAResolvable::localSetAttrAsync("Root/lamp.Label", AFCAttributeString("dim"));
  EXPECT_EQ(lamp.label, "dim");
  EXPECT_EQ(log.messages(), std::vector<std::string>{"ROA async set: Attribute Colour not found!"});
}

TEST_F(LocalLookups, TheTableForgetsObjectsThatDieOrMove) {
  {
    Lamp other;
    other.setRoaPath("Root/other");
    EXPECT_EQ(&VXROAResolvable::resolve("Root/other"), &other);
  }
  EXPECT_THROW(VXROAResolvable::resolve("Root/other"), VXROAEntityNotFound);
  lamp.setRoaPath("Root/moved");
  EXPECT_THROW(VXROAResolvable::resolve("Root/lamp"), VXROAEntityNotFound);
  EXPECT_EQ(&VXROAResolvable::resolve("Root/moved"), &lamp);
}

TEST_F(LocalLookups, ServeAnswersEachKindAndTurnsFailuresIntoExceptionReplies) {
  VXROAValues label;
  label.push_back(text("lit"));
  EXPECT_EQ(
      VXROAResolvable::serve(VXROARequest("Root/lamp.Label", VX_ROA_SET_ATTR, std::move(label)))
          ->toTrace(),
      "ROA-REPLY[VOID");
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("Root/lamp.Label", VX_ROA_GET_ATTR))->toTrace(),
            "ROA-REPLY[VALUE,lit");
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("Root/lamp.reset", VX_ROA_INVOKE))->toTrace(),
            "ROA-REPLY[VOID");
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("Root/lamp", VX_ROA_ENUM_PROPS))->toTrace(),
            "ROA-REPLY[PROPS,RoaTestLamp,Label");
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("Root/lamp.Label", VX_ROA_SET_ATTR))->toTrace(),
            "ROA-REPLY[EXCEPTION,Bad ROA request");
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("Root/lamp", VX_ROA_FEATURES))->toTrace(),
            "ROA-REPLY[EXCEPTION,Bad ROA request");
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("x.y", VX_ROA_NULL_ASYNC)), nullptr);
}

TEST_F(LocalLookups, ServeSetsAsynchronouslyWithoutAReply) {
  CapturedErrLog log;
  VXROAValues value;
  value.push_back(text("async"));
  EXPECT_EQ(VXROAResolvable::serve(
                VXROARequest("Root/lamp.Label", VX_ROA_SET_ATTR_ASYNC, std::move(value))),
            nullptr);
  EXPECT_EQ(VXROAResolvable::serve(VXROARequest("Root/lamp.Label", VX_ROA_SET_ATTR_ASYNC)),
            nullptr);
  EXPECT_EQ(lamp.label, "async");
  EXPECT_EQ(log.messages(), std::vector<std::string>{"ROA async set: Bad ROA request"});
}

}  // namespace
