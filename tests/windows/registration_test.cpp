// DllRegisterServer writes the keys of the three creatable classes and registers the type
// library; DllUnregisterServer takes all of it away again. Runs in the test prefix's registry.
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "automation/com/com_handles.h"
#include "tests/windows/vxbr5_module.h"
#include "vxbr5.h"

namespace {
using EntryPoint = HRESULT STDAPICALLTYPE();

std::wstring text(const GUID& guid) {
  std::array<wchar_t, 39> out{};
  StringFromGUID2(guid, out.data(), static_cast<int>(out.size()));
  return out.data();
}

// The value, "<no value>" when the key has none of that name, "<no key>" when it is missing.
std::wstring valueOf(const std::wstring& key, const wchar_t* name) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key.c_str(), 0, KEY_READ, &opened) != ERROR_SUCCESS) {
    return L"<no key>";
  }
  std::array<wchar_t, 512> value{};
  DWORD bytes = sizeof(value);
  const LSTATUS status =
      RegGetValueW(opened, nullptr, name, RRF_RT_REG_SZ, nullptr, value.data(), &bytes);
  RegCloseKey(opened);
  return status == ERROR_SUCCESS ? value.data() : L"<no value>";
}

struct Expected {
  std::wstring key;
  const wchar_t* name;
  std::wstring value;
};

std::vector<Expected> classEntries(const CLSID& clsid, const std::wstring& progId,
                                   const std::wstring& description, const wchar_t* threading) {
  const std::wstring key = L"CLSID\\" + text(clsid);
  const std::wstring versioned = progId + L".1";
  return {
      {versioned, nullptr, description},
      {versioned + L"\\CLSID", nullptr, text(clsid)},
      {progId, nullptr, description},
      {progId + L"\\CLSID", nullptr, text(clsid)},
      {progId + L"\\CurVer", nullptr, versioned},
      {key, nullptr, description},
      {key + L"\\ProgID", nullptr, versioned},
      {key + L"\\VersionIndependentProgID", nullptr, progId},
      {key + L"\\Programmable", nullptr, L"<no value>"},
      {key + L"\\InprocServer32", nullptr, vxbr5().path},
      {key + L"\\InprocServer32", L"ThreadingModel", threading},
      {key + L"\\TypeLib", nullptr, text(LIBID_VXBR5Lib)},
  };
}

TEST(Registration, WritesEveryKeyAndTheTypeLibraryThenRemovesThemEvenTwice) {
  std::vector<Expected> expected;
  for (const auto& entries :
       {classEntries(CLSID_TitleManager, L"VXBr5.TitleManager", L"TitleManager Class",
                     L"Apartment"),
        classEntries(CLSID_Animation, L"VXBr5.Animation", L"Animation Class", L"Apartment"),
        classEntries(CLSID_CommandList, L"VXBr5.CommandList", L"CommandList Class", L"Both")}) {
    expected.insert(expected.end(), entries.begin(), entries.end());
  }

  ASSERT_EQ(vxbr5().entry<EntryPoint>("DllRegisterServer")(), S_OK);
  for (const Expected& entry : expected) {
    EXPECT_EQ(valueOf(entry.key, entry.name), entry.value)
        << std::string(entry.key.begin(), entry.key.end());
  }
  BSTR registered = nullptr;
  EXPECT_EQ(QueryPathOfRegTypeLib(LIBID_VXBR5Lib, 1, 0, 0x409, &registered), S_OK);
  const CUniqueBstr path(registered);
  EXPECT_EQ(lstrcmpiW(registered, vxbr5().path.c_str()), 0);
  EXPECT_EQ(valueOf(L"CLSID\\" + text(CLSID_client), nullptr), L"<no key>");

  ASSERT_EQ(vxbr5().entry<EntryPoint>("DllUnregisterServer")(), S_OK);
  for (const Expected& entry : expected) {
    EXPECT_EQ(valueOf(entry.key, entry.name), L"<no key>");
  }
  ITypeLib* library = nullptr;
  EXPECT_NE(LoadRegTypeLib(LIBID_VXBR5Lib, 1, 0, 0x409, &library), S_OK);
  EXPECT_EQ(vxbr5().entry<EntryPoint>("DllUnregisterServer")(), S_OK);
}
}  // namespace
