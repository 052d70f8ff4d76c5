// VXBr5.CommandList as a script meets it: created by its ProgID, every member called by name
// through IDispatch::Invoke with VARIANT arguments, each recording what the core list records for
// the same call, or failing with the system's text and recording nothing.
#include "automation/com/command_list_object.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "automation/com/animation_options_object.h"
#include "commands/node_commands.h"
#include "foundation/attribute_vector.h"
#include "tests/support/failure_text.h"
#include "tests/windows/dispatch_call.h"
#include "tests/windows/registered_module.h"
#include "tests/windows/script_array.h"

namespace {
std::vector<std::string> recorded(const CCommandList& list) {
  std::vector<std::string> texts;
  list.visit([&](const VXCommand& command) { texts.push_back(command.toString()); });
  return texts;
}

// The core object behind one of this module's animation or options objects.
template <class Core, class Interface>
Core* nativeOf(IDispatch* object) {
  Interface* typed = nullptr;
  object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&typed));
  const CUniqueRef<Interface> owned(typed);
  hyper native = 0;
  typed->getNative(&native);
  return reinterpret_cast<Core*>(native);
}

// What the core gets for those objects.
class NativeObject final : public ScriptObject {
 public:
  NativeObject(CAnimation* animation, CAnimationOptions* options)
      : animation_(animation), options_(options) {}
  Lookup getMember(std::string_view, ScriptValue&) override { return Lookup::NoSuchMember; }
  CAnimation* asAnimation() override { return animation_; }
  CAnimationOptions* asAnimationOptions() override { return options_; }

 private:
  CAnimation* animation_;
  CAnimationOptions* options_;
};

class CommandListObject : public RegisteredModule {};

TEST_F(CommandListObject, RecordsEachMemberAsTheCoreDoesOrFailsWithItsText) {
  Texts t;
  const CUniqueRef<IDispatch> animation = create(L"VXBr5.Animation");
  const CUniqueRef<IDispatch> foreign = create(L"VXBr5.CommandList");
  IVXAnimationOptions* made = nullptr;
  ASSERT_EQ(makeAnimationOptionsObject(&made), S_OK);
  const CUniqueRef<IDispatch> options(made);
  const auto animationValue = ScriptValue::object(
      std::make_shared<NativeObject>(nativeOf<CAnimation, IVXAnimation>(animation.get()), nullptr));
  CAnimationOptions* coreOptions = nativeOf<CAnimationOptions, IVXAnimationOptions>(options.get());
  coreOptions->setPlayMode("LAST");  // unlike the defaults
  const auto optionsValue =
      ScriptValue::object(std::make_shared<NativeObject>(nullptr, coreOptions));
  const CUniqueVariant animationArgument = objectArgument(animation.get()),
                       optionsArgument = objectArgument(options.get()),
                       foreignArgument = objectArgument(foreign.get());
  const std::string bad = "Illegal Argument Exception, ";
  const ScriptValue in = ScriptValue::text(u"in");

  struct Row {
    const wchar_t* member;
    std::vector<VARIANT> arguments;
    std::string outcome;
    std::function<void(CCommandList&)> same;  // nothing recorded when empty
  };
  const Row rows[] = {
      {L"createNode", {t(L"Group"), t(L"")}, bad + "Empty new name", {}},
      {L"createNode",
       {t(L"Group"), t(L"a/n")},
       "ok",
       [](auto& l) { l.createNode("Group", "a/n"); }},
      {L"createEffect",
       {t(L"Blur"), t(L"a/fx")},
       "ok",
       [](auto& l) { l.createEffect("Blur", "a/fx"); }},
      {L"copyNode",
       {t(L"a/src"), t(L"a/copy")},
       "ok",
       [](auto& l) { l.copyNode("a/src", "a/copy"); }},
      {L"renameNode", {t(L"a/b"), t(L"c")}, "ok", [](auto& l) { l.renameNode("a/b", "c"); }},
      {L"deleteNode", {t(L"")}, bad + "Empty node name", {}},
      {L"deleteNode", {t(L"a/b")}, "ok", [](auto& l) { l.deleteNode("a/b"); }},
      {L"deleteEffect", {t(L"a/fx")}, "ok", [](auto& l) { l.deleteEffect("a/fx"); }},
      {L"loadScene",
       {t(L"Lower"), t(L"slot/lt")},
       "ok",
       [](auto& l) { l.loadScene("Lower", "slot/lt"); }},
      {L"doAction", {t(L"go")}, "ok", [](auto& l) { l.doAction("go"); }},
      {L"stopAnimation", {t(L"in"), t(L"a")}, "ok", [](auto& l) { l.stopAnimation("in", "a"); }},
      {L"preload", {t(L"")}, "ok", [](auto& l) { l.preload(""); }},
      {L"beginSequencePreview",
       {numberArgument(VT_I4, 1)},
       "ok",
       [](auto& l) { l.beginSequencePreview(1); }},
      {L"endSequencePreview",
       {numberArgument(VT_I4, 2)},
       "ok",
       [](auto& l) { l.endSequencePreview(2); }},
      {L"captureStillPreview",
       {numberArgument(VT_I4, 3)},
       "ok",
       [](auto& l) { l.captureStillPreview(3); }},
      {L"setZoneState", {numberArgument(VT_I4, 5)}, "ok", [](auto& l) { l.setZoneState(5); }},
      {L"beginTransaction",
       {t(L"T")},
       "ok",
       [](auto& l) { l.beginTransaction(ScriptValue::text(u"T")); }},
      {L"beginTransaction", {}, "ok", [](auto& l) { l.beginTransaction({}); }},
      {L"rollTransaction",
       {t(L"R")},
       "ok",
       [](auto& l) { l.rollTransaction(ScriptValue::text(u"R")); }},
      {L"endTransaction", {}, "ok", [](auto& l) { l.endTransaction(); }},
      {L"animate", {t(L""), t(L"a")}, bad + "Empty anim name", {}},
      {L"animate", {t(L"in"), t(L"a")}, "ok", [&](auto& l) { l.animate(in, "a", {}); }},
      {L"animate",
       {t(L"in"), t(L"a"), numberArgument(VT_I4, 3)},
       "ok",
       [&](auto& l) { l.animate(in, "a", {}); }},
      {L"animate",
       {t(L"in"), t(L"a"), optionsArgument.get()},
       "ok",
       [&](auto& l) { l.animate(in, "a", optionsValue); }},
      {L"animate",
       {t(L"in"), t(L"a"), foreignArgument.get()},
       bad + "Object is not anim options",
       {}},
      {L"animate",
       {animationArgument.get(), t(L"b")},
       "ok",
       [&](auto& l) { l.animate(animationValue, "b", {}); }},
      {L"animate", {optionsArgument.get(), t(L"b")}, "fails 0x80004002", {}},
      {L"animate", {numberArgument(VT_I4, 7), t(L"b")}, "ok", {}},
  };
  for (const Row& row : rows) {
    const CUniqueRef<IDispatch> list = create(L"VXBr5.CommandList");
    const std::string member(row.member, row.member + wcslen(row.member));
    EXPECT_EQ(callByName(list.get(), row.member, row.arguments).outcome, row.outcome) << member;
    CCommandList expected;
    if (row.same) row.same(expected);
    EXPECT_EQ(recorded(commandListOf(list.get())), recorded(expected)) << member;
  }
}

TEST_F(CommandListObject, SetTakesEachValueKindAsTheCoreConvertsIt) {
  Texts t;
  VARIANT decimal = realArgument(VT_R8, 0);
  VarDecFromR8(2.5, &decimal.decVal);
  decimal.vt = VT_DECIMAL;
  VARIANT inner = numberArgument(VT_I4, 1);
  VARIANT byReference = numberArgument(VT_BYREF | VT_VARIANT, 0);
  byReference.pvarVal = &inner;
  ScriptArray numbers({realArgument(VT_R8, 1), numberArgument(VT_I4, 2), t(L"2.5")});
  ScriptArray noLength({}, false);
  const CUniqueVariant numbersArgument = objectArgument(&numbers),
                       noLengthArgument = objectArgument(&noLength);
  const std::string unsupported = "Illegal Argument Exception, unsupported value type";

  const std::pair<VARIANT, std::function<ScriptValue()>> rows[] = {
      {numberArgument(VT_I2, -5), [] { return ScriptValue::integer(-5); }},
      {numberArgument(VT_UI4, 0xFFFFFFFF), [] { return ScriptValue::integer(INT32_MAX); }},
      {numberArgument(VT_I8, -(1LL << 40)), [] { return ScriptValue::integer(INT32_MIN); }},
      {realArgument(VT_R4, 1.5), [] { return ScriptValue::float32(1.5f); }},
      {numberArgument(VT_CY, 15000), [] { return ScriptValue::float64(1.5); }},
      {decimal, [] { return ScriptValue::float64(2.5); }},
      {numberArgument(VT_BOOL, VARIANT_TRUE), [] { return ScriptValue::boolean(true); }},
      {t(L"abc"), [] { return ScriptValue::text(u"abc"); }},
      {numberArgument(VT_EMPTY, 0), [] { return ScriptValue(); }},
      {numberArgument(VT_NULL, 0), [] { return ScriptValue::null(); }},
  };
  for (const auto& [value, same] : rows) {
    const CUniqueRef<IDispatch> list = create(L"VXBr5.CommandList");
    EXPECT_EQ(callByName(list.get(), L"set", {t(L"n"), t(L"x"), value}).outcome, "ok");
    CCommandList expected;
    expected.set("n", "x", same());
    EXPECT_EQ(recorded(commandListOf(list.get())), recorded(expected)) << value.vt;
  }

  const CUniqueRef<IDispatch> list = create(L"VXBr5.CommandList");
  const std::pair<VARIANT, std::string> failures[] = {
      {realArgument(VT_DATE, 45000), unsupported},
      {byReference, unsupported},
      {missingArgument(), unsupported},
      {noLengthArgument.get(), "Illegal Argument Exception, array does not have 'length' property"},
  };
  for (const auto& [value, text] : failures) {
    EXPECT_EQ(callByName(list.get(), L"set", {t(L"n"), t(L"x"), value}).outcome, text) << value.vt;
  }
  EXPECT_EQ(callByName(list.get(), L"set", {t(L"n"), t(L"pos"), numbersArgument.get()}).outcome,
            "ok");
  CCommandList expected;
  expected.append(std::make_unique<VXSetAttributeCommand>(
      "n", "pos", std::make_unique<AFCAttributeVec3f>(AFCAttributeVec3f::Value{1, 2, 2.5f})));
  EXPECT_EQ(recorded(commandListOf(list.get())), recorded(expected));
}

TEST_F(CommandListObject, HandsOutANewCallbackIdEachTime) {
  const CUniqueRef<IDispatch> list = create(L"VXBr5.CommandList");
  const DispatchCall first = callByName(list.get(), L"callback");
  const DispatchCall second = callByName(list.get(), L"callback");
  ASSERT_EQ(first.value.get().vt, VT_I4);
  EXPECT_EQ(second.value.get().lVal, first.value.get().lVal + 1);
  EXPECT_EQ(commandListOf(list.get()).size(), 2u);
}

TEST_F(CommandListObject, GivesTheCoreListOnlyOfItsOwnObjects) {
  const CUniqueRef<IDispatch> animation = create(L"VXBr5.Animation");
  for (IUnknown* foreign :
       {static_cast<IUnknown*>(animation.get()), static_cast<IUnknown*>(nullptr)}) {
    EXPECT_EQ(failureOf<AFCNullPointerException>([&] { commandListOf(foreign); }),
              AFCNullPointerException("CCommandList").toString());
  }
}
}  // namespace
