// scenario_runner: gives one cscript scenario a simulator of its own. It starts the simulator
// in this process on a free port of 127.0.0.1, runs "cscript //nologo SCRIPT ADDRESS" (the
// script reads the address from WScript.Arguments(0)) and prints what the script printed. Then
// what reached the simulator: the scene tree each time the script called the client's
// writeScene (a title deletes its node when the script lets it go, so the tree at the end holds
// little), and, once the script's connection has been read to its end, the tree and those logs
// of the simulator (transactions, scene actions, previews, preloads, projects, zones, camera)
// that are not empty.
//   scenario_runner SCRIPT [vxsim options, such as --password=P]
// The simulator always listens on 127.0.0.1, port 0, whatever the options say. A script that has
// not ended after a minute is stopped, and a line says so. Exit code 2 for bad arguments or a
// script host that cannot be started, 0 otherwise: the caller compares the output.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "foundation/unique_handle.h"
#include "tests/vxsim/running_server.h"
#include "tools/vxsim/sim_options.h"

namespace {

struct HandleTraits {
  using Type = HANDLE;
  static HANDLE invalid() noexcept { return nullptr; }
  static void close(HANDLE handle) noexcept { CloseHandle(handle); }
};
using CUniqueHandle = AFCUniqueHandle<HandleTraits>;

// A scenario runs for seconds; the test's own limit is two minutes.
constexpr DWORD kScriptLimitMs = 60000;

// What the script host wrote to its standard output, once it has ended; throws
// std::runtime_error when it cannot be started. Its standard error is this program's: the error
// log writes there, with times that change from run to run.
std::string runScriptHost(const std::string& script, const std::string& address) {
  SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  HANDLE reader = nullptr;
  HANDLE writer = nullptr;
  if (!CreatePipe(&reader, &writer, &inherit, 0)) throw std::runtime_error("CreatePipe failed");
  CUniqueHandle readEnd(reader);
  CUniqueHandle writeEnd(writer);
  SetHandleInformation(reader, HANDLE_FLAG_INHERIT, 0);

  STARTUPINFOA startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = writer;
  startup.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  std::string commandLine = "cscript.exe //nologo \"" + script + "\" " + address;
  PROCESS_INFORMATION process{};
  if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                      &startup, &process)) {
    throw std::runtime_error("cannot start cscript: error " + std::to_string(GetLastError()));
  }
  CUniqueHandle child(process.hProcess);
  CloseHandle(process.hThread);
  writeEnd.reset();  // the pipe ends when the host and its children close their ends

  // Read on a thread of its own, so that a script that never ends (a processor loop nobody
  // closes) can be stopped here: its end closes the pipe, which ends the read.
  std::string printed;
  std::thread readAll([&printed, reader] {
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(reader, buffer, sizeof(buffer), &count, nullptr) && count > 0) {
      printed.append(buffer, count);
    }
  });
  const bool ended = WaitForSingleObject(child.get(), kScriptLimitMs) == WAIT_OBJECT_0;
  if (!ended) TerminateProcess(child.get(), 1);
  readAll.join();
  std::erase(printed, '\r');
  if (!ended)
    printed += "(the script was stopped after " + std::to_string(kScriptLimitMs / 1000) + " s)\n";
  return printed;
}

// Waits until the simulator has read every connection to its end, so that all the script sent
// has been applied; gives up after ten seconds.
void awaitClientsGone(RunningServer& server) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (server.clientCount() != 0 && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

void printLog(const char* title, const std::vector<std::string>& lines) {
  if (lines.empty()) return;
  std::cout << title << ":\n";
  for (const std::string& line : lines) std::cout << "  " << line << '\n';
}

void printScene(VXSimHub& hub) {
  VXSimScene& scene = hub.getScene();
  std::cout << scene.dumpTree();
  printLog("transactions", scene.getTransactions());
  printLog("actions", scene.getActions());
  printLog("previews", scene.getPreviews());
  printLog("preloads", scene.getPreloads());
  std::vector<std::string> projects;
  for (const std::string& project : scene.getProjects()) projects.push_back('"' + project + '"');
  printLog("projects", projects);
  // The zones are held unordered; sorted here so that the text stays the same.
  std::vector<std::string> zones;
  for (const auto& [name, on] : scene.getZones().getZones()) {
    zones.push_back(name + (on ? " on" : " off"));
  }
  std::sort(zones.begin(), zones.end());
  printLog("zones", zones);
  if (!hub.getCamera().empty()) std::cout << "camera: " << hub.getCamera() << '\n';
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::cerr << "usage: scenario_runner SCRIPT [vxsim options]\n";
    return 2;
  }
  try {
    VXSimOptions options = vxSimParseArguments(std::vector<std::string>(argv + 2, argv + argc));
    options.port = 0;
    // The trees written, taken on the server's thread when the request to write arrives, after
    // everything the script sent before it.
    std::vector<std::string> written;
    std::optional<RunningServer> server;
    server.emplace(std::move(options), [&written, &server](const std::string& line) {
      if (line.ends_with("::Control.writeScene")) {
        written.push_back(server->hub().getScene().dumpTree());
      }
    });
    std::cout << runScriptHost(argv[1], server->address());
    awaitClientsGone(*server);
    server->stop();
    for (const std::string& tree : written) std::cout << "--- scene written ---\n" << tree;
    std::cout << "--- simulator at the end ---\n";
    printScene(server->hub());
  } catch (const std::exception& e) {
    std::cerr << "scenario_runner: " << e.what() << '\n';
    return 2;
  }
  return 0;
}
