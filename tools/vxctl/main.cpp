// vxctl: a command-line client of the render server for people at a terminal and for shell
// scripts. One subcommand a run: it connects, does its one thing, prints the result (text, or
// JSON with --json) and closes. Any failure prints one line "vxctl: ..." on standard error and
// ends with a non-zero exit code.
#include <CLI/CLI.hpp>
#include <array>
#include <chrono>
#include <csignal>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/client_exceptions.h"
#include "client/client_tcp.h"
#include "client/register.h"
#include "foundation/crash_dump.h"
#include "foundation/errlog.h"
#include "foundation/fd_handler.h"
#include "tools/vxctl/callback_waiter.h"
#include "tools/vxctl/command_file.h"
#include "tools/vxctl/output_format.h"
#include "tools/vxctl/value_syntax.h"
#include "tools/vxctl/watcher.h"

namespace {

volatile std::sig_atomic_t interrupted = 0;

extern "C" void onInterrupt(int) { interrupted = 1; }

constexpr int kPumpMs = 200;

struct Options {
  std::string host;
  std::string password;
  bool json = false;
  bool verbose = false;
  std::vector<std::string> names;  // zone names
  // The words of a builder command, one option each: a vector option would take a value such as
  // [1,2,3] apart as a list of its own.
  std::array<std::string, 3> words;
  std::size_t wordCount = 0;
  std::string state;
  std::string path;
  std::string value;
  std::vector<std::string> callArgs;
  std::string file;
  std::string transaction;
  double waitSeconds = 0;
  std::vector<std::string> watchZones;
};

// The session of one run, and how its results are printed.
class Session {
 public:
  explicit Session(const Options& options) : json_(options.json) {
    if (!options.host.empty()) client_.setServerAddress(options.host);
    if (!options.password.empty()) client_.setPassword(options.password);
  }

  VXClientTcp& client() { return client_; }
  // Where the server's events arrive: the thread's default handler, pumped by this thread.
  AFCFDHandler& handler() { return handler_.get(); }

  // A failed version query closes the session instead of throwing; the session keeps why.
  void connect() {
    if (!client_.connect()) throw VXClientException(client_.getConnectFailure());
  }

  // The result as one JSON object, or as the given text (nothing when empty).
  void print(const VXCtlJson& result, const std::string& text) const {
    if (json_) {
      std::cout << result.dump(-1, ' ', false, VXCtlJson::error_handler_t::replace) << '\n';
    } else if (!text.empty()) {
      std::cout << text << '\n';
    }
  }

  void printOk() const { print({{"ok", true}}, "OK"); }

  void printValue(const std::string& path, const AFCAttribute* value) const {
    print({{"path", path},
           {"type", value != nullptr ? VXCtlJson(vxctlTypeName(*value)) : VXCtlJson(nullptr)},
           {"value", vxctlValueJson(value)}},
          value != nullptr ? vxctlValueToText(*value) : "(none)");
  }

 private:
  AFCDefaultFDHandler handler_;  // outlives the session's socket
  VXClientTcp client_;
  bool json_;
};

void runVersion(Session& session) {
  session.connect();
  VXClientTcp& c = session.client();
  session.print({{"version", c.getServerVersion()},
                 {"major", c.getServerVersionMajor()},
                 {"minor", c.getServerVersionMinor()},
                 {"build", c.getServerVersionBuild()}},
                c.getServerVersion());
}

void runZoneGet(Session& session, const std::vector<std::string>& names) {
  VXZonesState zones;
  for (const std::string& name : names) zones.set(name, false);
  session.connect();
  session.client().getZoneState1(zones);
  VXCtlJson result = VXCtlJson::object();
  std::string text;
  for (const std::string& name : names) {
    const bool on = zones.get(name);
    result[name] = on;
    text += (text.empty() ? "" : "\n") + name + " " + (on ? "on" : "off");
  }
  session.print(result, text);
}

void runZoneSet(Session& session, const std::string& name, const std::string& state) {
  VXZonesState zones;
  zones.set(name, state == "on");
  session.connect();
  session.client().setZoneState1(zones);
  session.printOk();
}

// The waiter hears confirmations for as long as this lives.
class CallbackSubscription {
 public:
  CallbackSubscription(VXClient& session, VXCtlCallbackWaiter& waiter)
      : session_(session), waiter_(waiter) {
    session_.addCommandCallbackListener(&waiter_);
  }
  ~CallbackSubscription() { session_.removeCommandCallbackListener(&waiter_); }
  CallbackSubscription(const CallbackSubscription&) = delete;
  CallbackSubscription& operator=(const CallbackSubscription&) = delete;

 private:
  VXClient& session_;
  VXCtlCallbackWaiter& waiter_;
};

std::string joined(const std::vector<int32_t>& ids) {
  std::string text;
  for (int32_t id : ids) text += (text.empty() ? "" : ", ") + std::to_string(id);
  return text;
}

// With waitSeconds above 0, waits that long for the server to confirm every callback command.
void runSend(Session& session, const std::vector<VXCtlCommand>& commands,
             const std::optional<std::string>& transaction, double waitSeconds) {
  VXCtlCallbackWaiter waiter;
  const CallbackSubscription subscription(session.client(), waiter);
  session.connect();
  const std::vector<int32_t> callbacks = vxctlSend(commands, session.client(), transaction);
  const bool waiting = waitSeconds > 0 && !callbacks.empty();
  if (waiting) {
    waiter.expect(callbacks);
    std::signal(SIGINT, onInterrupt);
    const auto limit = std::chrono::milliseconds(static_cast<int64_t>(waitSeconds * 1000));
    if (!waiter.wait(session.handler(), limit, [] { return interrupted != 0; })) {
      throw AFCException("No confirmation of callback " + joined(waiter.pending()));
    }
  }
  std::string text = "OK";
  for (int32_t id : callbacks)
    text += "\ncallback " + std::to_string(id) + (waiting ? " done" : "");
  session.print({{"ok", true},
                 {"commands", commands.size()},
                 {"callbacks", callbacks},
                 {"confirmed", waiting}},
                text);
}

void runSendFile(Session& session, const std::string& file, const std::string& transaction,
                 double waitSeconds) {
  std::vector<VXCtlCommand> commands;
  if (file == "-") {
    commands = vxctlParseCommandFile(std::cin, "<stdin>");
  } else {
    std::ifstream in(file);
    if (!in) throw AFCException("Cannot open " + file);
    commands = vxctlParseCommandFile(in, file);
  }
  if (commands.empty()) throw AFCException((file == "-" ? "<stdin>" : file) + ": no commands");
  runSend(session, commands,
          transaction.empty() ? std::nullopt : std::optional<std::string>(transaction),
          waitSeconds);
}

void runRoaCall(Session& session, const std::string& path, const std::vector<std::string>& args) {
  std::vector<std::unique_ptr<AFCAttribute>> values;
  std::vector<const AFCAttribute*> pointers;
  for (const std::string& arg : args) {
    values.push_back(vxctlParseValue(arg));
    pointers.push_back(values.back().get());
  }
  session.connect();
  const std::unique_ptr<AFCAttribute> result = session.client().remoteInvoke(path, pointers);
  session.printValue(path, result.get());
}

// The watcher's listeners, registered for as long as this lives.
class Subscription {
 public:
  Subscription(VXCtlWatcher& watcher, VXClient& session, const std::vector<std::string>& zones)
      : watcher_(watcher), session_(session), zones_(zones) {
    watcher_.subscribe(session_, zones_);
  }
  ~Subscription() { watcher_.unsubscribe(session_, zones_); }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;

 private:
  VXCtlWatcher& watcher_;
  VXClient& session_;
  const std::vector<std::string>& zones_;
};

// Pumps events until interrupted (returns 0) or the server closes the connection (throws).
int runWatch(Session& session, const std::vector<std::string>& zones, bool json) {
  VXCtlWatcher watcher(std::cout, json);
  // Subscribed before connecting: the handshake sends the subscriptions.
  const Subscription subscription(watcher, session.client(), zones);
  std::signal(SIGINT, onInterrupt);
  std::signal(SIGTERM, onInterrupt);
  session.connect();
  while (interrupted == 0 && !watcher.disconnected()) {
    session.handler().mainLoop(kPumpMs);
  }
  if (watcher.disconnected()) throw VXClientException("Server closed the connection");
  return 0;
}

// One builder command from the command line, read like a line of a command file (quotes in a
// word are the file syntax's too).
void runBuilderCommand(Session& session, const std::string& name,
                       const std::vector<std::string>& args) {
  std::vector<std::string> words{name};
  words.insert(words.end(), args.begin(), args.end());
  std::vector<VXCtlCommand> commands;
  commands.push_back(vxctlParseCommand(words));
  runSend(session, commands, std::nullopt, 0);
}

constexpr const char* kValueHelp =
    "VALUE: 42 (int), 1.5 (float), true/false, \"text\" or a bare word (string), [x, y(, z(, w))] "
    "(vec2f/vec3f/vec4f, other counts vecnf); a prefix forces the type: int: int64: float: "
    "double: bool: string: vec2f: vec3f: vec4f: vecnf: color: vec2s:";

struct Commands {
  CLI::App* version;
  CLI::App* zoneGet;
  CLI::App* zoneSet;
  std::vector<std::pair<std::string, CLI::App*>> builder;  // set, create, delete, load
  CLI::App* roaGet;
  CLI::App* roaSet;
  CLI::App* roaCall;
  CLI::App* send;
  CLI::App* watch;
};

Commands declare(CLI::App& app, Options& o) {
  app.add_option("--host", o.host, "HOST[:PORT] of the server (else VX2HOST, else localhost)");
  app.add_option("--password", o.password, "password for the login");
  app.add_flag("--json", o.json, "machine output: one JSON object a result or event");
  app.add_flag("-v,--verbose", o.verbose, "show the client library's own error log on stderr");
  app.require_subcommand(1);
  Commands c{};
  c.version = app.add_subcommand("version", "print the server's version");
  CLI::App* zone = app.add_subcommand("zone", "read or switch output zones");
  zone->require_subcommand(1);
  c.zoneGet = zone->add_subcommand("get", "print the state of zones");
  c.zoneGet->add_option("NAME", o.names, "zone names")->required();
  c.zoneSet = zone->add_subcommand("set", "switch a zone on or off");
  c.zoneSet->add_option("NAME", o.path, "zone name")->required();
  c.zoneSet->add_option("STATE", o.state, "on or off")
      ->required()
      ->check(CLI::IsMember({"on", "off"}));
  using Words = std::vector<std::string>;
  const std::vector<std::tuple<std::string, std::string, Words>> builder = {
      {"set", "set an attribute. " + std::string(kValueHelp), {"ADDRESS", "ATTR", "VALUE"}},
      {"create", "create a node", {"TYPE", "NAME", "PARENT"}},
      {"delete", "delete a node", {"ADDRESS"}},
      {"load", "load a scene under PARENT as NODE", {"SCENE", "PARENT", "NODE"}}};
  for (const auto& [name, help, words] : builder) {
    CLI::App* sub = app.add_subcommand(name, help);
    for (std::size_t i = 0; i < words.size(); ++i) {
      sub->add_option(words[i], o.words[i])->required();
    }
    sub->callback([&o, count = words.size()] { o.wordCount = count; });
    c.builder.emplace_back(name, sub);
  }
  CLI::App* roa = app.add_subcommand("roa", "remote objects: get, set, call");
  roa->require_subcommand(1);
  c.roaGet = roa->add_subcommand("get", "print a remote attribute");
  c.roaGet->add_option("PATH", o.path, "object path '.' attribute")->required();
  c.roaSet = roa->add_subcommand("set", std::string("set a remote attribute. ") + kValueHelp);
  c.roaSet->add_option("PATH", o.path, "object path '.' attribute")->required();
  c.roaSet->add_option("VALUE", o.value, "typed value")->required();
  c.roaCall = roa->add_subcommand("call", "call a remote method, print its result");
  c.roaCall->add_option("PATH", o.path, "object path '.' method")->required();
  c.roaCall->add_option("ARGS", o.callArgs, "typed argument values");
  c.send = app.add_subcommand(
      "send", "send a file of set/create/delete/load/message/wait/callback lines as one action");
  c.send->add_option("FILE", o.file, "command file, - for standard input")->required();
  c.send->add_option("--transaction", o.transaction, "wrap the commands in this transaction");
  c.send
      ->add_option("--wait", o.waitSeconds,
                   "wait up to SECONDS for the server to confirm every callback line")
      ->check(CLI::NonNegativeNumber);
  c.watch = app.add_subcommand("watch", "print asynchronous events until interrupted");
  c.watch->add_option("--zone", o.watchZones, "also watch this zone (repeatable)");
  return c;
}

int run(const Commands& c, const Options& o) {
  registerClientClasses();
  // Quiet by default: the library logs what it recovers from by itself; failures that matter
  // reach the user as the one error line anyway.
  if (!o.verbose) AFCErrLog::instance().removeAllBackends();
  Session session(o);
  if (*c.version) runVersion(session);
  if (*c.zoneGet) runZoneGet(session, o.names);
  if (*c.zoneSet) runZoneSet(session, o.path, o.state);
  for (const auto& [name, sub] : c.builder) {
    if (*sub) runBuilderCommand(session, name, {o.words.begin(), o.words.begin() + o.wordCount});
  }
  if (*c.roaGet) {
    session.connect();
    session.printValue(o.path, session.client().remoteGetAttr(o.path).get());
  }
  if (*c.roaSet) {
    const std::unique_ptr<AFCAttribute> value = vxctlParseValue(o.value);
    session.connect();
    session.client().remoteSetAttr(o.path, value.get());
    session.printOk();
  }
  if (*c.roaCall) runRoaCall(session, o.path, o.callArgs);
  if (*c.send) runSendFile(session, o.file, o.transaction, o.waitSeconds);
  if (*c.watch) return runWatch(session, o.watchZones, o.json);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  AFCCrashDump::install();
  CLI::App app{"vxctl: command-line client of the render server", "vxctl"};
  Options options;
  const Commands commands = declare(app, options);
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp& e) {
    return app.exit(e);
  } catch (const CLI::CallForAllHelp& e) {
    return app.exit(e);
  } catch (const CLI::ParseError& e) {
    std::cerr << "vxctl: " << e.what() << " (try --help)\n";
    return 2;
  }
  try {
    return run(commands, options);
  } catch (const std::exception& e) {
    std::cerr << "vxctl: " << e.what() << '\n';
    return 1;
  }
}
