// VXBr5.dll's version resource and registration description.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/windows/vxbr5_module.h"

namespace {
TEST(Resources, VersionIsTheProjectVersion) {
  const std::wstring& path = vxbr5().path;
  std::vector<char> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
  ASSERT_FALSE(block.empty());
  ASSERT_TRUE(GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()));
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
  EXPECT_EQ(fixed->dwProductVersionMS,
            static_cast<DWORD>(MAKELONG(VX_VERSION_MINOR, VX_VERSION_MAJOR)));
  EXPECT_EQ(fixed->dwProductVersionLS, static_cast<DWORD>(MAKELONG(0, VX_VERSION_PATCH)));
  wchar_t* product = nullptr;
  ASSERT_TRUE(VerQueryValueW(block.data(), L"\\StringFileInfo\\040904B0\\ProductVersion",
                             reinterpret_cast<void**>(&product), &length));
  EXPECT_EQ(std::wstring(product), std::to_wstring(VX_VERSION_MAJOR) + L"." +
                                       std::to_wstring(VX_VERSION_MINOR) + L"." +
                                       std::to_wstring(VX_VERSION_PATCH));
}

TEST(Resources, StringFourIsTheRegistrationDescription) {
  wchar_t text[32] = {};
  ASSERT_GT(LoadStringW(vxbr5().handle, 4, text, 32), 0);
  EXPECT_EQ(std::wstring(text), L"VXBridge5");
}
}  // namespace
