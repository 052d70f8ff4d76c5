#include "tools/vxsim/sim_options.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "tools/vxsim/sim_faults.h"

namespace {

constexpr uint32_t kDebugBuildBit = 0x40000000u;

uint32_t parseNumber(std::string_view text, std::string_view what, uint64_t max) {
  uint64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || value > max) {
    throw VXSimUsageException("Bad " + std::string(what) + ": \"" + std::string(text) + "\"");
  }
  return static_cast<uint32_t>(value);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  std::size_t start = 0;
  for (std::size_t at = text.find(separator); at != std::string_view::npos;
       at = text.find(separator, start)) {
    parts.push_back(text.substr(start, at - start));
    start = at + 1;
  }
  parts.push_back(text.substr(start));
  return parts;
}

VXSimVersion parseRawWords(const std::vector<std::string_view>& words) {
  constexpr uint64_t kMax = std::numeric_limits<uint32_t>::max();
  std::vector<uint32_t> values;
  for (std::string_view word : words) values.push_back(parseNumber(word, "version word", kMax));
  if (values.size() == 4) values.insert(values.begin(), 0);
  if (values.size() != 5) throw VXSimUsageException("Bad version: four or five words expected");
  return {values[0], values[1], values[2], values[3], values[4]};
}

}  // namespace

uint32_t VXSimVersion::combined() const {
  const uint64_t release = minor <= 100 ? uint64_t{minor} + 100 : minor - 100;
  const uint64_t value = uint64_t{major & 0x3FFFFFFFu} * 1000 + release;
  return static_cast<uint32_t>(std::min<uint64_t>(value, std::numeric_limits<uint32_t>::max()));
}

VXSimVersion vxSimParseVersion(const std::string& text) {
  std::string_view rest = text;
  if (rest.find(',') != std::string_view::npos) return parseRawWords(split(rest, ','));
  VXSimVersion version;
  bool debug = false;
  if (rest.ends_with(" debug")) {
    debug = true;
    rest.remove_suffix(6);
  }
  std::string_view minor;
  bool hasMinor = false;
  uint32_t minorOffset = 0;
  if (const std::size_t dot = rest.find('.'); dot != std::string_view::npos) {
    minor = rest.substr(dot + 1);
    rest = rest.substr(0, dot);
    hasMinor = true;
  } else if (const std::size_t beta = rest.find("beta"); beta != std::string_view::npos) {
    minor = rest.substr(beta + 4);
    rest = rest.substr(0, beta);
    hasMinor = true;
    minorOffset = 100;
  }
  version.major = parseNumber(rest, "version", 0x3FFFFFFFu);
  version.minor = hasMinor ? parseNumber(minor, "version", 100) : 0;
  if (minorOffset != 0 && version.minor == 0) throw VXSimUsageException("Bad version: beta 0");
  version.minor += minorOffset;
  if (debug) version.major |= kDebugBuildBit;
  return version;
}

const char* const kVXSimUsage =
    "usage: vxsim [--port N] [--host ADDRESS] [--password P] [--version V]\n"
    "             [--control-port N] [--fault ORDER]...\n"
    "  --port N          port to listen on (default 6260; 0 picks a free one)\n"
    "  --host ADDRESS    IPv4 address to listen on (default 127.0.0.1)\n"
    "  --password P      ask clients to log in with this password\n"
    "  --version V       version to report: 2295.7, 2295beta3, '2295.7 debug' or\n"
    "                    the raw words WORD1,WORD2,MAJOR,MINOR (default 2295.7)\n"
    "  --control-port N  take console commands on 127.0.0.1:N too (0 picks a free one)\n"
    "  --fault ORDER     inject a fault from the start: close N | magic | length |\n"
    "                    delay MS\n"
    "console: tree [--json] | zone NAME on|off | message TEXT | message-burst COUNT PREFIX |\n"
    "         pick XML | errlog LEVEL TEXT | fault [close N|magic|length|delay MS|off] |\n"
    "         drop | quit\n";

VXSimOptions vxSimParseArguments(const std::vector<std::string>& arguments) {
  VXSimOptions options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    std::string name = arguments[i];
    std::string value;
    const std::size_t equals = name.find('=');
    const bool inlineValue = equals != std::string::npos;
    if (inlineValue) {
      value = name.substr(equals + 1);
      name.resize(equals);
    }
    if (name == "--help" || name == "-h") {
      options.help = true;
      continue;
    }
    if (name != "--port" && name != "--host" && name != "--password" && name != "--version" &&
        name != "--control-port" && name != "--fault") {
      throw VXSimUsageException("Unknown option: " + name);
    }
    if (!inlineValue) {
      if (i + 1 >= arguments.size()) throw VXSimUsageException("Missing value for " + name);
      value = arguments[++i];
    }
    if (name == "--port") {
      options.port = static_cast<int>(parseNumber(value, "port", 65535));
    } else if (name == "--host") {
      options.host = value;
    } else if (name == "--password") {
      options.password = value;
    } else if (name == "--control-port") {
      options.controlPort = static_cast<int>(parseNumber(value, "control port", 65535));
    } else if (name == "--fault") {
      VXSimFaults().apply(value);  // refused here rather than after the server started
      options.faults.push_back(value);
    } else {
      options.version = vxSimParseVersion(value);
    }
  }
  return options;
}
