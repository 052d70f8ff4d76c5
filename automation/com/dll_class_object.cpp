// DllGetClassObject over the module's object map, and DllCanUnloadNow.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <objbase.h>

#include <array>

#include "automation/com/animation_object.h"
#include "automation/com/class_factory.h"
#include "automation/com/com_module.h"
#include "automation/com/command_list_object.h"
#include "automation/com/title_manager_object.h"

namespace {
struct ObjectMapEntry {
  const CLSID* clsid;
  HRESULT (*createFactory)(REFIID iid, void** factory) noexcept;
};

// The creatable classes with their class objects.
constexpr std::array kObjectMap{
    ObjectMapEntry{&CLSID_Animation, &CClassFactory<CAnimationObject>::create},
    ObjectMapEntry{&CLSID_CommandList, &CClassFactory<CCommandListObject>::create},
    ObjectMapEntry{&CLSID_TitleManager, &CClassFactory<CTitleManagerObject>::create},
};
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
