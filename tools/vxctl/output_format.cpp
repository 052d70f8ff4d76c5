#include "tools/vxctl/output_format.h"

#include <algorithm>
#include <cstdio>

#include "tools/vxctl/value_syntax.h"

namespace {

bool needsQuotes(const std::string& text) {
  return text.empty() || text.find_first_of(" \t\r\n\"=\\") != std::string::npos;
}

// Bytes that are not UTF-8 are replaced rather than failing on a server's 8-bit text.
std::string dumped(const VXCtlJson& value) {
  return value.dump(-1, ' ', false, VXCtlJson::error_handler_t::replace);
}

std::string humanValue(const VXCtlJson& value) {
  if (!value.is_string()) return dumped(value);
  const std::string& text = value.get_ref<const std::string&>();
  // JSON's string escapes are the ones people expect on one line.
  return needsQuotes(text) ? dumped(value) : text;
}

}  // namespace

std::string vxctlTimeText(VXCtlClock::time_point time) {
  using namespace std::chrono;
  const auto millis = floor<milliseconds>(time);
  const auto day = floor<days>(millis);
  const year_month_day date{day};
  const hh_mm_ss clock{millis - day};
  char text[32];
  std::snprintf(
      text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
  return text;
}

VXCtlJson vxctlValueJson(const AFCAttribute* value) {
  if (value == nullptr || !value->isDefined()) return nullptr;
  const std::string type = vxctlTypeName(*value);
  if (type == "int" || type == "int64") return std::stoll(value->toString());
  if (type == "float" || type == "double") return value->getChannelValue(0);
  if (type == "bool") return value->getChannelValue(0) != 0.0;
  if (type == "string") return value->toString();
  if (type.starts_with("vec") || type == "color") {
    VXCtlJson channels = VXCtlJson::array();
    for (int i = 0; i < value->getChannelCount(); ++i) {
      if (value->isChannelDefined(i)) {
        channels.push_back(value->getChannelValue(i));
      } else {
        channels.push_back(nullptr);
      }
    }
    return channels;
  }
  return value->toString();
}

std::string vxctlHumanFields(const VXCtlJson& fields) {
  std::string line;
  for (const auto& [key, value] : fields.items()) {
    if (!line.empty()) line += ' ';
    line += key + "=" + humanValue(value);
  }
  return line;
}

std::string vxctlEventLine(const VXCtlEvent& event) {
  std::string line = vxctlTimeText(event.time) + " " + event.kind;
  if (!event.fields.empty()) line += " " + vxctlHumanFields(event.fields);
  return line;
}

std::string vxctlEventJson(const VXCtlEvent& event) {
  VXCtlJson object = {{"time", vxctlTimeText(event.time)}, {"event", event.kind}};
  for (const auto& [key, value] : event.fields.items()) object[key] = value;
  return dumped(object);
}

VXCtlEvent vxctlErrLogEvent(VXCtlClock::time_point time, const AFCErrLogEvent& entry) {
  VXCtlEvent event{time, "errlog"};
  event.fields["level"] = entry.getTypeString();
  event.fields["area"] = entry.getArea();
  event.fields["source"] =
      entry.getSourceFileName() + ":" + std::to_string(entry.getSourceLineNumber());
  event.fields["serverTime"] = entry.getTimeString();
  event.fields["message"] = entry.getMessage();
  return event;
}

std::vector<VXCtlEvent> vxctlZoneEvents(VXCtlClock::time_point time, const VXZonesState& zones) {
  std::vector<std::pair<std::string, bool>> sorted(zones.getZones().begin(),
                                                   zones.getZones().end());
  std::sort(sorted.begin(), sorted.end());
  std::vector<VXCtlEvent> events;
  for (const auto& [zone, state] : sorted) {
    VXCtlEvent event{time, "zone"};
    event.fields["zone"] = zone;
    event.fields["state"] = state ? "on" : "off";
    events.push_back(std::move(event));
  }
  return events;
}

VXCtlEvent vxctlSimpleEvent(VXCtlClock::time_point time, std::string kind, std::string key,
                            VXCtlJson value) {
  VXCtlEvent event{time, std::move(kind)};
  event.fields[key] = std::move(value);
  return event;
}
