// DllRegisterServer and DllUnregisterServer: the keys of the three creatable classes under
// HKEY_CLASSES_ROOT, and the type library. A registration that fails part way is undone, so
// that no half-registered class is left behind.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "automation/com/com_module.h"
#include "automation/com/error_boundary.h"
#include "automation/com/type_library.h"
#include "vxbr5.h"

namespace {
struct CreatableClass {
  const CLSID* clsid;
  const wchar_t* progId;
  const wchar_t* independentProgId;
  const wchar_t* description;
  const wchar_t* threadingModel;
};

constexpr std::array<CreatableClass, 3> kClasses{{
    {&CLSID_TitleManager, L"VXBr5.TitleManager.1", L"VXBr5.TitleManager", L"TitleManager Class",
     L"Apartment"},
    {&CLSID_Animation, L"VXBr5.Animation.1", L"VXBr5.Animation", L"Animation Class", L"Apartment"},
    {&CLSID_CommandList, L"VXBr5.CommandList.1", L"VXBr5.CommandList", L"CommandList Class",
     L"Both"},
}};

// One registry value under HKEY_CLASSES_ROOT; no name is the key's default value, no data an
// empty key.
struct Entry {
  std::wstring key;
  const wchar_t* name;
  std::optional<std::wstring> data;
};

std::wstring guidText(const GUID& guid) {
  std::array<wchar_t, 39> text{};
  StringFromGUID2(guid, text.data(), static_cast<int>(text.size()));
  return text.data();
}

std::wstring classKey(const CreatableClass& entry) { return L"CLSID\\" + guidText(*entry.clsid); }

// What registration writes for one class, in order; unregistration removes the three roots.
std::vector<Entry> entriesOf(const CreatableClass& entry, const std::wstring& modulePath) {
  const std::wstring clsid = guidText(*entry.clsid);
  const std::wstring progId = entry.progId;
  const std::wstring independent = entry.independentProgId;
  const std::wstring key = classKey(entry);
  return {
      {progId, nullptr, entry.description},
      {progId + L"\\CLSID", nullptr, clsid},
      {independent, nullptr, entry.description},
      {independent + L"\\CLSID", nullptr, clsid},
      {independent + L"\\CurVer", nullptr, progId},
      {key, nullptr, entry.description},
      {key + L"\\ProgID", nullptr, progId},
      {key + L"\\VersionIndependentProgID", nullptr, independent},
      {key + L"\\Programmable", nullptr, std::nullopt},
      {key + L"\\InprocServer32", nullptr, modulePath},
      {key + L"\\InprocServer32", L"ThreadingModel", entry.threadingModel},
      {key + L"\\TypeLib", nullptr, guidText(LIBID_VXBR5Lib)},
  };
}

void throwIfError(LSTATUS status) { throwIfFailed(HRESULT_FROM_WIN32(status)); }

void write(const Entry& entry) {
  HKEY key = nullptr;
  throwIfError(RegCreateKeyExW(HKEY_CLASSES_ROOT, entry.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE,
                               nullptr, &key, nullptr));
  LSTATUS status = ERROR_SUCCESS;
  if (entry.data) {
    const DWORD bytes = static_cast<DWORD>((entry.data->size() + 1) * sizeof(wchar_t));
    status = RegSetValueExW(key, entry.name, 0, REG_SZ,
                            reinterpret_cast<const BYTE*>(entry.data->c_str()), bytes);
  }
  RegCloseKey(key);
  throwIfError(status);
}

void removeTree(const std::wstring& key) {
  const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
  if (status != ERROR_FILE_NOT_FOUND) throwIfError(status);
}

ITypeLib* typeLibrary() {
  ITypeLib* library = nullptr;
  throwIfFailed(CTypeLibrary::library(&library));
  return library;
}

HRESULT unregisterServer() {
  return comBoundary(IID_NULL, [] {
    for (const CreatableClass& entry : kClasses) {
      removeTree(entry.progId);
      removeTree(entry.independentProgId);
      removeTree(classKey(entry));
    }
    TLIBATTR* attributes = nullptr;
    ITypeLib* library = typeLibrary();
    throwIfFailed(library->GetLibAttr(&attributes));
    const TLIBATTR id = *attributes;
    library->ReleaseTLibAttr(attributes);
    // A library that is not registered (any more) is no failure: unregistering twice works.
    BSTR registered = nullptr;
    if (FAILED(QueryPathOfRegTypeLib(id.guid, id.wMajorVerNum, id.wMinorVerNum, id.lcid,
                                     &registered))) {
      return S_OK;
    }
    SysFreeString(registered);
    return UnRegisterTypeLib(id.guid, id.wMajorVerNum, id.wMinorVerNum, id.lcid, id.syskind);
  });
}
}  // namespace

STDAPI DllRegisterServer() {
  const HRESULT result = comBoundary(IID_NULL, [] {
    std::wstring path = CModule::path();
    for (const CreatableClass& entry : kClasses) {
      for (const Entry& value : entriesOf(entry, path)) write(value);
    }
    return RegisterTypeLib(typeLibrary(), path.data(), nullptr);
  });
  if (FAILED(result)) unregisterServer();
  return result;
}

STDAPI DllUnregisterServer() { return unregisterServer(); }
