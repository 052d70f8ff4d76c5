// A script run by one of the system's script engines (script_engine.h).
#include "tests/windows/script_host/script_engine.h"

#include <cstdio>
#include <stdexcept>

#include "tests/windows/script_host/host_text.h"

// mingw's activscp.h maps IActiveScriptParse to the 64-bit interface on 64-bit targets, but its
// import library holds only the 32-bit id; this is the id of Wine's activscp.idl.
extern "C" const IID IID_IActiveScriptParse64 = {
    0xc7ef7658, 0xe1ee, 0x480e, {0x97, 0xea, 0xd5, 0x2c, 0xb4, 0xd7, 0x6d, 0x17}};

namespace {
std::string textOf(BSTR text) {
  return text != nullptr ? bytesFromWide(std::wstring_view(text, SysStringLen(text))) : "";
}

void check(HRESULT result, const char* step) {
  if (FAILED(result)) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%08lx", static_cast<unsigned long>(result));
    throw std::runtime_error(std::string(step) + " failed: " + code);
  }
}
}  // namespace

ScriptEngine::ScriptEngine(const std::wstring& language) {
  CLSID engineClass{};
  check(CLSIDFromProgID(language.c_str(), &engineClass), "CLSIDFromProgID");
  IActiveScript* engine = nullptr;
  check(CoCreateInstance(engineClass, nullptr, CLSCTX_INPROC_SERVER, IID_IActiveScript,
                         reinterpret_cast<void**>(&engine)),
        "creating the script engine");
  engine_ = CUniqueRef<IActiveScript>(engine);
  IActiveScriptParse* parser = nullptr;
  check(engine->QueryInterface(IID_IActiveScriptParse, reinterpret_cast<void**>(&parser)),
        "IActiveScriptParse");
  parser_ = CUniqueRef<IActiveScriptParse>(parser);
  check(engine->SetScriptSite(this), "SetScriptSite");
  check(parser->InitNew(), "InitNew");
}

ScriptEngine::~ScriptEngine() {
  procedures_.reset();
  engine_.get()->Close();
}

std::wstring ScriptEngine::languageOf(const std::string& fileName) {
  const auto endsWith = [&](std::string_view end) {
    return fileName.size() >= end.size() &&
           _stricmp(fileName.c_str() + fileName.size() - end.size(), end.data()) == 0;
  };
  return endsWith(".vbs") ? L"VBScript" : endsWith(".js") ? L"JScript" : L"";
}

void ScriptEngine::addItem(const std::wstring& name, IUnknown* object) {
  items_.insert_or_assign(name, addRef(object));
  check(engine_.get()->AddNamedItem(name.c_str(), SCRIPTITEM_ISVISIBLE), "AddNamedItem");
}

bool ScriptEngine::run(const std::wstring& code) {
  check(engine_.get()->SetScriptState(SCRIPTSTATE_STARTED), "SetScriptState");
  IDispatch* procedures = nullptr;
  if (SUCCEEDED(engine_.get()->GetScriptDispatch(nullptr, &procedures))) {
    procedures_ = CUniqueRef<IDispatch>(procedures);
  }
  EXCEPINFO exception{};
  const HRESULT result = parser_.get()->ParseScriptText(
      code.c_str(), nullptr, nullptr, nullptr, 0, 0, SCRIPTTEXT_ISVISIBLE, nullptr, &exception);
  if (FAILED(result) && !failed_)
    reportError("the script did not run: " + textOf(exception.bstrDescription));
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  return !failed_;
}

IDispatch* ScriptEngine::procedures() { return procedures_.get(); }

void ScriptEngine::reportError(const std::string& text) {
  std::fprintf(stderr, "%s\n", text.c_str());
  std::fflush(stderr);
  failed_ = true;
}

HRESULT ScriptEngine::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IActiveScriptSite);
  *object = known ? static_cast<IActiveScriptSite*>(this) : nullptr;
  return known ? S_OK : E_NOINTERFACE;
}

HRESULT ScriptEngine::GetLCID(LCID* locale) {
  if (locale == nullptr) return E_POINTER;
  *locale = GetUserDefaultLCID();
  return S_OK;
}

HRESULT ScriptEngine::GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** item, ITypeInfo** info) {
  if (info != nullptr) *info = nullptr;
  if (item != nullptr) *item = nullptr;
  const auto found = items_.find(name);
  if (found == items_.end()) return TYPE_E_ELEMENTNOTFOUND;
  if ((mask & SCRIPTINFO_ITYPEINFO) != 0) return TYPE_E_ELEMENTNOTFOUND;
  if ((mask & SCRIPTINFO_IUNKNOWN) != 0 && item != nullptr) {
    *item = found->second.get();
    (*item)->AddRef();
  }
  return S_OK;
}

HRESULT ScriptEngine::GetDocVersionString(BSTR* version) {
  if (version != nullptr) *version = nullptr;
  return E_NOTIMPL;
}

HRESULT ScriptEngine::OnScriptTerminate(const VARIANT*, const EXCEPINFO*) { return S_OK; }
HRESULT ScriptEngine::OnStateChange(SCRIPTSTATE) { return S_OK; }
HRESULT ScriptEngine::OnEnterScript() { return S_OK; }
HRESULT ScriptEngine::OnLeaveScript() { return S_OK; }

HRESULT ScriptEngine::OnScriptError(IActiveScriptError* error) {
  EXCEPINFO exception{};
  error->GetExceptionInfo(&exception);
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  DWORD context = 0;
  ULONG line = 0;
  LONG column = 0;
  error->GetSourcePosition(&context, &line, &column);
  BSTR source = nullptr;
  error->GetSourceLineText(&source);
  const std::string sourceLine = textOf(source);
  reportError("SCRIPT(" + std::to_string(line + 1) + "): " + textOf(exception.bstrDescription) +
              (sourceLine.empty() ? "" : "\n  " + sourceLine));
  SysFreeString(source);
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SysFreeString(exception.bstrHelpFile);
  return S_OK;
}
