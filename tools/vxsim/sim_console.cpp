#include "tools/vxsim/sim_console.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <nlohmann/json.hpp>

#include "foundation/errlog.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_options.h"

namespace {

// Bounds the output a burst queues for every client at once.
constexpr std::size_t kMaxBurst = 100000;

// The first word and the rest after the blanks that follow it.
std::pair<std::string, std::string> splitWord(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  if (begin == std::string::npos) return {};
  const std::size_t end = std::min(text.find(' ', begin), text.size());
  const std::size_t rest = std::min(text.find_first_not_of(' ', end), text.size());
  return {text.substr(begin, end - begin), text.substr(rest)};
}

// A level name (any case) or number; -1 when it is neither.
int parseLevel(std::string word) {
  std::transform(word.begin(), word.end(), word.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  for (unsigned level = AFC_ERRLOG_NONE; level <= AFC_ERRLOG_ERROR; ++level) {
    if (word == afcErrLogLevelName(level) || word == std::to_string(level)) {
      return static_cast<int>(level);
    }
  }
  return -1;
}

void switchZone(VXSimHub& hub, const std::string& arguments, std::ostream& out) {
  const auto [zone, state] = splitWord(arguments);
  if (zone.empty() || (state != "on" && state != "off")) {
    out << "usage: zone NAME on|off\n";
    return;
  }
  VXZonesState zones;
  zones.set(zone, state == "on");
  hub.setZones(zones);
}

void sendErrLog(VXSimHub& hub, const std::string& arguments, std::ostream& out) {
  const auto [word, text] = splitWord(arguments);
  const int level = parseLevel(word);
  if (level < 0 || text.empty()) {
    out << "usage: errlog LEVEL TEXT (LEVEL: DEBUG, INFO, WARNING, ERROR or 0-4)\n";
    return;
  }
  hub.reportError(static_cast<unsigned>(level), text);
}

// COUNT server messages "PREFIX0" to "PREFIX<COUNT-1>" in one go, to load a client with events.
void burstMessages(VXSimHub& hub, const std::string& arguments, std::ostream& out) {
  const auto [word, prefix] = splitWord(arguments);
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), count);
  if (word.empty() || error != std::errc() || end != word.data() + word.size() ||
      count > kMaxBurst) {
    out << "usage: message-burst COUNT PREFIX (COUNT up to " << kMaxBurst << ")\n";
    return;
  }
  for (std::size_t i = 0; i < count; ++i) hub.broadcastMessage(prefix + std::to_string(i));
}

using Json = nlohmann::ordered_json;

Json nodeJson(const VXSimNode& node) {
  Json json = {{"name", node.name},
               {"type", node.type},
               {"kind", node.kind == VXSimNode::Kind::Effect ? "effect" : "node"}};
  if (node.kind == VXSimNode::Kind::Effect) json["active"] = node.active;
  json["scene"] = node.sceneName;
  json["attributes"] = Json::object();
  for (const auto& [name, value] : node.attributes) json["attributes"][name] = value->toString();
  json["children"] = Json::array();
  for (const auto& child : node.children) json["children"].push_back(nodeJson(*child));
  return json;
}

void printTree(VXSimHub& hub, const std::string& arguments, std::ostream& out) {
  const std::string option = splitWord(arguments).first;
  if (option.empty()) {
    out << hub.getScene().dumpTree();
  } else if (option == "--json" && splitWord(arguments).second.empty()) {
    // A byte that is not UTF-8 becomes U+FFFD rather than failing the whole tree.
    out << nodeJson(hub.getScene().getRoot()).dump(-1, ' ', false, Json::error_handler_t::replace)
        << '\n';
  } else {
    out << "usage: tree [--json]\n";
  }
}

void sendPick(VXSimHub& hub, const std::string& arguments, std::ostream& out) {
  if (arguments.empty()) {
    out << "usage: pick XML\n";
    return;
  }
  hub.broadcastPickResult(arguments);
}

void injectFault(VXSimHub& hub, const std::string& arguments, std::ostream& out) {
  try {
    if (!arguments.empty()) hub.getFaults().apply(arguments);
    out << hub.getFaults().describe() << '\n';
  } catch (const VXSimUsageException&) {
    out << "usage: fault [" << kVXSimFaultUsage << "]\n";
  }
}

void dropAll(VXSimHub& hub, const std::string&, std::ostream&) {
  for (VXSimConnection* connection : hub.getConnections()) connection->markClosed();
}

using Command = void (*)(VXSimHub& hub, const std::string& arguments, std::ostream& out);

const std::pair<const char*, Command> kCommands[] = {
    {"tree", printTree},
    {"zone", switchZone},
    {"message",
     [](VXSimHub& hub, const std::string& text, std::ostream&) { hub.broadcastMessage(text); }},
    {"message-burst", burstMessages},
    {"pick", sendPick},
    {"errlog", sendErrLog},
    {"fault", injectFault},
    {"drop", dropAll},
};

}  // namespace

VXSimConsoleResult vxSimConsoleCommand(VXSimHub& hub, const std::string& line, std::ostream& out) {
  const auto [command, arguments] = splitWord(line);
  if (command.empty()) return VXSimConsoleResult::Continue;
  if (command == "quit") return VXSimConsoleResult::Quit;
  const auto* known =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [&name = command](const auto& entry) { return name == entry.first; });
  if (known != std::end(kCommands)) {
    known->second(hub, arguments, out);
  } else {
    out << "unknown command: " << command
        << " (tree [--json], zone NAME on|off, message TEXT, message-burst COUNT PREFIX, pick XML, "
           "errlog LEVEL TEXT, fault ["
        << kVXSimFaultUsage << "], drop, quit)\n";
  }
  out.flush();
  return VXSimConsoleResult::Continue;
}
