#include "automation/com/error_boundary.h"

#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oleauto.h>

#include "automation/com/bstr_text.h"
#include "automation/com/com_handles.h"

HRESULT reportError(REFIID iid, std::string_view text) noexcept {
  try {
    ICreateErrorInfo* made = nullptr;
    if (FAILED(CreateErrorInfo(&made))) return E_FAIL;
    const CUniqueRef<ICreateErrorInfo> creator(made);
    const CUniqueBstr description = bstrFromString(text);
    creator.get()->SetGUID(iid);
    creator.get()->SetDescription(description.get());
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(creator.get()->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
      SetErrorInfo(0, info);
      info->Release();
    }
  } catch (...) {
    // No memory for the text: the caller still gets E_FAIL, without an error object.
  }
  return E_FAIL;
}
