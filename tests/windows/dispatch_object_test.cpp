// CDispatchObject: IDispatch through the type library onto the C++ vtable, the interface list,
// the reference count and the module lock.
#include "automation/com/dispatch_object.h"

#include <gtest/gtest.h>

#include "automation/com/com_handles.h"
#include "tests/windows/test_objects.h"

namespace {
struct Made {
  CUniqueRef<IDispatch> object;
  TestProcessor* processor;
};

Made makeProcessor() {
  vxbr5();
  auto* processor = new TestProcessor;
  return {CUniqueRef<IDispatch>(processor), processor};
}

DISPID idOf(IDispatch* object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id), S_OK);
  return id;
}

HRESULT invoke(IDispatch* object, DISPID id, VARIANT* result, EXCEPINFO* exception = nullptr) {
  DISPPARAMS none{};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, result,
                        exception, nullptr);
}

TEST(DispatchObject, CallsMembersByNameThroughTheTypeLibrary) {
  const Made made = makeProcessor();
  IDispatch* object = made.object.get();
  EXPECT_EQ(idOf(object, L"waitEvent"), 0x60020000);
  EXPECT_EQ(idOf(object, L"close"), 0x60020002);
  CUniqueVariant result;
  ASSERT_EQ(invoke(object, idOf(object, L"waitEvent"), result.put()), S_OK);
  EXPECT_EQ(result.get().vt, VT_BOOL);
  EXPECT_EQ(result.get().boolVal, VARIANT_TRUE);
  ASSERT_EQ(invoke(object, idOf(object, L"close"), nullptr), S_OK);
  EXPECT_EQ(made.processor->closed, 1);
}

TEST(DispatchObject, GivesAFailingMembersTextToTheCaller) {
  const Made made = makeProcessor();
  EXCEPINFO exception{};
  EXPECT_EQ(invoke(made.object.get(), idOf(made.object.get(), L"process"), nullptr, &exception),
            DISP_E_EXCEPTION);
  const CUniqueBstr description(exception.bstrDescription), source(exception.bstrSource),
      help(exception.bstrHelpFile);
  EXPECT_EQ(stringFromBstr(exception.bstrDescription),
            AFCIllegalArgumentException("Empty anim name").toString());
}

TEST(DispatchObject, RefusesAnyInterfaceIdButNull) {
  const Made made = makeProcessor();
  DISPPARAMS none{};
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(L"close")};
  EXPECT_EQ(made.object.get()->GetIDsOfNames(IID_IVXAsyncProcessor, names, 1, 0, &id),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(made.object.get()->Invoke(0x60020002, IID_IVXAsyncProcessor, 0, DISPATCH_METHOD, &none,
                                      nullptr, nullptr, nullptr),
            DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(made.processor->closed, 0);
}

TEST(DispatchObject, AnswersItsOwnInterfacesOnly) {
  const Made made = makeProcessor();
  struct Case {
    const IID* iid;
    HRESULT expected;
  };
  for (const Case& c :
       {Case{&IID_IUnknown, S_OK}, Case{&IID_IDispatch, S_OK}, Case{&IID_IVXAsyncProcessor, S_OK},
        Case{&IID_IVXTitle, E_NOINTERFACE}, Case{&IID_IConnectionPointContainer, E_NOINTERFACE}}) {
    void* object = nullptr;
    EXPECT_EQ(made.object.get()->QueryInterface(*c.iid, &object), c.expected);
    if (object != nullptr) static_cast<IUnknown*>(object)->Release();
  }
  ITypeInfo* info = nullptr;
  EXPECT_EQ(made.object.get()->GetTypeInfo(1, 0, &info), DISP_E_BADINDEX);
  ASSERT_EQ(made.object.get()->GetTypeInfo(0, 0, &info), S_OK);
  const CUniqueRef<ITypeInfo> owned(info);
  TYPEATTR* attributes = nullptr;
  info->GetTypeAttr(&attributes);
  EXPECT_TRUE(IsEqualGUID(attributes->guid, IID_IVXAsyncProcessor));
  info->ReleaseTypeAttr(attributes);
}

TEST(DispatchObject, HoldsTheModuleWhileItLives) {
  const long before = CModule::lockCount();
  {
    const Made made = makeProcessor();
    EXPECT_EQ(CModule::lockCount(), before + 1);
    EXPECT_EQ(CModule::canUnloadNow(), S_FALSE);
  }
  EXPECT_EQ(CModule::lockCount(), before);
}
}  // namespace
