#pragma once
// The product version of VXBr5.DLL as its version resource carries it, for getBridgeVersion:
// major and minor as "%d.%d", the patch number as ".%d", the build number as ".%d" when it is
// not 0.
//
// Any thread. Throws std::bad_alloc; CFailedCall with E_FAIL when the module has no version
// resource.
#include <string>

std::string moduleVersionText();
