// The DLL's entry point: remembers the module and pins it on the first load (CModule::pin
// says why). Runs under the loader lock, so it does nothing else.
#include <windows.h>

#include "automation/com/com_module.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    CModule::setHandle(module);
    CModule::pin();
  }
  return TRUE;
}
