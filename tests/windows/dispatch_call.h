#pragma once
// Late-bound calls as a script engine makes them: a member looked up by name (GetIDsOfNames)
// and called through IDispatch::Invoke with VARIANT arguments, and the VARIANTs to pass.
#include <windows.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "automation/com/bstr_text.h"
#include "automation/com/com_handles.h"

struct DispatchCall {
  // "ok", "ok VALUE" with a result, the error object's text of a failure, or "fails 0x..." when
  // the failure carries no text.
  std::string outcome;
  CUniqueVariant value;
};

// The value as text; a bool as its word, so that 1 and -1 differ.
inline std::string textOf(const VARIANT& value) {
  if (value.vt == VT_BOOL) return std::to_string(value.boolVal);
  CUniqueVariant text;
  const HRESULT changed =
      VariantChangeTypeEx(text.put(), const_cast<VARIANT*>(&value), LOCALE_INVARIANT, 0, VT_BSTR);
  return SUCCEEDED(changed) ? stringFromBstr(text.get().bstrVal) : "vt " + std::to_string(value.vt);
}

// Arguments in parameter order; DISPATCH_PROPERTYPUT and DISPATCH_PROPERTYPUTREF pass the one
// argument as the value.
inline DispatchCall callByName(IDispatch* object, const wchar_t* name,
                               const std::vector<VARIANT>& arguments = {},
                               WORD flags = DISPATCH_METHOD) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  if (FAILED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id))) {
    return {"no member", {}};
  }
  std::vector<VARIANT> reversed(arguments.begin(), arguments.end());
  std::reverse(reversed.begin(), reversed.end());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{reversed.data(), nullptr, static_cast<UINT>(reversed.size()), 0};
  if (flags == DISPATCH_PROPERTYPUT || flags == DISPATCH_PROPERTYPUTREF) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  DispatchCall call;
  EXCEPINFO exception{};
  const HRESULT result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                        call.value.put(), &exception, nullptr);
  const CUniqueBstr description(exception.bstrDescription), source(exception.bstrSource),
      help(exception.bstrHelpFile);
  std::ostringstream code;
  code << "fails 0x" << std::hex << (result == DISP_E_EXCEPTION ? exception.scode : result);
  call.outcome = SUCCEEDED(result)     ? "ok"
                 : description.valid() ? stringFromBstr(description.get())
                                       : code.str();
  if (SUCCEEDED(result) && call.value.get().vt != VT_EMPTY) {
    call.outcome += " " + textOf(call.value.get());
  }
  return call;
}

// VARIANTs to pass; the caller keeps them (CUniqueVariant) so that they are cleared.
inline CUniqueVariant textArgument(const wchar_t* text) {
  CUniqueVariant out;
  out.get().bstrVal = SysAllocString(text);
  out.get().vt = VT_BSTR;
  return out;
}
// Text arguments kept for as long as this lives: t(L"a") is a VT_BSTR VARIANT.
struct Texts {
  VARIANT operator()(const wchar_t* text) { return kept.emplace_back(textArgument(text)).get(); }
  std::vector<CUniqueVariant> kept;
};
inline CUniqueVariant objectArgument(IDispatch* object) {
  CUniqueVariant out;
  out.get().pdispVal = object;
  object->AddRef();
  out.get().vt = VT_DISPATCH;
  return out;
}
inline VARIANT numberArgument(VARTYPE type, LONGLONG bits) {
  VARIANT out;
  VariantInit(&out);
  out.vt = type;
  out.llVal = bits;
  return out;
}
inline VARIANT realArgument(VARTYPE type, double number) {
  VARIANT out;
  VariantInit(&out);
  out.vt = type;
  if (type == VT_R4) {
    out.fltVal = static_cast<float>(number);
  } else {
    out.dblVal = number;
  }
  return out;
}
// What a script engine passes for a left-out optional argument.
inline VARIANT missingArgument() { return numberArgument(VT_ERROR, DISP_E_PARAMNOTFOUND); }
