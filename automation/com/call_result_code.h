#pragma once
// The HRESULT a script host gets for a core call that ended without an exception. InvalidArgument
// and NoInterface are codes, not errors of the system: they carry no error object, and a stale
// one of an earlier call on this thread is taken away so that the caller cannot mistake it for
// theirs. Never throws.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include "automation/call_result.h"

inline HRESULT hresultOf(CCallResult result) noexcept {
  if (result == CCallResult::Ok) return S_OK;
  SetErrorInfo(0, nullptr);
  return result == CCallResult::InvalidArgument ? E_INVALIDARG : E_NOINTERFACE;
}
