// comBoundary: what a caller sees for each kind of failure.
#include "automation/com/error_boundary.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

#include "tests/windows/test_objects.h"

namespace {
TEST(ErrorBoundary, TurnsEachFailureIntoItsResult) {
  vxbr5();
  struct Case {
    const char* what;
    std::function<HRESULT()> body;
    HRESULT result;
    std::string error;
  };
  const Case cases[] = {
      {"success", [] { return S_FALSE; }, S_FALSE, "none"},
      {"system exception", []() -> HRESULT { throw AFCNullPointerException("CCommandList"); },
       E_FAIL, "id " + AFCNullPointerException("CCommandList").toString()},
      {"no memory", []() -> HRESULT { throw std::bad_alloc(); }, E_OUTOFMEMORY, "none"},
      {"platform call",
       []() -> HRESULT {
         throwIfFailed(E_ACCESSDENIED);
         return S_OK;
       },
       E_ACCESSDENIED, "none"},
      {"anything else", []() -> HRESULT { throw std::runtime_error("x"); }, E_UNEXPECTED, "none"},
  };
  for (const Case& c : cases) {
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(comBoundary(IID_IVXTitle, c.body), c.result) << c.what;
    EXPECT_EQ(errorObject(IID_IVXTitle), c.error) << c.what;
  }
}
}  // namespace
