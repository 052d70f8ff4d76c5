#pragma once
// Records that carry animation-model values: starting an animation (stored on the server by
// name, or carried along as a client animation) with its start options, and storing a client
// animation on the server under a name.
//
// The options are copied into the record; an animation is shared by reference with whoever
// built it, and read() makes a fresh one. Plain values otherwise, not thread safe; reading
// throws the stream's exceptions.
#include <string>

#include "animation/animation.h"
#include "animation/animation_options.h"
#include "commands/command.h"

// Starts an animation on the target; never sent by itself.
class VXActivateAnimationCommandBase : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXActivateAnimationCommandBase)
 public:
  VXActivateAnimationCommandBase() = default;
  VXActivateAnimationCommandBase(const VXActivateAnimationCommandBase&) = default;
  VXActivateAnimationCommandBase(std::string target, const VXActivateAnimationOptions& options)
      : VXCommandWithTarget(std::move(target)), options_(options) {}

  const VXActivateAnimationOptions& getOptions() const { return options_; }

  // "Animate target=..., opts=(...)".
  std::string toString() const override;
  // The target, then the options in the form the stream's version asks for.
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 protected:
  VXActivateAnimationOptions options_;
};

// Starts an animation stored on the server under animName.
class VXActivateAnimationCommand : public VXActivateAnimationCommandBase {
  VX_DECLARE_COMMAND(VXActivateAnimationCommand)
 public:
  VXActivateAnimationCommand() = default;
  VXActivateAnimationCommand(const VXActivateAnimationCommand&) = default;
  VXActivateAnimationCommand(std::string animName, std::string target,
                             const VXActivateAnimationOptions& options)
      : VXActivateAnimationCommandBase(std::move(target), options),
        animName_(std::move(animName)) {}

  const std::string& getAnimName() const { return animName_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string animName_;
};

// Starts an animation that travels inside the record.
class VXActivateClientAnimationCommand : public VXActivateAnimationCommandBase {
  VX_DECLARE_COMMAND(VXActivateClientAnimationCommand)
 public:
  VXActivateClientAnimationCommand() = default;
  VXActivateClientAnimationCommand(const VXActivateClientAnimationCommand&) = default;
  VXActivateClientAnimationCommand(AFCRef<VXAnimation> animation, std::string target,
                                   const VXActivateAnimationOptions& options)
      : VXActivateAnimationCommandBase(std::move(target), options),
        animation_(std::move(animation)) {}

  // Null only in a default-constructed record.
  const AFCRef<VXAnimation>& getAnimation() const { return animation_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  AFCRef<VXAnimation> animation_;
};

// Leaves a client animation on the server's target under animName.
class VXStoreLocalAnimationCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXStoreLocalAnimationCommand)
 public:
  VXStoreLocalAnimationCommand() = default;
  VXStoreLocalAnimationCommand(const VXStoreLocalAnimationCommand&) = default;
  VXStoreLocalAnimationCommand(std::string animName, std::string target,
                               AFCRef<VXAnimation> animation)
      : VXCommandWithTarget(std::move(target)),
        animName_(std::move(animName)),
        animation_(std::move(animation)) {}

  const std::string& getAnimName() const { return animName_; }
  const AFCRef<VXAnimation>& getAnimation() const { return animation_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string animName_;
  AFCRef<VXAnimation> animation_;
};
