#include "tools/vxsim/sim_faults.h"

#include <charconv>
#include <sstream>

#include "tools/vxsim/sim_options.h"

namespace {

uint32_t parseCount(const std::string& order, const std::string& text, uint32_t min, uint32_t max) {
  uint32_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (text.empty() || error != std::errc() || end != text.data() + text.size() || value < min ||
      value > max) {
    throw VXSimUsageException("Bad fault: \"" + order + "\"");
  }
  return value;
}

}  // namespace

const char* const kVXSimFaultUsage = "close N|magic|length|delay MS|off";

void VXSimFaults::apply(const std::string& order) {
  std::istringstream words(order);
  std::string kind;
  std::string argument;
  std::string extra;
  words >> kind >> argument >> extra;
  const bool takesArgument = kind == "close" || kind == "delay";
  if (!extra.empty() || argument.empty() == takesArgument) {
    throw VXSimUsageException("Bad fault: \"" + order + "\"");
  }
  if (kind == "close") {
    closeAfter = parseCount(order, argument, 1, UINT32_MAX);
    closeOrder = ++lastOrder;
  } else if (kind == "delay") {
    delayMs = parseCount(order, argument, 0, kMaxDelayMs);
  } else if (kind == "magic") {
    magicOrder = ++lastOrder;
  } else if (kind == "length") {
    lengthOrder = ++lastOrder;
  } else if (kind == "off") {
    const uint64_t last = lastOrder;  // numbers are never reused
    *this = VXSimFaults();
    lastOrder = last;
  } else {
    throw VXSimUsageException("Bad fault: \"" + order + "\"");
  }
}

std::string VXSimFaults::describe() const {
  std::string orders;
  auto add = [&orders](const std::string& order) {
    orders += (orders.empty() ? " " : ", ") + order;
  };
  if (closeOrder != 0) add("close after " + std::to_string(closeAfter) + " packets");
  if (magicOrder != 0) add("bad magic");
  if (lengthOrder != 0) add("bad length");
  if (delayMs != 0) add("delay " + std::to_string(delayMs) + " ms");
  return "faults:" + (orders.empty() ? std::string(" none") : orders);
}
