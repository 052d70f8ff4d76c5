#pragma once
// The one place where command records are made from arguments: each creation method checks its
// arguments, builds the record and hands it to addCommand, which subclasses implement (the
// begin/end builder groups records into actions; title objects collect or replay them).
//
// Argument errors throw AFCIllegalArgumentException (or AFCNullPointerException for a missing
// value) before any record exists, so nothing is added. Whatever addCommand throws passes
// through. A builder is used by one thread at a time; only the callback counter is shared by
// the whole process.
#include <cstdint>
#include <memory>
#include <string>

#include "animation/animation.h"
#include "animation/animation_options.h"
#include "commands/command.h"
#include "commands/zone_state.h"
#include "foundation/attribute.h"

class VXCommandListBuilder {
 public:
  VXCommandListBuilder() = default;
  VXCommandListBuilder(const VXCommandListBuilder&) = delete;
  VXCommandListBuilder& operator=(const VXCommandListBuilder&) = delete;
  virtual ~VXCommandListBuilder() = default;

  // Takes the new record over.
  virtual void addCommand(std::unique_ptr<VXCommand> record) = 0;

  // Nodes and effects. An empty name is replaced by a generated "NoName%d"; the name used is
  // returned.
  std::string createNode(const std::string& nodeType, const std::string& nodeName,
                         const std::string& parent);
  std::string createEffect(const std::string& effectType, const std::string& effectName,
                           const std::string& parent);
  void copyNode(const std::string& srcAddress, const std::string& nodeName,
                const std::string& parentAddress);
  void deleteNode(const std::string& address);
  void deleteEffect(const std::string& address);
  void activateEffect(const std::string& address);
  void renameTarget(const std::string& address, const std::string& newName);
  // A value with a NaN channel is logged and dropped instead of being sent.
  void setAttribute(const std::string& address, const std::string& attrName,
                    std::unique_ptr<AFCAttribute> value);
  void loadScene(const std::string& sceneName, const std::string& parent,
                 const std::string& nodeName, const std::string& extraAddress = {});
  void preload(const std::string& address);

  // Animations: stored on the server by name, or carried along as a client animation.
  void activateAnimation(const std::string& animName, const std::string& target,
                         const VXActivateAnimationOptions& options);
  // With play mode STOP an empty animation travels instead of the given one.
  void activateAnimationObj(AFCRef<VXAnimation> animation, const std::string& target,
                            const VXActivateAnimationOptions& options);
  void stopAnimation(const std::string& animName, const std::string& target, int64_t time);
  void accelerateAnimation(const std::string& animName, const std::string& target, float speed,
                           int64_t time);
  void storeAnimation(const std::string& animName, const std::string& target,
                      AFCRef<VXAnimation> animation);
  void removeAnimation(const std::string& animName, const std::string& target);
  void activateAction(const std::string& actionName, const std::string& transactionName,
                      bool flag, const std::string& target);

  // Transactions on the server.
  void transactionBegin(const std::string& transactionName, bool flag);
  void transactionEnd();
  void transactionRoll(const std::string& transactionName);
  void transactionStop(const std::string& transactionName);

  void setZoneState(const VXZonesState& zones);
  // The new callback id, unique in the process (the first is 1).
  int32_t commandCallback();
  void sendMessage(const std::string& message);
  void wait(int32_t time);
  void preview(int32_t previewId);
  void beginSequencePreview(int32_t previewId);
  void endSequencePreview(int32_t previewId);

 private:
  std::string generatedName(const std::string& name);

  uint32_t noNameCounter_ = 0;
};
