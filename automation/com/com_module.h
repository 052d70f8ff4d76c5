#pragma once
// The state of VXBr5.DLL in its process: the module's own handle (the type library, the
// resources and the registered path come from it), and the lock count that DllCanUnloadNow
// reads: one per live object of the module (class factories included) plus one per
// IClassFactory::LockServer(TRUE).
//
// Any thread; the count is atomic. Nothing here throws except path(), which throws
// std::bad_alloc.
#include <windows.h>

#include <string>

class CModule {
 public:
  // Called once from DllMain. A program that links vx::com without being the DLL (the tests)
  // names the loaded VXBr5.DLL here, so that its type library is the one used.
  static void setHandle(HMODULE module) noexcept;
  // The module set above, else the program's own.
  static HMODULE handle() noexcept;
  // The file the module was loaded from.
  static std::wstring path();

  static void lock() noexcept;
  static void unlock() noexcept;
  static long lockCount() noexcept;
  // S_OK while nothing holds the module, else S_FALSE: DllCanUnloadNow's answer.
  static HRESULT canUnloadNow() noexcept;

  // Keeps the module mapped until the process ends. Wine unloads a DLL whose DllCanUnloadNow
  // says S_OK when the apartment goes (CoUninitialize), and every new load of a DLL built with
  // winpthreads takes one more thread-local slot that is never given back: a host that creates
  // and drops the objects in a loop runs out of slots after about a thousand loads. Pinning
  // also keeps every window procedure and callback of the module valid for the process's life.
  static void pin() noexcept;
};
