#include "automation/com/type_library.h"

#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include <new>

#include "automation/com/com_module.h"

namespace {
struct LoadedLibrary {
  HRESULT result = E_UNEXPECTED;
  ITypeLib* library = nullptr;
};

LoadedLibrary loadLibrary() noexcept {
  LoadedLibrary loaded;
  try {
    loaded.result = LoadTypeLibEx(CModule::path().c_str(), REGKIND_NONE, &loaded.library);
  } catch (const std::bad_alloc&) {
    loaded.result = E_OUTOFMEMORY;
  }
  return loaded;
}
}  // namespace

HRESULT CTypeLibrary::library(ITypeLib** out) noexcept {
  static const LoadedLibrary loaded = loadLibrary();
  *out = loaded.library;
  return loaded.result;
}

CTypeInfoViews CTypeLibrary::load(REFIID iid) noexcept {
  CTypeInfoViews views;
  ITypeLib* lib = nullptr;
  views.result = library(&lib);
  if (FAILED(views.result)) return views;
  views.result = lib->GetTypeInfoOfGuid(iid, &views.dispatchView);
  if (FAILED(views.result)) return views;
  // A dual interface's entry is its dispatch view; the vtable view is its one implemented
  // type, numbered -1. Any other interface is its own vtable view.
  HREFTYPE vtableType = 0;
  if (SUCCEEDED(views.dispatchView->GetRefTypeOfImplType(-1, &vtableType))) {
    views.result = views.dispatchView->GetRefTypeInfo(vtableType, &views.vtableView);
  } else {
    views.vtableView = views.dispatchView;
    views.vtableView->AddRef();
  }
  return views;
}
