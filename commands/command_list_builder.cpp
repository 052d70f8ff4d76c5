#include "commands/command_list_builder.h"

#include <atomic>
#include <cmath>

#include "commands/animation_commands.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "foundation/attribute_scalar.h"
#include "foundation/errlog.h"

namespace {

std::atomic<int32_t> callbackCounter{0};

void requireName(const std::string& name, const char* message) {
  if (name.empty()) throw AFCIllegalArgumentException(message);
}

// Multi-channel values and floating-point scalars are tested channel by channel, last first;
// a NaN anywhere makes the value unsendable. Infinities are fine.
bool hasNaN(const AFCAttribute& value) {
  const int channels = value.getChannelCount();
  const bool floating = dynamic_cast<const AFCAttributeFloat*>(&value) != nullptr ||
                        dynamic_cast<const AFCAttributeDouble*>(&value) != nullptr;
  if (channels <= 1 && !floating) return false;
  for (int channel = channels - 1; channel >= 0; --channel) {
    if (std::isnan(value.getChannelValue(channel))) return true;
  }
  return false;
}

}  // namespace

std::string VXCommandListBuilder::generatedName(const std::string& name) {
  if (!name.empty()) return name;
  return "NoName" + std::to_string(++noNameCounter_);
}

std::string VXCommandListBuilder::createNode(const std::string& nodeType,
                                             const std::string& nodeName,
                                             const std::string& parent) {
  requireName(nodeType, "No node type");
  std::string name = generatedName(nodeName);
  addCommand(std::make_unique<VXCreateNodeCommand>(nodeType, name, parent));
  return name;
}

std::string VXCommandListBuilder::createEffect(const std::string& effectType,
                                               const std::string& effectName,
                                               const std::string& parent) {
  std::string name = generatedName(effectName);
  addCommand(std::make_unique<VXCreateEffectCommand>(effectType, name, parent));
  return name;
}

void VXCommandListBuilder::copyNode(const std::string& srcAddress, const std::string& nodeName,
                                    const std::string& parentAddress) {
  addCommand(std::make_unique<VXCopyNodeCommand>(srcAddress, nodeName, parentAddress));
}

void VXCommandListBuilder::deleteNode(const std::string& address) {
  requireName(address, "No node name");
  addCommand(std::make_unique<VXDeleteNodeCommand>(address));
}

void VXCommandListBuilder::deleteEffect(const std::string& address) {
  addCommand(std::make_unique<VXDeleteEffectCommand>(address));
}

void VXCommandListBuilder::activateEffect(const std::string& address) {
  addCommand(std::make_unique<VXActivateEffectCommand>(address));
}

void VXCommandListBuilder::renameTarget(const std::string& address, const std::string& newName) {
  requireName(newName, "No node name");
  addCommand(std::make_unique<VXRenameTargetCommand>(address, newName));
}

void VXCommandListBuilder::setAttribute(const std::string& address, const std::string& attrName,
                                        std::unique_ptr<AFCAttribute> value) {
  if (!value) throw AFCNullPointerException("AFCAttribute");
  requireName(address, "No node name");
  requireName(attrName, "No attribute name");
  if (hasNaN(*value)) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX")
        << "vx2.setAttribute(" << address << "," << attrName << ") called with invalid value "
        << value->toString() << '\n';
    return;
  }
  addCommand(std::make_unique<VXSetAttributeCommand>(address, attrName, std::move(value)));
}

void VXCommandListBuilder::loadScene(const std::string& sceneName, const std::string& parent,
                                     const std::string& nodeName,
                                     const std::string& extraAddress) {
  addCommand(std::make_unique<VXLoadSceneCommand>(sceneName, parent, nodeName, extraAddress));
}

void VXCommandListBuilder::preload(const std::string& address) {
  addCommand(std::make_unique<VXPreloadCommand>(address));
}

void VXCommandListBuilder::activateAnimation(const std::string& animName,
                                             const std::string& target,
                                             const VXActivateAnimationOptions& options) {
  addCommand(std::make_unique<VXActivateAnimationCommand>(animName, target, options));
}

void VXCommandListBuilder::activateAnimationObj(AFCRef<VXAnimation> animation,
                                                const std::string& target,
                                                const VXActivateAnimationOptions& options) {
  if (options.playMode == VX_PLAY_MODE_STOP) animation = AFCRef<VXAnimation>(new VXAnimation);
  addCommand(
      std::make_unique<VXActivateClientAnimationCommand>(std::move(animation), target, options));
}

void VXCommandListBuilder::stopAnimation(const std::string& animName, const std::string& target,
                                         int64_t time) {
  addCommand(std::make_unique<VXStopAnimationCommand>(animName, target, time));
}

void VXCommandListBuilder::accelerateAnimation(const std::string& animName,
                                               const std::string& target, float speed,
                                               int64_t time) {
  addCommand(std::make_unique<VXAccelerateAnimationCommand>(animName, target, speed, time));
}

void VXCommandListBuilder::storeAnimation(const std::string& animName, const std::string& target,
                                          AFCRef<VXAnimation> animation) {
  requireName(animName, "No anim name");
  addCommand(
      std::make_unique<VXStoreLocalAnimationCommand>(animName, target, std::move(animation)));
}

void VXCommandListBuilder::removeAnimation(const std::string& animName,
                                           const std::string& target) {
  addCommand(std::make_unique<VXRemoveLocalAnimationCommand>(animName, target));
}

void VXCommandListBuilder::activateAction(const std::string& actionName,
                                          const std::string& transactionName, bool flag,
                                          const std::string& target) {
  addCommand(
      std::make_unique<VXActivateActionCommand>(actionName, transactionName, flag, target));
}

void VXCommandListBuilder::transactionBegin(const std::string& transactionName, bool flag) {
  requireName(transactionName, "No transaction name");
  addCommand(std::make_unique<VXTransactionBeginCommand>(transactionName, flag));
}

void VXCommandListBuilder::transactionEnd() {
  addCommand(std::make_unique<VXTransactionEndCommand>());
}

void VXCommandListBuilder::transactionRoll(const std::string& transactionName) {
  requireName(transactionName, "No transaction name");
  addCommand(std::make_unique<VXTransactionRollCommand>(transactionName));
}

void VXCommandListBuilder::transactionStop(const std::string& transactionName) {
  requireName(transactionName, "No transaction name");
  addCommand(std::make_unique<VXTransactionStopCommand>(transactionName));
}

void VXCommandListBuilder::setZoneState(const VXZonesState& zones) {
  addCommand(std::make_unique<VXSetZoneStateCommand>(zones));
}

int32_t VXCommandListBuilder::commandCallback() {
  const int32_t id = callbackCounter.fetch_add(1, std::memory_order_relaxed) + 1;
  addCommand(std::make_unique<VXCallbackCommand>(id));
  return id;
}

void VXCommandListBuilder::sendMessage(const std::string& message) {
  addCommand(std::make_unique<VXMessageCommand>(message));
}

void VXCommandListBuilder::wait(int32_t time) {
  addCommand(std::make_unique<VXWaitCommand>(time));
}

void VXCommandListBuilder::preview(int32_t previewId) {
  addCommand(std::make_unique<VXPreviewCommand>(previewId, VXPreviewCommand::kSingle));
}

void VXCommandListBuilder::beginSequencePreview(int32_t previewId) {
  addCommand(std::make_unique<VXPreviewCommand>(previewId, VXPreviewCommand::kSequenceBegin));
}

void VXCommandListBuilder::endSequencePreview(int32_t previewId) {
  addCommand(std::make_unique<VXPreviewCommand>(previewId, VXPreviewCommand::kSequenceEnd));
}
