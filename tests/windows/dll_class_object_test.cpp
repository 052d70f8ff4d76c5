// The DLL's class-object entry points and its pin.
#include <gtest/gtest.h>

#include "tests/windows/vxbr5_module.h"
#include "vxbr5.h"

namespace {
using GetClassObject = HRESULT STDAPICALLTYPE(REFCLSID, REFIID, LPVOID*);
using CanUnloadNow = HRESULT STDAPICALLTYPE();

TEST(DllClassObject, HasNoClassObjectForAnUnknownOrHiddenClass) {
  const auto get = vxbr5().entry<GetClassObject>("DllGetClassObject");
  for (const CLSID* clsid : {&CLSID_client, &IID_IVXTitle}) {
    void* factory = &factory;
    EXPECT_EQ(get(*clsid, IID_IClassFactory, &factory), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory, nullptr);
  }
  EXPECT_EQ(get(CLSID_TitleManager, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(DllClassObject, CanUnloadWhileNothingHoldsIt) {
  EXPECT_EQ(vxbr5().entry<CanUnloadNow>("DllCanUnloadNow")(), S_OK);
}

TEST(DllClassObject, StaysLoadedWhenFreedMoreOftenThanLoaded) {
  const HMODULE again = LoadLibraryW(L"VXBr5.dll");
  ASSERT_EQ(again, vxbr5().handle);
  for (int i = 0; i < 3; ++i) FreeLibrary(again);
  EXPECT_EQ(GetModuleHandleW(L"VXBr5.dll"), vxbr5().handle);
}
}  // namespace
