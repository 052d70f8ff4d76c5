#pragma once
// A test suite that finds VXBr5.DLL registered, as a script does: the module is registered
// before the suite's first test and unregistered after its last; create() makes a class by its
// ProgID.
#include <gtest/gtest.h>

#include "automation/com/com_handles.h"
#include "tests/windows/vxbr5_module.h"

class RegisteredModule : public ::testing::Test {
 protected:
  using EntryPoint = HRESULT STDAPICALLTYPE();

  static void SetUpTestSuite() {
    ASSERT_EQ(vxbr5().entry<EntryPoint>("DllRegisterServer")(), S_OK);
  }
  static void TearDownTestSuite() { vxbr5().entry<EntryPoint>("DllUnregisterServer")(); }

  static CUniqueRef<IDispatch> create(const wchar_t* progId) {
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(progId, &clsid), S_OK);
    IDispatch* made = nullptr;
    EXPECT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                               reinterpret_cast<void**>(&made)),
              S_OK);
    return CUniqueRef<IDispatch>(made);
  }
};
