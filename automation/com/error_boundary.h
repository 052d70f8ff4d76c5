#pragma once
// The one place where C++ failures become what an automation caller sees. Every method of the
// module's interfaces runs its body through comBoundary:
// - an AFCException becomes an error object (CreateErrorInfo/SetErrorInfo) carrying the
//   interface's own id and the exception's text, and the result E_FAIL; a script shows the
//   text as its error message;
// - std::bad_alloc becomes E_OUTOFMEMORY;
// - a failed platform call, thrown as CFailedCall by throwIfFailed, keeps its own HRESULT;
// - anything else becomes E_UNEXPECTED, since no exception may cross the COM boundary.
// A hardware fault in the body is thrown on as AFCRunTimeException (AFCCrashDump::Translation)
// and reported like any AFCException.
// The body returns its HRESULT (S_OK, S_FALSE, ...) itself. comBoundary never throws.
#include <windows.h>

#include <new>
#include <string_view>

#include "foundation/crash_dump.h"
#include "foundation/exception.h"

// A platform call that failed with result.
struct CFailedCall {
  HRESULT result;
};

inline void throwIfFailed(HRESULT result) {
  if (FAILED(result)) throw CFailedCall{result};
}

// Installs an error object with iid and text for this thread; returns E_FAIL, also when the
// error object cannot be made.
HRESULT reportError(REFIID iid, std::string_view text) noexcept;

template <class Body>
HRESULT comBoundary(REFIID iid, Body&& body) noexcept {
  try {
    const AFCCrashDump::Translation translation;
    return body();
  } catch (const AFCException& e) {
    return reportError(iid, e.what());
  } catch (const CFailedCall& e) {
    return e.result;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}
