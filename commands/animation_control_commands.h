#pragma once
// Records that control animations stored on the server by name, and the one that runs a scene
// action. Records that carry an animation or its start options (activate, activate a client
// animation, store a local animation) hold animation-model values and live beside that model.
//
// Plain single-owner values, not thread safe; reading throws the stream's exceptions.
#include <cstdint>
#include <string>
#include <string_view>

#include "commands/command.h"

// Stops the named animation on the target at an animation time (microseconds; the largest
// signed 64-bit value means infinite).
class VXStopAnimationCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXStopAnimationCommand)
 public:
  VXStopAnimationCommand() = default;
  VXStopAnimationCommand(const VXStopAnimationCommand&) = default;
  VXStopAnimationCommand(std::string animName, std::string target, int64_t time);

  const std::string& getAnimName() const { return animName_; }
  int64_t getTime() const { return time_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string animName_;
  int64_t time_ = 0;
};

// Changes the speed of the named animation on the target from an animation time on.
class VXAccelerateAnimationCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXAccelerateAnimationCommand)
 public:
  VXAccelerateAnimationCommand() = default;
  VXAccelerateAnimationCommand(const VXAccelerateAnimationCommand&) = default;
  VXAccelerateAnimationCommand(std::string animName, std::string target, float speed, int64_t time);

  const std::string& getAnimName() const { return animName_; }
  float getSpeed() const { return speed_; }
  int64_t getTime() const { return time_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string animName_;
  float speed_ = 0.0f;
  int64_t time_ = 0;
};

// Removes an animation that an earlier store left on the target.
class VXRemoveLocalAnimationCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXRemoveLocalAnimationCommand)
 public:
  VXRemoveLocalAnimationCommand() = default;
  VXRemoveLocalAnimationCommand(const VXRemoveLocalAnimationCommand&) = default;
  VXRemoveLocalAnimationCommand(std::string animName, std::string target);

  const std::string& getAnimName() const { return animName_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string animName_;
};

// Runs a scene action of the target, inside the named transaction. The flag is passed through
// to the server; titles always send false.
class VXActivateActionCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXActivateActionCommand)
 public:
  VXActivateActionCommand() = default;
  VXActivateActionCommand(const VXActivateActionCommand&) = default;
  VXActivateActionCommand(std::string actionName, std::string transactionName, bool flag,
                          std::string target);

  const std::string& getActionName() const { return actionName_; }
  const std::string& getTransactionName() const { return transactionName_; }
  bool getFlag() const { return flag_; }

  // An empty transaction name takes the given one.
  void bindDefaultName(std::string_view name) override;
  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string actionName_;
  std::string transactionName_;
  bool flag_ = false;
};
