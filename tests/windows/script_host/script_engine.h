#pragma once
// One script run by one of the system's script engines (Wine's VBScript or JScript) through
// IActiveScript, with this object as the engine's site. Named items are the objects the script
// sees by name (SCRIPTITEM_ISVISIBLE); run() parses the text and executes its global code at
// once, so calls into the script (events) can come in while run() is under way.
//
// A script error is printed to stderr as "SCRIPT(LINE): DESCRIPTION" and the source line when
// the engine gives it, and marks the run failed; so does any error that reportError() is told
// about.
//
// Threads: the thread that made the engine, inside a single-threaded apartment. The constructor
// throws std::runtime_error when the engine cannot be made; nothing else throws but
// std::bad_alloc.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <activscp.h>

#include <map>
#include <string>

#include "automation/com/com_handles.h"

class ScriptEngine final : public IActiveScriptSite {
 public:
  // language: a script engine's ProgID, "VBScript" or "JScript".
  explicit ScriptEngine(const std::wstring& language);
  ~ScriptEngine();
  ScriptEngine(const ScriptEngine&) = delete;
  ScriptEngine& operator=(const ScriptEngine&) = delete;

  // The engine name for a script file: "VBScript" for ".vbs", "JScript" for ".js", else empty.
  static std::wstring languageOf(const std::string& fileName);

  void addItem(const std::wstring& name, IUnknown* object);
  // False when the script failed (it has been reported).
  bool run(const std::wstring& code);
  // The script's global procedures by name; null once closed.
  IDispatch* procedures();
  void reportError(const std::string& text);
  bool failed() const { return failed_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  // The engine's references to its site end with the engine; this object is owned by its maker.
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE GetLCID(LCID* locale) override;
  HRESULT STDMETHODCALLTYPE GetItemInfo(LPCOLESTR name, DWORD mask, IUnknown** item,
                                        ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetDocVersionString(BSTR* version) override;
  HRESULT STDMETHODCALLTYPE OnScriptTerminate(const VARIANT*, const EXCEPINFO*) override;
  HRESULT STDMETHODCALLTYPE OnStateChange(SCRIPTSTATE) override;
  HRESULT STDMETHODCALLTYPE OnScriptError(IActiveScriptError* error) override;
  HRESULT STDMETHODCALLTYPE OnEnterScript() override;
  HRESULT STDMETHODCALLTYPE OnLeaveScript() override;

 private:
  CUniqueRef<IActiveScript> engine_;
  CUniqueRef<IActiveScriptParse> parser_;
  CUniqueRef<IDispatch> procedures_;
  std::map<std::wstring, CUniqueRef<IUnknown>> items_;
  bool failed_ = false;
};
