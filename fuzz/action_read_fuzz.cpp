// Feeds arbitrary bytes to the persistent reader as one action, made through the class registry
// with all its command records, then shows and writes back whatever was read. Any failure must
// be an AFCException.
#include <cstddef>
#include <cstdint>
#include <memory>

#include "commands/action.h"
#include "commands/register.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool registered = (registerCommandClasses(), true);
  (void)registered;
  AFCPersistentInputStreamBuffer in(data, size);
  try {
    std::unique_ptr<VXAction> action = in.readOwnedObject<VXAction>();
    if (!action) return 0;
    for (const auto& record : action->getCommands()) {
      (void)record->toString();
      std::unique_ptr<VXCommand> copy(record->clone());
      copy->applyNodePrefix("Root/t");
      copy->bindDefaultName("T");
    }
    AFCPersistentOutputStreamBuffer out;
    out.writeObject(action.get());
  } catch (const AFCException&) {
  }
  return 0;
}
