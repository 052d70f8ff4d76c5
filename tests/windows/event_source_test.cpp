// CEventSource: advising, firing IVXCmdEvents to the sinks in order with typed arguments, and
// the container's one connection point; a script function called as a handler.
#include "automation/com/event_source.h"

#include <gtest/gtest.h>
#include <olectl.h>

#include "automation/com/dispatch_handler.h"

#include "tests/windows/test_objects.h"

namespace {
// A TestEventProcessor with its IVXCmdEvents connection point.
struct Source {
  Source() {
    IConnectionPoint* found = nullptr;
    EXPECT_EQ(processor->FindConnectionPoint(DIID_IVXCmdEvents, &found), S_OK);
    point = CUniqueRef<IConnectionPoint>(found);
  }

  const Vxbr5Module& module = vxbr5();
  TestEventProcessor* processor = new TestEventProcessor;
  CUniqueRef<IUnknown> owned{static_cast<IVXAsyncProcessor*>(processor)};
  CUniqueRef<IConnectionPoint> point;
};

TEST(EventSource, FiresToEverySinkInAdviseOrderWithTypedArguments) {
  RecordingSink first, second;
  {
    const Source source;
    DWORD firstCookie = 0, secondCookie = 0;
    ASSERT_EQ(source.point.get()->Advise(&first, &firstCookie), S_OK);
    ASSERT_EQ(source.point.get()->Advise(&second, &secondCookie), S_OK);
    EXPECT_NE(firstCookie, secondCookie);

    source.processor->fire(4, {u"Zone A", 1L});
    ASSERT_EQ(source.point.get()->Unadvise(firstCookie), S_OK);
    source.processor->fire(5, {u"hello"});
    EXPECT_EQ(source.point.get()->Unadvise(firstCookie), CONNECT_E_NOCONNECTION);
  }
  EXPECT_EQ(first.calls, (std::vector<std::string>{"4 BSTR:Zone A I4:1"}));
  EXPECT_EQ(second.calls, (std::vector<std::string>{"4 BSTR:Zone A I4:1", "5 BSTR:hello"}));
  EXPECT_EQ(first.references, 1u);
  EXPECT_EQ(second.references, 1u);
}

TEST(EventSource, LetsASinkLeaveWhileItIsCalled) {
  RecordingSink leaving, staying;
  const Source source;
  DWORD cookie = 0, other = 0;
  source.point.get()->Advise(&leaving, &cookie);
  source.point.get()->Advise(&staying, &other);
  leaving.onCall = [&] { source.point.get()->Unadvise(cookie); };
  source.processor->fire(2, {});
  source.processor->fire(2, {});
  EXPECT_EQ(leaving.calls.size(), 1u);
  EXPECT_EQ(staying.calls.size(), 2u);
}

TEST(EventSource, RefusesSinksThatAreNotCommandEvents) {
  RecordingSink stranger(false);
  DWORD cookie = 7;
  EXPECT_EQ(Source().point.get()->Advise(&stranger, &cookie), CONNECT_E_CANNOTCONNECT);
  EXPECT_EQ(cookie, 0u);
  EXPECT_EQ(stranger.references, 1u);
}

TEST(EventSource, ContainerHasExactlyTheCommandEventsPoint) {
  const Source source;
  IConnectionPoint* point = nullptr;
  EXPECT_EQ(source.processor->FindConnectionPoint(IID_IVXTitle, &point), CONNECT_E_NOCONNECTION);
  IID iid{};
  source.point.get()->GetConnectionInterface(&iid);
  EXPECT_TRUE(IsEqualIID(iid, DIID_IVXCmdEvents));
  IConnectionPointContainer* container = nullptr;
  source.point.get()->GetConnectionPointContainer(&container);
  const CUniqueRef<IConnectionPointContainer> back(container);
  EXPECT_EQ(static_cast<IConnectionPointContainer*>(source.processor), container);

  IEnumConnectionPoints* made = nullptr;
  ASSERT_EQ(source.processor->EnumConnectionPoints(&made), S_OK);
  const CUniqueRef<IEnumConnectionPoints> points(made);
  ULONG fetched = 0;
  ASSERT_EQ(points.get()->Next(1, &point, &fetched), S_OK);
  EXPECT_EQ(point, source.point.get());
  point->Release();
  EXPECT_EQ(points.get()->Next(1, &point, &fetched), S_FALSE);
  EXPECT_EQ(fetched, 0u);
  points.get()->Reset();
  EXPECT_EQ(points.get()->Skip(2), S_FALSE);
}
TEST(ScriptFunction, IsCalledAsItsDefaultMemberWithAnIdAsIntAndATextAsBstr) {
  RecordingSink function(false);
  {
    const std::shared_ptr<ScriptHandler> handler = handlerOf(&function);
    const ScriptValue arguments[] = {ScriptValue::integer(7), ScriptValue::text(u"cue")};
    EXPECT_TRUE(handler->invoke(arguments));
  }
  EXPECT_EQ(function.calls, (std::vector<std::string>{"0 INT:7 BSTR:cue"}));
  EXPECT_EQ(function.references, 1u);
  EXPECT_EQ(handlerOf(nullptr), nullptr);
}
}  // namespace
