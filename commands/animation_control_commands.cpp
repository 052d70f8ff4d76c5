#include "commands/animation_control_commands.h"

#include <utility>

AFC_IMPLEMENT_CLASS(VXStopAnimationCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXAccelerateAnimationCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXRemoveLocalAnimationCommand, VXCommandWithTarget)
AFC_IMPLEMENT_CLASS(VXActivateActionCommand, VXCommandWithTarget)

// --- VXStopAnimationCommand

VXStopAnimationCommand::VXStopAnimationCommand(std::string animName, std::string target,
                                               int64_t time)
    : VXCommandWithTarget(std::move(target)), animName_(std::move(animName)), time_(time) {}

std::string VXStopAnimationCommand::toString() const {
  return "StopAnimation " + animName_ + " on " + target_;
}

void VXStopAnimationCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(animName_);
  out.writeString(target_);
  out.writeInt64(time_);
}

void VXStopAnimationCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  animName_ = in.readString();
  target_ = in.readString();
  time_ = in.readInt64();
}

// --- VXAccelerateAnimationCommand

VXAccelerateAnimationCommand::VXAccelerateAnimationCommand(std::string animName, std::string target,
                                                           float speed, int64_t time)
    : VXCommandWithTarget(std::move(target)),
      animName_(std::move(animName)),
      speed_(speed),
      time_(time) {}

std::string VXAccelerateAnimationCommand::toString() const {
  return "AccelerateAnimation " + animName_ + " on " + target_;
}

void VXAccelerateAnimationCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(animName_);
  out.writeString(target_);
  out.writeFloat(speed_);
  out.writeInt64(time_);
}

void VXAccelerateAnimationCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  animName_ = in.readString();
  target_ = in.readString();
  speed_ = in.readFloat();
  time_ = in.readInt64();
}

// --- VXRemoveLocalAnimationCommand

VXRemoveLocalAnimationCommand::VXRemoveLocalAnimationCommand(std::string animName,
                                                             std::string target)
    : VXCommandWithTarget(std::move(target)), animName_(std::move(animName)) {}

std::string VXRemoveLocalAnimationCommand::toString() const {
  return "RemoveLocalAnimation " + animName_ + " on " + target_;
}

void VXRemoveLocalAnimationCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(animName_);
  out.writeString(target_);
}

void VXRemoveLocalAnimationCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  animName_ = in.readString();
  target_ = in.readString();
}

// --- VXActivateActionCommand

VXActivateActionCommand::VXActivateActionCommand(std::string actionName,
                                                 std::string transactionName, bool flag,
                                                 std::string target)
    : VXCommandWithTarget(std::move(target)),
      actionName_(std::move(actionName)),
      transactionName_(std::move(transactionName)),
      flag_(flag) {}

void VXActivateActionCommand::bindDefaultName(std::string_view name) {
  if (transactionName_.empty()) transactionName_ = name;
}

std::string VXActivateActionCommand::toString() const {
  return "ActivateAction " + actionName_ + " on " + target_;
}

void VXActivateActionCommand::write(AFCPersistentOutputStream& out) const {
  VXCommandWithTarget::write(out);
  out.writeString(actionName_);
  out.writeString(transactionName_);
  out.writeBool(flag_);
  out.writeString(target_);
}

void VXActivateActionCommand::read(AFCPersistentInputStream& in) {
  VXCommandWithTarget::read(in);
  actionName_ = in.readString();
  transactionName_ = in.readString();
  flag_ = in.readBool();
  target_ = in.readString();
}
