#pragma once
// Script text (BSTR) to the system's strings and back. A null BSTR is the empty text, as
// automation treats it. 8-bit strings are in the process's default character set, the one the
// foundation uses for every 8-bit text on Windows. Making a BSTR throws std::bad_alloc when the
// runtime has no memory; reading never throws but for memory.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include <string>
#include <string_view>

#include "automation/com/com_handles.h"

std::u16string u16FromBstr(BSTR text);
std::string stringFromBstr(BSTR text);
CUniqueBstr bstrFromU16(std::u16string_view text);
CUniqueBstr bstrFromString(std::string_view text);
