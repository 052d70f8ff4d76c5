#pragma once
// Texts of the script host: 8-bit texts to UTF-16 (the script engines) and back, and a script
// value as the text a script prints. 8-bit texts are UTF-8 (script files, what the host prints)
// unless a code page says otherwise: the simulator takes and prints its operator lines in the
// process's 8-bit default (CP_ACP), as it reads them from a console. Nothing here throws but
// std::bad_alloc.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include <string>
#include <string_view>

std::wstring wideFromBytes(std::string_view text, UINT codePage = CP_UTF8);
std::string bytesFromWide(std::wstring_view text, UINT codePage = CP_UTF8);
// A by-reference value is read through; a boolean is "True" or "False"; a value without a text
// form (an object, an array) is empty.
std::string bytesOf(const VARIANT& value, UINT codePage = CP_UTF8);
