// DllGetClassObject over the module's object map, and DllCanUnloadNow.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <objbase.h>

#include <array>

#include "automation/com/com_module.h"

namespace {
struct ObjectMapEntry {
  const CLSID* clsid;
  HRESULT (*createFactory)(REFIID iid, void** factory) noexcept;
};

// The creatable classes with their class objects: {&CLSID_X, &CClassFactory<CXObject>::create}.
// Empty until the coclass adapters of TitleManager, Animation and CommandList join the module.
constexpr std::array<ObjectMapEntry, 0> kObjectMap{};
}  // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, LPVOID* factory) {
  if (factory == nullptr) return E_POINTER;
  *factory = nullptr;
  for (const ObjectMapEntry& entry : kObjectMap) {
    if (IsEqualCLSID(clsid, *entry.clsid)) return entry.createFactory(iid, factory);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() { return CModule::canUnloadNow(); }
