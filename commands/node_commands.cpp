#include "commands/node_commands.h"

#include <utility>

#include "foundation/exception.h"

AFC_IMPLEMENT_CLASS(VXSetAttributeCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXCreateNodeCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXCopyNodeCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXCreateEffectCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXRenameTargetCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXDeleteNodeCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXActivateEffectCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXDeleteEffectCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXPreloadCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXLoadSceneCommand, VXCommandWithTarget)

// --- VXSetAttributeCommand

VXSetAttributeCommand::VXSetAttributeCommand(const VXSetAttributeCommand& other)
    : AFCDieBase(other),  // a virtual base: the most derived class initialises it
      VXCommandWithTarget(other),
      attrName_(other.attrName_),
      value_(other.value_ ? other.value_->clone() : nullptr) {}

VXSetAttributeCommand::VXSetAttributeCommand(std::string target, std::string attrName,
                                             std::unique_ptr<AFCAttribute> value)
    : VXCommandWithTarget(std::move(target)),
      attrName_(std::move(attrName)),
      value_(std::move(value)) {}

std::string VXSetAttributeCommand::toString() const {
  return "Set " + target_ + ":" + attrName_ + "=" + (value_ ? value_->toString() : "<null>");
}

void VXSetAttributeCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(target_);
  out.writeString(attrName_);
  out.writeObject(value_.get());
}

void VXSetAttributeCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  target_ = in.readString();
  attrName_ = in.readString();
  value_ = in.readOwnedObject<AFCAttribute>();
  if (!value_) throw AFCNullPointerException("Attribute");
}

// --- VXCreateNodeCommand

VXCreateNodeCommand::VXCreateNodeCommand(std::string nodeType, std::string nodeName,
                                         std::string target)
    : VXCommandWithTarget(std::move(target)),
      nodeType_(std::move(nodeType)),
      nodeName_(std::move(nodeName)) {}

std::string VXCreateNodeCommand::toString() const {
  return "Create node " + nodeType_ + " as " + target_ + "/" + nodeName_;
}

void VXCreateNodeCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(nodeType_);
  out.writeString(nodeName_);
  out.writeString(target_);
}

void VXCreateNodeCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  nodeType_ = in.readString();
  nodeName_ = in.readString();
  target_ = in.readString();
}

// --- VXCopyNodeCommand

VXCopyNodeCommand::VXCopyNodeCommand(std::string srcAddress, std::string nodeName,
                                     std::string parentAddress)
    : srcAddress_(std::move(srcAddress)),
      nodeName_(std::move(nodeName)),
      parentAddress_(std::move(parentAddress)) {}

std::string VXCopyNodeCommand::toString() const {
  return "CopyNode " + srcAddress_ + " to " + parentAddress_ + "/" + nodeName_;
}

void VXCopyNodeCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(srcAddress_);
  out.writeString(nodeName_);
  out.writeString(parentAddress_);
}

void VXCopyNodeCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  srcAddress_ = in.readString();
  nodeName_ = in.readString();
  parentAddress_ = in.readString();
}

// --- VXCreateEffectCommand

VXCreateEffectCommand::VXCreateEffectCommand(std::string effectType, std::string effectName,
                                             std::string target)
    : VXCommandWithTarget(std::move(target)),
      effectType_(std::move(effectType)),
      effectName_(std::move(effectName)) {}

std::string VXCreateEffectCommand::toString() const {
  return "Create effect " + effectType_ + " as " + target_ + "/" + effectName_;
}

void VXCreateEffectCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(effectType_);
  out.writeString(effectName_);
  out.writeString(target_);
}

void VXCreateEffectCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  effectType_ = in.readString();
  effectName_ = in.readString();
  target_ = in.readString();
}

// --- VXRenameTargetCommand

VXRenameTargetCommand::VXRenameTargetCommand(std::string target, std::string newName)
    : VXCommandWithTarget(std::move(target)), newName_(std::move(newName)) {}

std::string VXRenameTargetCommand::toString() const {
  return "Rename " + target_ + " to " + newName_;
}

void VXRenameTargetCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(target_);
  out.writeString(newName_);
}

void VXRenameTargetCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  target_ = in.readString();
  newName_ = in.readString();
}

// --- the target-only records

#define VX_IMPLEMENT_TARGET_ONLY_COMMAND(Name, text)                \
  std::string Name::toString() const { return text " " + target_; } \
  void Name::write(AFCPersistentOutputStream& out) const {          \
    VXCommandWithTarget::write(out);                                \
    out.writeString(target_);                                       \
  }                                                                 \
  void Name::read(AFCPersistentInputStream& in) {                   \
    VXCommandWithTarget::read(in);                                  \
    target_ = in.readString();                                      \
  }

VX_IMPLEMENT_TARGET_ONLY_COMMAND(VXDeleteNodeCommand, "DeleteNode")
VX_IMPLEMENT_TARGET_ONLY_COMMAND(VXActivateEffectCommand, "ActivateEffect")
VX_IMPLEMENT_TARGET_ONLY_COMMAND(VXDeleteEffectCommand, "DeleteEffect")
VX_IMPLEMENT_TARGET_ONLY_COMMAND(VXPreloadCommand, "PreloadCommand")
#undef VX_IMPLEMENT_TARGET_ONLY_COMMAND

// --- VXLoadSceneCommand

namespace {
// Written before an extra address, so that readers of the older form (without one) and of the
// newer form tell them apart by the kind of the first value.
constexpr int8_t kExtraAddressMark = 2;
}  // namespace

VXLoadSceneCommand::VXLoadSceneCommand(std::string sceneName, std::string target,
                                       std::string nodeName, std::string extraAddress)
    : VXCommandWithTarget(std::move(target)),
      sceneName_(std::move(sceneName)),
      nodeName_(std::move(nodeName)),
      extraAddress_(std::move(extraAddress)) {}

void VXLoadSceneCommand::applyNodePrefix(std::string_view prefix) {
  VXCommandWithTarget::applyNodePrefix(prefix);
  // An absent extra address stays absent: prefixing it would make one up.
  if (!extraAddress_.empty()) extraAddress_ = prefixed(prefix, extraAddress_);
}

std::string VXLoadSceneCommand::toString() const {
  return "LoadScene " + sceneName_ + " to parent " + target_;
}

void VXLoadSceneCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  if (!extraAddress_.empty()) {
    out.writeInt8(kExtraAddressMark);
    out.writeString(extraAddress_);
  }
  out.writeString(sceneName_);
  out.writeString(target_);
  out.writeString(nodeName_);
}

void VXLoadSceneCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  extraAddress_.clear();
  if (in.peekHeader() == AFC_PC_INT8) {
    in.readInt8();
    extraAddress_ = in.readString();
  }
  sceneName_ = in.readString();
  target_ = in.readString();
  nodeName_ = in.readString();
}
