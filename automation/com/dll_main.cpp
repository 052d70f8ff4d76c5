// The DLL's entry point: remembers the module and pins it on the first load (CModule::pin
// says why). Runs under the loader lock, so it does nothing else.
#include <windows.h>

#include "automation/com/com_module.h"
#include "foundation/crash_dump.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    CModule::setHandle(module);
    CModule::pin();
    // Faults in the module's calls become exceptions (see comBoundary), dumped when asked.
    AFCCrashDump::install();
  }
  return TRUE;
}
