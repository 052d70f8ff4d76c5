#include "tools/vxctl/value_syntax.h"

#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <functional>
#include <vector>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"

namespace {

constexpr std::string_view kUndefined = "<undefined>";

std::string quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string lower(std::string_view text) {
  std::string out(text);
  for (char& c : out) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return out;
}

std::string_view trim(std::string_view text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) {
    text.remove_prefix(1);
  }
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) {
    text.remove_suffix(1);
  }
  return text;
}

// from_chars does not take a leading plus sign.
std::string_view withoutPlus(std::string_view text) {
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  return text;
}

template <class T>
T parseInteger(std::string_view text, std::string_view kind) {
  std::string_view digits = withoutPlus(text);
  T value{};
  auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc::result_out_of_range) {
    throw VXCtlSyntaxException("Integer out of " + std::string(kind) +
                               " range: " + std::string(text));
  }
  if (error != std::errc() || end != digits.data() + digits.size()) {
    throw VXCtlSyntaxException("Not an integer: " + quoted(text));
  }
  return value;
}

template <class T>
T parseReal(std::string_view text) {
  std::string_view digits = withoutPlus(text);
  T value{};
  auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (error == std::errc::result_out_of_range) {
    throw VXCtlSyntaxException("Number out of range: " + std::string(text));
  }
  if (error != std::errc() || end != digits.data() + digits.size()) {
    throw VXCtlSyntaxException("Not a number: " + quoted(text));
  }
  return value;
}

bool parseBoolWord(std::string_view text) {
  const std::string word = lower(text);
  if (word == "true" || word == "1" || word == "on" || word == "yes") return true;
  if (word == "false" || word == "0" || word == "off" || word == "no") return false;
  throw VXCtlSyntaxException("Not a bool: " + quoted(text) + " (true/false, on/off, yes/no, 1/0)");
}

// The numbers of "[a, b, ...]"; at least one.
std::vector<float> parseFloatList(std::string_view text) {
  if (text.empty() || text.front() != '[') {
    throw VXCtlSyntaxException("Not a vector: " + quoted(text) + " (write [a, b, ...])");
  }
  if (text.back() != ']') throw VXCtlSyntaxException("Unterminated vector: " + std::string(text));
  std::string_view inner = trim(text.substr(1, text.size() - 2));
  if (inner.empty()) throw VXCtlSyntaxException("Empty vector: " + std::string(text));
  std::vector<float> values;
  while (true) {
    const std::size_t comma = inner.find(',');
    const std::string_view item = trim(inner.substr(0, comma));
    if (item.empty()) throw VXCtlSyntaxException("Empty place in vector: " + std::string(text));
    values.push_back(parseReal<float>(item));
    if (comma == std::string_view::npos) return values;
    inner.remove_prefix(comma + 1);
  }
}

template <class Vector>
std::unique_ptr<AFCAttribute> fixedVector(std::string_view text, std::string_view kind) {
  const std::vector<float> values = parseFloatList(text);
  typename Vector::Value fixed{};
  if (values.size() != fixed.size()) {
    throw VXCtlSyntaxException(std::string(kind) + " takes " + std::to_string(fixed.size()) +
                               " numbers, not " + std::to_string(values.size()) + ": " +
                               std::string(text));
  }
  std::copy(values.begin(), values.end(), fixed.begin());
  return std::make_unique<Vector>(fixed);
}

std::unique_ptr<AFCAttribute> vec2s(std::string_view text) {
  const std::vector<float> values = parseFloatList(text);
  if (values.size() != 2) {
    throw VXCtlSyntaxException("vec2s takes 2 numbers, not " + std::to_string(values.size()) +
                               ": " + std::string(text));
  }
  // Read again as integers so that fractions are refused rather than cut.
  std::string_view inner = text.substr(1, text.size() - 2);
  const std::size_t comma = inner.find(',');
  return std::make_unique<AFCAttributeVec2s>(
      AFCAttributeVec2s::Value{parseInteger<int32_t>(trim(inner.substr(0, comma)), "32-bit"),
                               parseInteger<int32_t>(trim(inner.substr(comma + 1)), "32-bit")});
}

std::unique_ptr<AFCAttribute> anyVector(std::string_view text) {
  std::vector<float> values = parseFloatList(text);
  switch (values.size()) {
    case 2:
      return std::make_unique<AFCAttributeVec2f>(AFCAttributeVec2f::Value{values[0], values[1]});
    case 3:
      return std::make_unique<AFCAttributeVec3f>(
          AFCAttributeVec3f::Value{values[0], values[1], values[2]});
    case 4:
      return std::make_unique<AFCAttributeVec4f>(
          AFCAttributeVec4f::Value{values[0], values[1], values[2], values[3]});
    default:
      return std::make_unique<AFCAttributeVecNf>(std::move(values));
  }
}

std::unique_ptr<AFCAttribute> vecN(std::string_view text) {
  return std::make_unique<AFCAttributeVecNf>(parseFloatList(text));
}

struct Prefix {
  std::string_view name;
  std::function<std::unique_ptr<AFCAttribute>()> makeUndefined;
  std::function<std::unique_ptr<AFCAttribute>(std::string_view)> parse;
};

template <class T>
std::unique_ptr<AFCAttribute> undefined() {
  return std::make_unique<T>();
}

const std::vector<Prefix>& prefixes() {
  static const std::vector<Prefix> table = {
      {"int", undefined<AFCAttributeInt32>,
       [](std::string_view t) {
         return std::make_unique<AFCAttributeInt32>(parseInteger<int32_t>(t, "32-bit"));
       }},
      {"int64", undefined<AFCAttributeInt64>,
       [](std::string_view t) {
         return std::make_unique<AFCAttributeInt64>(parseInteger<int64_t>(t, "64-bit"));
       }},
      {"float", undefined<AFCAttributeFloat>,
       [](std::string_view t) { return std::make_unique<AFCAttributeFloat>(parseReal<float>(t)); }},
      {"double", undefined<AFCAttributeDouble>,
       [](std::string_view t) {
         return std::make_unique<AFCAttributeDouble>(parseReal<double>(t));
       }},
      {"bool", undefined<AFCAttributeBool>,
       [](std::string_view t) { return std::make_unique<AFCAttributeBool>(parseBoolWord(t)); }},
      {"string", undefined<AFCAttributeString>,
       [](std::string_view t) {
         return std::make_unique<AFCAttributeString>(
             !t.empty() && t.front() == '"' ? vxctlUnquote(t) : std::string(t));
       }},
      {"vec2f", undefined<AFCAttributeVec2f>,
       [](std::string_view t) { return fixedVector<AFCAttributeVec2f>(t, "vec2f"); }},
      {"vec3f", undefined<AFCAttributeVec3f>,
       [](std::string_view t) { return fixedVector<AFCAttributeVec3f>(t, "vec3f"); }},
      {"vec4f", undefined<AFCAttributeVec4f>,
       [](std::string_view t) { return fixedVector<AFCAttributeVec4f>(t, "vec4f"); }},
      {"color", undefined<AFCAttributeColor>,
       [](std::string_view t) { return fixedVector<AFCAttributeColor>(t, "color"); }},
      {"vecnf", undefined<AFCAttributeVecNf>, vecN},
      {"vec2s", undefined<AFCAttributeVec2s>, vec2s},
  };
  return table;
}

std::string knownPrefixes() {
  std::string names;
  for (const Prefix& prefix : prefixes()) {
    names += (names.empty() ? "" : ", ") + std::string(prefix.name);
  }
  return names;
}

// The length of a leading "word:" (letters, then letters or digits), or 0.
std::size_t prefixLength(std::string_view text) {
  if (text.empty() || !std::isalpha(static_cast<unsigned char>(text.front()))) return 0;
  std::size_t i = 1;
  while (i < text.size() && std::isalnum(static_cast<unsigned char>(text[i]))) ++i;
  return i < text.size() && text[i] == ':' ? i : 0;
}

std::unique_ptr<AFCAttribute> parsePrefixed(std::string_view name, std::string_view rest) {
  const std::string key = lower(name);
  for (const Prefix& prefix : prefixes()) {
    if (prefix.name != key) continue;
    if (rest == kUndefined) return prefix.makeUndefined();
    if (rest.empty() && key != "string") {
      throw VXCtlSyntaxException("Missing value after " + std::string(name) + ":");
    }
    return prefix.parse(rest);
  }
  throw VXCtlSyntaxException("Unknown type " + quoted(std::string(name) + ":") + " (known: " +
                             knownPrefixes() + "; quote the text to send it as a string)");
}

bool startsLikeNumber(std::string_view text) {
  auto digit = [&](std::size_t i) {
    return i < text.size() && std::isdigit(static_cast<unsigned char>(text[i]));
  };
  std::size_t i = text.front() == '+' || text.front() == '-' ? 1 : 0;
  if (i < text.size() && text[i] == '.') ++i;
  return digit(i);
}

std::unique_ptr<AFCAttribute> parseNumber(std::string_view text) {
  const bool real = text.find_first_of(".eE") != std::string_view::npos;
  try {
    if (real) return std::make_unique<AFCAttributeFloat>(parseReal<float>(text));
    return std::make_unique<AFCAttributeInt32>(parseInteger<int32_t>(text, "32-bit"));
  } catch (const VXCtlSyntaxException& e) {
    if (e.getMessage().starts_with("Integer out of")) {
      throw VXCtlSyntaxException(e.getMessage() + " (write int64: for a 64-bit integer)");
    }
    throw VXCtlSyntaxException("Not a number: " + quoted(text) +
                               " (quote it to send it as a string)");
  }
}

std::string shortest(double value, bool asFloat) {
  std::array<char, 64> text{};
  auto [end, error] = asFloat ? std::to_chars(text.begin(), text.end(), static_cast<float>(value))
                              : std::to_chars(text.begin(), text.end(), value);
  std::string out(text.data(), error == std::errc() ? end : text.data());
  // A float that prints like an integer needs a decimal point to read back as a float.
  if (std::isfinite(value) && out.find_first_of(".e") == std::string::npos) out += ".0";
  return out;
}

std::string vectorText(const AFCAttribute& value, bool integers) {
  std::string out = "[";
  for (int i = 0; i < value.getChannelCount(); ++i) {
    if (i > 0) out += ", ";
    if (!value.isChannelDefined(i)) continue;
    const double channel = value.getChannelValue(i);
    out += integers ? std::to_string(static_cast<int64_t>(channel)) : shortest(channel, true);
  }
  return out + "]";
}

std::string escaped(std::string_view text) {
  std::string out = "\"";
  for (char c : text) {
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        out += c;
    }
  }
  return out + "\"";
}

}  // namespace

std::string vxctlUnquote(std::string_view text) {
  if (text.size() < 2 || text.front() != '"' || text.back() != '"') {
    throw VXCtlSyntaxException("Unterminated string: " + std::string(text));
  }
  std::string out;
  for (std::size_t i = 1; i + 1 < text.size(); ++i) {
    char c = text[i];
    if (c == '"') throw VXCtlSyntaxException("Text after closing quote: " + std::string(text));
    if (c == '\\') {
      if (i + 2 >= text.size())
        throw VXCtlSyntaxException("Unterminated string: " + std::string(text));
      switch (text[++i]) {
        case '"':
          c = '"';
          break;
        case '\\':
          c = '\\';
          break;
        case 'n':
          c = '\n';
          break;
        case 't':
          c = '\t';
          break;
        default:
          throw VXCtlSyntaxException("Unknown escape \\" + std::string(1, text[i]) + " in " +
                                     std::string(text));
      }
    }
    out += c;
  }
  return out;
}

std::unique_ptr<AFCAttribute> vxctlParseValue(std::string_view text) {
  if (text.empty()) throw VXCtlSyntaxException("Empty value");
  if (const std::size_t length = prefixLength(text)) {
    return parsePrefixed(text.substr(0, length), text.substr(length + 1));
  }
  if (text.front() == '"') return std::make_unique<AFCAttributeString>(vxctlUnquote(text));
  if (text.front() == '[') return anyVector(text);
  const std::string word = lower(text);
  if (word == "true" || word == "false") return std::make_unique<AFCAttributeBool>(word == "true");
  if (startsLikeNumber(text)) return parseNumber(text);
  return std::make_unique<AFCAttributeString>(std::string(text));
}

std::string vxctlTypeName(const AFCAttribute& value) {
  const std::string& name = value.getClass()->getName();
  static const std::array<std::pair<std::string_view, std::string_view>, 12> names = {{
      {"AFCAttributeInt32", "int"},
      {"AFCAttributeInt64", "int64"},
      {"AFCAttributeFloat", "float"},
      {"AFCAttributeDouble", "double"},
      {"AFCAttributeBool", "bool"},
      {"AFCAttributeString", "string"},
      {"AFCAttributeVec2f", "vec2f"},
      {"AFCAttributeVec3f", "vec3f"},
      {"AFCAttributeVec4f", "vec4f"},
      {"AFCAttributeColor", "color"},
      {"AFCAttributeVecNf", "vecnf"},
      {"AFCAttributeVec2s", "vec2s"},
  }};
  for (const auto& [className, typeName] : names) {
    if (className == name) return std::string(typeName);
  }
  return name;
}

std::string vxctlValueToText(const AFCAttribute& value) {
  const std::string type = vxctlTypeName(value);
  if (!value.isDefined())
    return type == value.getClass()->getName() ? std::string(kUndefined)
                                               : type + ":" + std::string(kUndefined);
  if (type == "int" || type == "bool") return lower(value.toString());
  if (type == "int64") return "int64:" + value.toString();
  if (type == "string") return escaped(value.toString());
  if (type == "float" || type == "double") {
    const std::string number = shortest(value.getChannelValue(0), type == "float");
    return type == "double" || !std::isfinite(value.getChannelValue(0)) ? type + ":" + number
                                                                        : number;
  }
  if (type == "vec2s") return "vec2s:" + vectorText(value, true);
  const std::string list = vectorText(value, false);
  const int n = value.getChannelCount();
  const bool plain = (type == "vec2f" || type == "vec3f" || type == "vec4f") ||
                     (type == "vecnf" && (n == 1 || n > 4));
  if (plain) return list;
  if (type == "color" || type == "vecnf") return type + ":" + list;
  return value.toString();
}
