#include "foundation/target_address.h"

namespace {
constexpr char kSeparator = '/';

// Calls take(component) for every maximal run of characters without a separator, in order.
template <class Take>
void forEachComponent(std::string_view text, Take take) {
  std::size_t begin = 0;
  while (begin < text.size()) {
    if (text[begin] == kSeparator) {
      ++begin;
      continue;
    }
    std::size_t end = text.find(kSeparator, begin);
    if (end == std::string_view::npos) end = text.size();
    take(text.substr(begin, end - begin));
    begin = end;
  }
}

}  // namespace

AFCTargetIDNotFoundException::AFCTargetIDNotFoundException(uint32_t id)
    : AFCTargetNotFoundException("TargetID " + std::to_string(id) + " not found!") {}

AFCTargetNameNotFoundException::AFCTargetNameNotFoundException(std::string_view name,
                                                               std::string_view kind)
    : AFCTargetNotFoundException(std::string(kind) + " '" + std::string(name) + "' not found!") {}

AFCDuplicateTargetNameException::AFCDuplicateTargetNameException(std::string_view name,
                                                                 std::string_view detail)
    : AFCException("Duplicate name '" + std::string(name) + "'" +
                   (detail.empty() ? std::string() : ": " + std::string(detail)) + ".") {}

AFCTargetAddress AFCTargetAddress::parse(std::string_view text) {
  AFCTargetAddress address;
  forEachComponent(text, [&](std::string_view c) { address.components_.emplace_back(c); });
  return address;
}

std::string AFCTargetAddress::join(std::string_view prefix, std::string_view path) {
  std::string out;
  out.reserve(prefix.size() + 1 + path.size());
  // Components are never empty here, so an empty out means nothing was written yet.
  const auto append = [&](std::string_view c) {
    if (!out.empty()) out += kSeparator;
    out += c;
  };
  forEachComponent(prefix, append);
  forEachComponent(path, append);
  return out;
}

std::string AFCTargetAddress::toString() const {
  std::string out;
  for (std::size_t i = 0; i < components_.size(); ++i) {
    if (i > 0) out += kSeparator;
    out += components_[i];
  }
  return out;
}

AFCTargetAddress AFCTargetAddress::withPrefix(const AFCTargetAddress& prefix) const {
  std::vector<std::string> joined;
  joined.reserve(prefix.size() + size());
  joined.insert(joined.end(), prefix.components_.begin(), prefix.components_.end());
  joined.insert(joined.end(), components_.begin(), components_.end());
  return AFCTargetAddress(std::move(joined));
}

const std::string& AFCTargetAddress::first() const {
  if (components_.empty()) throw AFCEmptyTargetAddressException();
  return components_.front();
}

const std::string& AFCTargetAddress::last() const {
  if (components_.empty()) throw AFCEmptyTargetAddressException();
  return components_.back();
}
