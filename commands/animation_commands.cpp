#include "commands/animation_commands.h"

#include "foundation/exception.h"

VX_IMPLEMENT_UNLISTED_COMMAND(VXActivateAnimationCommandBase, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXActivateAnimationCommand, VXActivateAnimationCommandBase)
AFC_IMPLEMENT_CLASS(VXActivateClientAnimationCommand, VXActivateAnimationCommandBase)
AFC_IMPLEMENT_CLASS(VXStoreLocalAnimationCommand, VXCommandWithTarget)

namespace {

// A record made by the default constructor has no animation; it goes out as an empty one
// rather than crashing the writer.
void writeAnimation(AFCPersistentOutputStream& out, const AFCRef<VXAnimation>& animation) {
  if (animation) {
    animation->write(out);
  } else {
    VXAnimation().write(out);
  }
}

AFCRef<VXAnimation> readAnimation(AFCPersistentInputStream& in) {
  AFCRef<VXAnimation> animation(new VXAnimation);
  animation->read(in);
  return animation;
}

}  // namespace

// --- VXActivateAnimationCommandBase

std::string VXActivateAnimationCommandBase::toString() const {
  return "Animate target=" + target_ + ", opts=(" + options_.toString() + ")";
}

void VXActivateAnimationCommandBase::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(target_);
  options_.write(out);
}

void VXActivateAnimationCommandBase::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  target_ = in.readString();
  options_.read(in);
}

// --- VXActivateAnimationCommand

std::string VXActivateAnimationCommand::toString() const {
  return VXActivateAnimationCommandBase::toString() + ", Name=" + animName_;
}

void VXActivateAnimationCommand::write(AFCPersistentOutputStream& out) const {
  VXActivateAnimationCommandBase::write(out);
  out.writeString(animName_);
}

void VXActivateAnimationCommand::read(AFCPersistentInputStream& in) {
  VXActivateAnimationCommandBase::read(in);
  animName_ = in.readString();
}

// --- VXActivateClientAnimationCommand

std::string VXActivateClientAnimationCommand::toString() const {
  return VXActivateAnimationCommandBase::toString() + ", Obj";
}

void VXActivateClientAnimationCommand::write(AFCPersistentOutputStream& out) const {
  VXActivateAnimationCommandBase::write(out);
  writeAnimation(out, animation_);
}

void VXActivateClientAnimationCommand::read(AFCPersistentInputStream& in) {
  VXActivateAnimationCommandBase::read(in);
  animation_ = readAnimation(in);
}

// --- VXStoreLocalAnimationCommand

std::string VXStoreLocalAnimationCommand::toString() const {
  return "StoreLocalAnimation " + animName_ + " on " + target_;
}

void VXStoreLocalAnimationCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(animName_);
  out.writeString(target_);
  writeAnimation(out, animation_);
}

void VXStoreLocalAnimationCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  animName_ = in.readString();
  target_ = in.readString();
  animation_ = readAnimation(in);
}
