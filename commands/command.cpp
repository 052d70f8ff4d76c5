#include "commands/command.h"

#include "foundation/target_address.h"

AFC_IMPLEMENT_CLASS(VXCommand, AFCPersistent)
VX_IMPLEMENT_UNLISTED_COMMAND(VXCommandWithTarget, VXCommand)

std::string VXCommand::toString() const { return "class " + getClass()->getName(); }

void VXCommand::applyNodePrefix(std::string_view) {}

void VXCommand::bindDefaultName(std::string_view) {}

void VXCommandWithTarget::applyNodePrefix(std::string_view prefix) {
  target_ = prefixed(prefix, target_);
}

std::string VXCommandWithTarget::prefixed(std::string_view prefix, const std::string& address) {
  if (prefix.empty()) return address;
  return AFCTargetAddress::join(prefix, address);
}
