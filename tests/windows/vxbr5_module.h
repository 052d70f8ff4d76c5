#pragma once
// VXBr5.dll as the tests see it: loaded once from the test program's folder, inside a
// single-threaded apartment on the test thread, and named to vx::com as the module whose type
// library the generic pieces use.
#include <windows.h>

#include <string>

#include "automation/com/com_module.h"

struct Vxbr5Module {
  HMODULE handle;
  std::wstring path;

  template <class Function>
  Function* entry(const char* name) const {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(handle, name)));
  }
};

inline const Vxbr5Module& vxbr5() {
  static const Vxbr5Module loaded = [] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    const HMODULE handle = LoadLibraryW(L"VXBr5.dll");
    CModule::setHandle(handle);
    return Vxbr5Module{handle, handle != nullptr ? CModule::path() : std::wstring()};
  }();
  return loaded;
}
