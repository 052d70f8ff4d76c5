#pragma once
// The root of the command records: one change that a client asks of the render server, written
// into an action by its class name and fields.
//
// Records are plain single-owner values (the action that collects them owns them), not thread
// safe. read() throws the stream's AFCPersistentReadException2 for malformed bytes; a record
// that threw may hold some of the new fields.
#include <string>
#include <string_view>

#include "foundation/persistent_stream.h"

// Declares the class record accessors and the copy-constructing clone of a command class.
#define VX_DECLARE_COMMAND(Name) \
  AFC_DECLARE_CLASS()            \
 public:                         \
  Name* clone() const override { return new Name(*this); }

// Defines staticClass() for an intermediate class that is never sent by itself: its record
// knows its place in the tree, but the registry does not hand it out, so a reader refuses it
// with "Can't find class".
#define VX_IMPLEMENT_UNLISTED_COMMAND(Name, Parent)                                 \
  const AFCClass& Name::staticClass() {                                             \
    static const AFCClass& record = *new AFCClassEx(#Name, &Parent::staticClass()); \
    return record;                                                                  \
  }

class VXCommand : public AFCPersistent {
  VX_DECLARE_COMMAND(VXCommand)
 public:
  VXCommand() = default;
  VXCommand(const VXCommand&) = default;

  // "class " and the class name, for records without a text form of their own.
  std::string toString() const override;
  // Puts the title's node prefix in front of the addresses the record carries.
  virtual void applyNodePrefix(std::string_view prefix);
  // Fills a name the record left empty, when a title executes a list of commands.
  virtual void bindDefaultName(std::string_view name);
};

// A record that applies to one node address.
class VXCommandWithTarget : public VXCommand {
  VX_DECLARE_COMMAND(VXCommandWithTarget)
 public:
  VXCommandWithTarget() = default;
  VXCommandWithTarget(const VXCommandWithTarget&) = default;
  explicit VXCommandWithTarget(std::string target) : target_(std::move(target)) {}

  const std::string& getTarget() const { return target_; }
  void setTarget(std::string target) { target_ = std::move(target); }

  // A non-empty prefix goes in front of the target's components; an empty one changes nothing.
  void applyNodePrefix(std::string_view prefix) override;

 protected:
  // The target with the prefix in front (unchanged for an empty prefix).
  static std::string prefixed(std::string_view prefix, const std::string& address);

  std::string target_;
};
