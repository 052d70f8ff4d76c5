#pragma once
// The module's type library, loaded once from the module's own TYPELIB resource 1, and the type
// information of its interfaces, loaded once per interface id. What IDispatch needs: the
// dispatch view that GetTypeInfo hands out, and the vtable view of a dual interface, through
// which ITypeInfo::Invoke calls the C++ methods.
//
// Thread safe (first use is a static initialisation). The objects are kept for the life of the
// process and never released: the module is pinned, and releasing them at exit could run after
// the automation runtime has gone. Nothing throws.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oaidl.h>

struct CTypeInfoViews {
  HRESULT result = E_UNEXPECTED;  // the load's result; the views count only when it succeeded
  ITypeInfo* dispatchView = nullptr;
  ITypeInfo* vtableView = nullptr;
};

class CTypeLibrary {
 public:
  // The library; a borrowed reference, or the load's failure.
  static HRESULT library(ITypeLib** out) noexcept;
  static CTypeInfoViews load(REFIID iid) noexcept;

  template <class Interface>
  static const CTypeInfoViews& views() noexcept {
    static const CTypeInfoViews loaded = load(__uuidof(Interface));
    return loaded;
  }
};
