// VXBr5.Animation, the channels it makes and the options objects, called by name through
// IDispatch::Invoke as a script calls them.
#include "automation/com/animation_object.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "automation/com/animation_channel_object.h"
#include "automation/com/animation_options_object.h"
#include "foundation/enum.h"
#include "tests/windows/dispatch_call.h"
#include "tests/windows/registered_module.h"

namespace {
struct Call {
  const wchar_t* member;
  WORD flags;
  std::vector<VARIANT> arguments;
  std::string outcome;
};

void expectCalls(IDispatch* object, const std::vector<Call>& calls) {
  for (const Call& call : calls) {
    EXPECT_EQ(callByName(object, call.member, call.arguments, call.flags).outcome, call.outcome)
        << std::string(call.member, call.member + wcslen(call.member));
  }
}

constexpr WORD kGet = DISPATCH_PROPERTYGET;
constexpr WORD kPut = DISPATCH_PROPERTYPUT;
constexpr WORD kCall = DISPATCH_METHOD;

class AnimationObject : public RegisteredModule {};

TEST_F(AnimationObject, HandsOutChannelsThatTakeTheirNamesAndKeyframes) {
  const CUniqueRef<IDispatch> animation = create(L"VXBr5.Animation");
  Texts t;
  DispatchCall made = callByName(animation.get(), L"createChannel");
  ASSERT_EQ(made.value.get().vt, VT_DISPATCH);
  expectCalls(
      made.value.get().pdispVal,
      {
          {L"destination", kPut, {t(L"n1:pos.x")}, "ok"},
          {L"destination", kGet, {}, "ok n1:pos.x"},
          {L"after", kPut, {t(L"OSCILLATE")}, "ok"},
          {L"after", kGet, {}, "ok OSCILLATE"},
          {L"before", kPut, {t(L"CYCLE_OFFSET")}, "ok"},
          {L"before", kGet, {}, "ok CYCLE_OFFSET"},
          {L"before", kPut, {t(L"INHERIT")}, AFCEnumNameNotFoundException("INHERIT").toString()},
          {L"addKeyframe",
           kCall,
           {realArgument(VT_R4, 1.5), realArgument(VT_R4, 2), t(L"LINEAR"), t(L"STEP")},
           "ok"},
          {L"addKeyframe",
           kCall,
           {realArgument(VT_R4, 2), realArgument(VT_R4, 2), t(L"linear"), t(L"STEP")},
           AFCEnumNameNotFoundException("linear").toString()},
          {L"addKeyframeWithTangents",
           kCall,
           {realArgument(VT_R4, 3), realArgument(VT_R4, 4), t(L"LINEAR"), t(L"LINEAR"),
            realArgument(VT_R4, 1), realArgument(VT_R4, 2), realArgument(VT_R4, 3),
            realArgument(VT_R4, 4)},
           "ok"},
      });

  hyper native = 0;
  VARIANT out = numberArgument(VT_BYREF | VT_I8, 0);
  out.pllVal = &native;
  EXPECT_EQ(callByName(animation.get(), L"getNative", {out}).outcome, "ok");
  const VXAnimation& core = *reinterpret_cast<CAnimation*>(native)->getNative();
  ASSERT_EQ(core.getChannelCount(), 1);
  EXPECT_EQ(core.getChannel(0).getKeyframes().size(), 2u);
  EXPECT_EQ(core.getChannel(0).getDestination(), "n1:pos.x");
}

TEST_F(AnimationObject, AChannelWithoutNativeChannelAnswersEveryMemberWithInvalidArgument) {
  IDispatch* made = nullptr;
  ASSERT_EQ(makeObject<CAnimationChannelObject>(IID_IDispatch, reinterpret_cast<void**>(&made)),
            S_OK);
  const CUniqueRef<IDispatch> channel(made);
  Texts t;
  const VARIANT linear = t(L"LINEAR");
  const std::string invalid = "fails 0x80070057";
  const VARIANT f = realArgument(VT_R4, 1);
  expectCalls(channel.get(),
              {
                  {L"destination", kPut, {linear}, invalid},
                  {L"destination", kGet, {}, invalid},
                  {L"after", kPut, {linear}, invalid},
                  {L"after", kGet, {}, invalid},
                  {L"before", kPut, {linear}, invalid},
                  {L"before", kGet, {}, invalid},
                  {L"addKeyframe", kCall, {f, f, linear, linear}, invalid},
                  {L"addKeyframeWithTangents", kCall, {f, f, linear, linear, f, f, f, f}, invalid},
              });
}

TEST(AnimationOptionsObject, StartsWithTheDefaultsAndKeepsWhatItIsGiven) {
  vxbr5();
  IVXAnimationOptions* made = nullptr;
  ASSERT_EQ(makeAnimationOptionsObject(&made), S_OK);
  const CUniqueRef<IDispatch> options(made);
  const std::string end = "ok " + textOf(realArgument(VT_R4, CAnimationOptions().getEnd()));
  Texts t;
  expectCalls(options.get(), {
                                 {L"offset", kGet, {}, "ok 0"},
                                 {L"skip", kGet, {}, "ok 0"},
                                 {L"end", kGet, {}, end},
                                 {L"playMode", kGet, {}, "ok FORWARD"},
                                 {L"enableFinish", kGet, {}, "ok 1"},
                                 {L"name", kGet, {}, "ok "},
                                 {L"watchID", kGet, {}, "ok 0"},
                                 {L"offset", kPut, {realArgument(VT_R4, 0.5)}, "ok"},
                                 {L"skip", kPut, {realArgument(VT_R4, 0.25)}, "ok"},
                                 {L"end", kPut, {realArgument(VT_R4, 2)}, "ok"},
                                 {L"playMode", kPut, {t(L"LAST")}, "ok"},
                                 {L"enableFinish", kPut, {numberArgument(VT_I4, 7)}, "ok"},
                                 {L"name", kPut, {t(L"in")}, "ok"},
                                 {L"watchID", kPut, {numberArgument(VT_I4, 9)}, "ok"},
                                 {L"offset", kGet, {}, "ok 0.5"},
                                 {L"skip", kGet, {}, "ok 0.25"},
                                 {L"end", kGet, {}, "ok 2"},
                                 {L"playMode", kGet, {}, "ok LAST"},
                                 {L"enableFinish", kGet, {}, "ok 1"},
                                 {L"name", kGet, {}, "ok in"},
                                 {L"watchID", kGet, {}, "ok 9"},
                             });
}
}  // namespace
