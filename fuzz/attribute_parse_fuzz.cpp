// Parses arbitrary text into every attribute kind, then checks that the parsed value survives a
// trip through the stream: written and read back, it has the same key. 8-bit strings travel as
// UTF-16, so text that is not valid in the default character set comes back with replacement
// characters; for them the check is that a second trip changes nothing more.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>
#include <vector>

#include "foundation/attribute.h"
#include "foundation/attribute_string.h"
#include "foundation/enum.h"

namespace {
std::vector<std::unique_ptr<AFCAttribute>> everyKind() {
  std::vector<std::unique_ptr<AFCAttribute>> kinds;
  for (const std::string& name : AFCClass::registeredNames()) {
    const AFCClass* record = AFCClass::forName(name);
    if (!record->isSubclassOf(AFCAttribute::staticClass()) || name == "AFCAttributeEnum") continue;
    if (AFCObject* object = record->newInstance()) {
      kinds.emplace_back(static_cast<AFCAttribute*>(object));
    }
  }
  kinds.push_back(
      std::make_unique<AFCAttributeEnum>(AFCEnumClass::forName("VXChannelBeyondEnum")));
  return kinds;
}

std::unique_ptr<AFCAttribute> streamTrip(const AFCAttribute& value) {
  AFCPersistentOutputStreamBuffer out;
  out.writeObject(&value);
  AFCPersistentInputStreamBuffer in(AFCRef<AFCBuffer>(&out.getBuffer()));
  return in.readOwnedObject<AFCAttribute>();
}

void checkStreamTrip(const AFCAttribute& value) {
  std::unique_ptr<AFCAttribute> first = streamTrip(value);
  const bool lossy = value.getClass() == &AFCAttributeString::staticClass();
  const AFCAttribute& reference = lossy ? *first : value;
  std::unique_ptr<AFCAttribute> back = lossy ? streamTrip(*first) : std::move(first);
  if (back->getKey() != reference.getKey() || back->isDefined() != reference.isDefined()) {
    std::abort();
  }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool registered = (registerFoundationClasses(), true);
  (void)registered;
  static const std::vector<std::unique_ptr<AFCAttribute>> kinds = everyKind();
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const auto& kind : kinds) {
    std::unique_ptr<AFCAttribute> value(kind->clone());
    value->fromString(text);
    (void)value->toString();
    try {
      checkStreamTrip(*value);
    } catch (const AFCException&) {
      // Calendar kinds carry their text on the wire and refuse a defined value whose
      // fields are out of range; nothing else may fail.
      if (!value->getClass()->getName().starts_with("AFCAttributeDate") &&
          !value->getClass()->getName().starts_with("AFCAttributeTime")) {
        std::abort();
      }
    }
  }
  return 0;
}
