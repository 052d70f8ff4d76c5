// VXBr5.TitleManager as a script meets it, against the simulator on loopback: created by its
// ProgID, its members, its titles', its client's and the async processor's called by name through
// IDispatch::Invoke, the title objects' identity, the error objects and the connection point.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <gtest/gtest.h>
#include <ocidl.h>

#include <string>
#include <vector>

#include "foundation/exception.h"
#include "tests/vxsim/running_server.h"
#include "tests/windows/dispatch_call.h"
#include "tests/windows/registered_module.h"
#include "tests/windows/test_objects.h"
#include "vxbr5.h"

namespace {
struct Row {
  const wchar_t* member;
  std::vector<VARIANT> arguments;
  std::string outcome;
};

void expectRows(IDispatch* object, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(callByName(object, row.member, row.arguments).outcome, row.outcome)
        << std::string(row.member, row.member + wcslen(row.member));
  }
}

CUniqueRef<IDispatch> objectOf(DispatchCall call) {
  EXPECT_EQ(call.value.get().vt, VT_DISPATCH) << call.outcome;
  return addRef(call.value.get().vt == VT_DISPATCH ? call.value.get().pdispVal : nullptr);
}

CUniqueRef<IUnknown> identityOf(IDispatch* object) {
  IUnknown* unknown = nullptr;
  object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&unknown));
  return CUniqueRef<IUnknown>(unknown);
}

// The IVXCmdEvents connection point of an object; null (and a failed expectation) without one.
CUniqueRef<IConnectionPoint> commandEventsOf(IDispatch* source) {
  IConnectionPointContainer* container = nullptr;
  EXPECT_EQ(
      source->QueryInterface(IID_IConnectionPointContainer, reinterpret_cast<void**>(&container)),
      S_OK);
  const CUniqueRef<IConnectionPointContainer> ownedContainer(container);
  IConnectionPoint* point = nullptr;
  if (container != nullptr) {
    EXPECT_EQ(container->FindConnectionPoint(DIID_IVXCmdEvents, &point), S_OK);
  }
  return CUniqueRef<IConnectionPoint>(point);
}

class TitleManagerObject : public RegisteredModule {
 protected:
  RunningServer server_;
  CUniqueRef<IDispatch> manager_ = create(L"VXBr5.TitleManager");
  Texts t_;

  // The manager's client, pointed at the simulator.
  CUniqueRef<IDispatch> client() {
    CUniqueRef<IDispatch> client = objectOf(callByName(manager_.get(), L"getClient"));
    const std::string text = server_.address();
    const std::wstring address(text.begin(), text.end());
    EXPECT_EQ(callByName(client.get(), L"setServerAddress", {t_(address.c_str())}).outcome, "ok");
    return client;
  }
};

TEST_F(TitleManagerObject, IsMadeByItsProgIdWhileClientAndTitleAreNotCreatable) {
  IVXTitleManager* typed = nullptr;
  EXPECT_EQ(manager_.get()->QueryInterface(IID_IVXTitleManager, reinterpret_cast<void**>(&typed)),
            S_OK);
  const CUniqueRef<IVXTitleManager> owned(typed);
  IUnknown* made = nullptr;
  EXPECT_EQ(CoCreateInstance(CLSID_client, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                             reinterpret_cast<void**>(&made)),
            REGDB_E_CLASSNOTREG);
  EXPECT_EQ(made, nullptr);
}

TEST_F(TitleManagerObject, ManagerMembersWithoutATitle) {
  const std::string version = std::to_string(VX_VERSION_MAJOR) + "." +
                              std::to_string(VX_VERSION_MINOR) + "." +
                              std::to_string(VX_VERSION_PATCH) + " x64";
  const CUniqueVariant handler = objectArgument(manager_.get());
  VARIANT none;
  VariantInit(&none);
  none.vt = VT_DISPATCH;
  none.pdispVal = nullptr;
  expectRows(manager_.get(), {
                                 {L"getBridgeVersion", {}, "ok " + version},
                                 {L"setProject", {t_(L"News")}, "ok"},
                                 {L"findTitleByZone", {t_(L"default")}, "ok vt 9"},
                                 {L"findTitleByName", {t_(L"any")}, "ok vt 9"},
                                 {L"addCommandCallbackListener", {handler.get()}, "ok"},
                             });
  // VBScript's "Set tm.onCommandCallback = GetRef(...)" assigns by reference; a put of null
  // then clears the handlers again (the manager as its own handler would hold itself).
  EXPECT_EQ(
      callByName(manager_.get(), L"onCommandCallback", {handler.get()}, DISPATCH_PROPERTYPUTREF)
          .outcome,
      "ok");
  EXPECT_EQ(
      callByName(manager_.get(), L"setProject", {t_(L"News")}, DISPATCH_PROPERTYPUTREF).outcome,
      "fails 0x80020003");
  EXPECT_EQ(callByName(manager_.get(), L"onCommandCallback", {none}, DISPATCH_PROPERTYPUT).outcome,
            "ok");
  for (const wchar_t* factory :
       {L"createAnimation", L"createAnimationOptions", L"createCommandList", L"getClient"}) {
    EXPECT_NE(objectOf(callByName(manager_.get(), factory)).get(), nullptr);
  }
}

TEST_F(TitleManagerObject, TitleMembersAndIdentity) {
  const CUniqueRef<IDispatch> client = this->client();
  const CUniqueRef<IDispatch> title = objectOf(callByName(manager_.get(), L"createTitle"));
  IVXTitle* typed = nullptr;
  ASSERT_EQ(title.get()->QueryInterface(IID_IVXTitle, reinterpret_cast<void**>(&typed)), S_OK);
  const CUniqueRef<IVXTitle> owned(typed);
  const CUniqueBstr project = bstrFromString("News");
  EXPECT_EQ(typed->setProject(project.get()), S_FALSE);  // not set up yet

  const std::string noListText = AFCNullPointerException("CCommandList").what();
  VARIANT noList;
  VariantInit(&noList);
  noList.vt = VT_DISPATCH;
  noList.pdispVal = nullptr;
  expectRows(title.get(), {
                              {L"getZone", {}, "ok default"},
                              {L"setTitleName", {t_(L"lower")}, "ok"},
                              {L"createNode", {t_(L"Text"), t_(L"name")}, "ok"},
                              {L"set", {t_(L"name"), t_(L"text"), t_(L"Anna")}, "ok"},
                              {L"transactionBegin", {missingArgument()}, "ok"},
                              {L"transactionEnd", {}, "ok"},
                              {L"execute", {noList, missingArgument()}, noListText},
                          });
  EXPECT_EQ(typed->execute(nullptr, missingArgument()), E_FAIL);
  EXPECT_EQ(errorObject(IID_IVXTitle), "id " + noListText);

  const CUniqueRef<IDispatch> byZone =
      objectOf(callByName(manager_.get(), L"findTitleByZone", {t_(L"default")}));
  const CUniqueRef<IDispatch> byName =
      objectOf(callByName(manager_.get(), L"findTitleByName", {t_(L"lower")}));
  EXPECT_EQ(identityOf(byZone.get()).get(), identityOf(title.get()).get());
  EXPECT_EQ(identityOf(byName.get()).get(), identityOf(title.get()).get());
  EXPECT_EQ(callByName(title.get(), L"destroy").outcome, "ok");
  EXPECT_EQ(callByName(manager_.get(), L"findTitleByName", {t_(L"lower")}).outcome, "ok vt 9");
}

TEST_F(TitleManagerObject, ClientAndAsyncProcessorMembers) {
  const CUniqueRef<IDispatch> client = this->client();
  const CUniqueRef<IDispatch> processor =
      objectOf(callByName(client.get(), L"createAsyncProcessor"));
  expectRows(processor.get(), {{L"close", {}, "ok"}, {L"waitEvent", {}, "ok 0"}});
  expectRows(client.get(), {
                               {L"getServerAddress", {}, "ok " + server_.address()},
                               {L"connect", {}, "ok"},
                               {L"previewGenerateID", {}, "ok 1"},  // a remote reply read
                               {L"getZoneState", {t_(L"News")}, "ok 0"},
                               {L"setZoneState", {t_(L"News"), numberArgument(VT_I4, 1)}, "ok"},
                               {L"getZoneState", {t_(L"News")}, "ok 1"},
                               {L"disconnect", {}, "ok"},
                           });
}

TEST_F(TitleManagerObject, ConnectionPointsAdviseAndUnadviseASink) {
  const CUniqueRef<IDispatch> client = this->client();
  for (IDispatch* source : {manager_.get(), client.get()}) {
    const CUniqueRef<IConnectionPoint> ownedPoint = commandEventsOf(source);
    IConnectionPoint* point = ownedPoint.get();
    ASSERT_NE(point, nullptr);
    RecordingSink sink;
    DWORD cookie = 0;
    ASSERT_EQ(point->Advise(&sink, &cookie), S_OK);
    EXPECT_GT(sink.references.load(), 1u);
    EXPECT_EQ(point->Unadvise(cookie), S_OK);
    EXPECT_EQ(sink.references.load(), 1u);
  }
}

// Without an async processor the session's events come through the hidden window of the
// thread's default registry: a thread that pumps its messages gets handler calls and events.
TEST_F(TitleManagerObject, EventsComeThroughTheWindowMessagesOfTheScriptThread) {
  const CUniqueRef<IDispatch> client = this->client();
  RecordingSink managerSink, clientSink, handler(false);
  std::vector<std::pair<CUniqueRef<IConnectionPoint>, DWORD>> connections;
  const auto advise = [&](IDispatch* source, RecordingSink& sink) {
    CUniqueRef<IConnectionPoint> point = commandEventsOf(source);
    DWORD cookie = 0;
    if (point.get() != nullptr) {
      EXPECT_EQ(point.get()->Advise(&sink, &cookie), S_OK);
    }
    connections.emplace_back(std::move(point), cookie);
  };
  advise(manager_.get(), managerSink);
  advise(client.get(), clientSink);
  const CUniqueVariant function = objectArgument(&handler);
  EXPECT_EQ(callByName(manager_.get(), L"addCommandCallbackListener", {function.get()}).outcome,
            "ok");
  const CUniqueRef<IDispatch> title = objectOf(callByName(manager_.get(), L"createTitle"));
  const std::string id = callByName(title.get(), L"commandCallback").outcome.substr(3);
  server_.console("message on air");

  const DWORD deadline = GetTickCount() + 5000;
  while ((managerSink.calls.empty() || clientSink.calls.empty()) && GetTickCount() < deadline) {
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 50, QS_ALLINPUT);
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  EXPECT_EQ(handler.calls, (std::vector<std::string>{"0 INT:" + id}));
  EXPECT_EQ(managerSink.calls, (std::vector<std::string>{"1 I4:" + id}));
  EXPECT_EQ(clientSink.calls, (std::vector<std::string>{"5 BSTR:on air"}));
  for (auto& [point, cookie] : connections) {
    if (point.get() != nullptr) point.get()->Unadvise(cookie);
  }
  VARIANT none;  // the handler goes before this test's objects do
  VariantInit(&none);
  none.vt = VT_DISPATCH;
  none.pdispVal = nullptr;
  callByName(manager_.get(), L"onCommandCallback", {none}, DISPATCH_PROPERTYPUT);
}
}  // namespace
