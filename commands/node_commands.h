#pragma once
// Records that change the scene graph: set an attribute, create, copy, rename, delete or preload
// nodes and effects, load a scene. Each is written as its class name and its fields in a fixed
// order that is not always the declaration order.
//
// Plain single-owner values, not thread safe; reading throws the stream's exceptions.
#include <memory>
#include <string>
#include <string_view>

#include "commands/command.h"
#include "foundation/attribute.h"

// Sets one attribute of the target to a value the record owns.
// Reading a null value throws AFCNullPointerException ("Attribute").
class VXSetAttributeCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXSetAttributeCommand)
 public:
  VXSetAttributeCommand() = default;
  // Clones the value.
  VXSetAttributeCommand(const VXSetAttributeCommand& other);
  VXSetAttributeCommand(std::string target, std::string attrName,
                        std::unique_ptr<AFCAttribute> value);

  const std::string& getAttrName() const { return attrName_; }
  // Null only in a default-constructed record.
  const AFCAttribute* getValue() const { return value_.get(); }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string attrName_;
  std::unique_ptr<AFCAttribute> value_;
};

// Creates a node of a type under the parent address in target.
class VXCreateNodeCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXCreateNodeCommand)
 public:
  VXCreateNodeCommand() = default;
  VXCreateNodeCommand(const VXCreateNodeCommand&) = default;
  VXCreateNodeCommand(std::string nodeType, std::string nodeName, std::string target);

  const std::string& getNodeType() const { return nodeType_; }
  const std::string& getNodeName() const { return nodeName_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string nodeType_;
  std::string nodeName_;
};

// Copies the node at srcAddress under parentAddress as nodeName. The target stays empty and
// is not written.
class VXCopyNodeCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXCopyNodeCommand)
 public:
  VXCopyNodeCommand() = default;
  VXCopyNodeCommand(const VXCopyNodeCommand&) = default;
  VXCopyNodeCommand(std::string srcAddress, std::string nodeName, std::string parentAddress);

  const std::string& getSrcAddress() const { return srcAddress_; }
  const std::string& getNodeName() const { return nodeName_; }
  const std::string& getParentAddress() const { return parentAddress_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string srcAddress_;
  std::string nodeName_;
  std::string parentAddress_;
};

// Creates an effect of a type under the parent address in target.
class VXCreateEffectCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXCreateEffectCommand)
 public:
  VXCreateEffectCommand() = default;
  VXCreateEffectCommand(const VXCreateEffectCommand&) = default;
  VXCreateEffectCommand(std::string effectType, std::string effectName, std::string target);

  const std::string& getEffectType() const { return effectType_; }
  const std::string& getEffectName() const { return effectName_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string effectType_;
  std::string effectName_;
};

class VXRenameTargetCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXRenameTargetCommand)
 public:
  VXRenameTargetCommand() = default;
  VXRenameTargetCommand(const VXRenameTargetCommand&) = default;
  VXRenameTargetCommand(std::string target, std::string newName);

  const std::string& getNewName() const { return newName_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string newName_;
};

// The records that carry nothing but their target differ only in class name and text form.
#define VX_DECLARE_TARGET_ONLY_COMMAND(Name)                                      \
  class Name : public VXCommandWithTarget {                                       \
    VX_DECLARE_COMMAND(Name)                                                      \
   public:                                                                        \
    Name() = default;                                                             \
    Name(const Name&) = default;                                                  \
    explicit Name(std::string target) : VXCommandWithTarget(std::move(target)) {} \
    std::string toString() const override;                                        \
    void write(AFCPersistentOutputStream& out) const override;                    \
    void read(AFCPersistentInputStream& in) override;                             \
  }

VX_DECLARE_TARGET_ONLY_COMMAND(VXDeleteNodeCommand);
VX_DECLARE_TARGET_ONLY_COMMAND(VXActivateEffectCommand);
VX_DECLARE_TARGET_ONLY_COMMAND(VXDeleteEffectCommand);
VX_DECLARE_TARGET_ONLY_COMMAND(VXPreloadCommand);
#undef VX_DECLARE_TARGET_ONLY_COMMAND

// Loads a scene as nodeName under the parent address in target. The extra address is optional
// (empty means absent) and is written only when present, behind a byte 2 that tells the reader
// it is there.
class VXLoadSceneCommand : public VXCommandWithTarget {
  VX_DECLARE_COMMAND(VXLoadSceneCommand)
 public:
  VXLoadSceneCommand() = default;
  VXLoadSceneCommand(const VXLoadSceneCommand&) = default;
  VXLoadSceneCommand(std::string sceneName, std::string target, std::string nodeName,
                     std::string extraAddress = {});

  const std::string& getSceneName() const { return sceneName_; }
  const std::string& getNodeName() const { return nodeName_; }
  const std::string& getExtraAddress() const { return extraAddress_; }

  // Prefixes the extra address too, when there is one.
  void applyNodePrefix(std::string_view prefix) override;
  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string sceneName_;
  std::string nodeName_;
  std::string extraAddress_;
};
