#pragma once
// Texts of the script host: UTF-8 (script files, the simulator's lines, what the host prints)
// to UTF-16 (the script engines) and back, and a script value as the text a script prints.
// Nothing here throws but std::bad_alloc.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include <string>
#include <string_view>

std::wstring wideFromUtf8(std::string_view text);
std::string utf8FromWide(std::wstring_view text);
// A by-reference value is read through; a boolean is "True" or "False"; a value without a text
// form (an object, an array) is empty.
std::string utf8Of(const VARIANT& value);
