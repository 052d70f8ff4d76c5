// vxscripthost: runs one VBScript (.vbs) or JScript (.js) file with the system's own script
// engine, so that script code receives the title manager's and the client's IVXCmdEvents, which
// Wine's cscript cannot bind.
//   vxscripthost SCRIPT [ARGUMENT...]
// The script sees four objects:
//   WScript  Echo(ARGS...) prints its arguments, separated by spaces, as one line;
//            Arguments(I) is the I-th ARGUMENT, Arguments.Count their number;
//   sim      a simulator started by the host: sim.address is its "HOST:PORT", sim.console(LINE)
//            runs an operator line (tools/vxsim/sim_console.h) and returns what it printed;
//   tm       a VXBr5.TitleManager, made by its ProgID (so VXBr5.DLL must be registered);
//   client   tm.getClient().
// Events go to the script's procedures named after the object and the event: tm_onCommand(id),
// client_onZoneChange(zone, state), client_onMessage(text), client_onPickResult(xml),
// client_onDisconnect(). The program exits 0 when the script ran to its end, 1 after a script
// error (printed to stderr with its line) and 2 when the host could not start the script.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <objbase.h>

#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "automation/com/com_handles.h"
#include "tests/vxsim/running_server.h"
#include "tests/windows/script_host/event_forwarder.h"
#include "tests/windows/script_host/host_object.h"
#include "tests/windows/script_host/host_text.h"
#include "tests/windows/script_host/script_engine.h"

namespace {
std::wstring readScript(const std::string& fileName) {
  std::ifstream file(fileName, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + fileName);
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return wideFromBytes(bytes.str());
}

CUniqueRef<IDispatch> createByProgId(const wchar_t* progId) {
  CLSID id{};
  IDispatch* made = nullptr;
  if (FAILED(CLSIDFromProgID(progId, &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                              reinterpret_cast<void**>(&made)))) {
    throw std::runtime_error("cannot create " + bytesFromWide(progId) + ": is it registered?");
  }
  return CUniqueRef<IDispatch>(made);
}

// The object a member without arguments returns.
CUniqueRef<IDispatch> objectMember(IDispatch* object, const wchar_t* name) {
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  DISPID id = DISPID_UNKNOWN;
  DISPPARAMS none{};
  CUniqueVariant result;
  if (FAILED(object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id)) ||
      FAILED(object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none, result.put(),
                            nullptr, nullptr)) ||
      result.get().vt != VT_DISPATCH || result.get().pdispVal == nullptr) {
    throw std::runtime_error(bytesFromWide(name) + " gave no object");
  }
  return addRef(result.get().pdispVal);
}

CUniqueVariant echo(const std::vector<const VARIANT*>& arguments) {
  std::string line;
  for (const VARIANT* argument : arguments) line += (line.empty() ? "" : " ") + bytesOf(*argument);
  std::fwrite(line.data(), 1, line.size(), stdout);
  std::fputc('\n', stdout);
  std::fflush(stdout);
  return {};
}

// WScript.Arguments(i) is the i-th argument after the script's name, WScript.Arguments.Count
// their number.
CUniqueVariant scriptArguments(const std::vector<std::string>& given,
                               const std::vector<const VARIANT*>& arguments) {
  if (arguments.empty()) {
    CUniqueVariant list;
    list.get().pdispVal =
        HostObject::make({{L"Count", [&given](const auto&) { return numberResult(given.size()); }}})
            .release();
    list.get().vt = VT_DISPATCH;
    return list;
  }
  const size_t index = std::stoul(bytesOf(*arguments[0]));
  if (index >= given.size()) throw std::out_of_range("no argument " + std::to_string(index));
  return textResult(given[index]);
}

CUniqueRef<IDispatch> makeWScript(const std::vector<std::string>& given) {
  return HostObject::make({{L"Echo", echo}, {L"Arguments", [&given](const auto& arguments) {
                                               return scriptArguments(given, arguments);
                                             }}});
}

CUniqueRef<IDispatch> makeSim(RunningServer& server) {
  return HostObject::make(
      {{L"address", [&server](const auto&) { return textResult(server.address()); }},
       {L"console", [&server](const std::vector<const VARIANT*>& arguments) {
          if (arguments.size() != 1) throw std::invalid_argument("sim.console takes one line");
          return textResult(server.command(bytesOf(*arguments[0], CP_ACP)), CP_ACP);
        }}});
}

int runScript(const std::string& fileName, const std::vector<std::string>& arguments) {
  const std::wstring language = ScriptEngine::languageOf(fileName);
  if (language.empty()) throw std::runtime_error(fileName + " is neither .vbs nor .js");
  const std::wstring code = readScript(fileName);
  RunningServer server;
  const CUniqueRef<IDispatch> manager = createByProgId(L"VXBr5.TitleManager");
  const CUniqueRef<IDispatch> client = objectMember(manager.get(), L"getClient");
  ScriptEngine engine(language);
  engine.addItem(L"WScript", makeWScript(arguments).get());
  engine.addItem(L"sim", makeSim(server).get());
  engine.addItem(L"tm", manager.get());
  engine.addItem(L"client", client.get());
  const EventForwarding managerEvents(engine, L"tm", manager.get());
  const EventForwarding clientEvents(engine, L"client", client.get());
  return engine.run(code) ? 0 : 1;
}
}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: vxscripthost SCRIPT.vbs|SCRIPT.js [ARGUMENT...]\n");
    return 2;
  }
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  int result = 2;
  try {
    result = runScript(argv[1], std::vector<std::string>(argv + 2, argv + argc));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "vxscripthost: %s\n", e.what());
  }
  CoUninitialize();
  return result;
}
