#include "automation/command_list.h"

#include "automation/animation_objects.h"
#include "automation/parent_and_leaf.h"
#include "commands/animation_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"
#include "commands/zone_state.h"

namespace {
void require(const std::string& text, const char* message) {
  if (text.empty()) throw AFCIllegalArgumentException(message);
}

std::string textOrEmpty(const ScriptValue& value) {
  return value.getKind() == ScriptValue::Kind::Text ? ScriptValue::toBytes(value.getText())
                                                    : std::string();
}

VXActivateAnimationOptions optionsOf(const ScriptValue& options) {
  if (!options.isObjectKind()) return {};
  const CAnimationOptions* chosen = options.asAnimationOptions();
  if (chosen == nullptr) throw AFCIllegalArgumentException("Object is not anim options");
  return chosen->getNative();
}
}  // namespace

CCallResult CCommandList::animate(const ScriptValue& animNameOrObject, const std::string& address,
                                  const ScriptValue& options) {
  const VXActivateAnimationOptions chosen = optionsOf(options);
  if (animNameOrObject.getKind() == ScriptValue::Kind::Text) {
    const std::string name = ScriptValue::toBytes(animNameOrObject.getText());
    require(name, "Empty anim name");
    activateAnimation(name, address, chosen);
  } else if (animNameOrObject.isObjectKind()) {
    const CAnimation* animation = animNameOrObject.asAnimation();
    if (animation == nullptr) return CCallResult::NoInterface;
    append(std::make_unique<VXActivateClientAnimationCommand>(animation->getNative(), address,
                                                              chosen));
  }
  return CCallResult::Ok;
}

void CCommandList::stopAnimation(const std::string& animName, const std::string& address) {
  require(animName, "Empty anim name");
  VXCommandListBuilder::stopAnimation(animName, address, 0);
}

void CCommandList::set(const std::string& address, const std::string& attrName,
                       const ScriptValue& value) {
  require(attrName, "Empty attr name");
  append(std::make_unique<VXSetAttributeCommand>(address, attrName, value.toAttribute()));
}

void CCommandList::createNode(const std::string& nodeType, const std::string& newAddress) {
  const ParentAndLeaf target(newAddress);
  require(target.leaf, "Empty new name");
  require(nodeType, "Empty node type");
  VXCommandListBuilder::createNode(nodeType, target.leaf, target.parent);
}

void CCommandList::createEffect(const std::string& effectType, const std::string& newAddress) {
  const ParentAndLeaf target(newAddress);
  require(target.leaf, "Empty new name");
  require(effectType, "Empty effect type");
  VXCommandListBuilder::createEffect(effectType, target.leaf, target.parent);
}

void CCommandList::copyNode(const std::string& srcAddress, const std::string& newAddress) {
  const ParentAndLeaf target(newAddress);
  require(target.leaf, "Empty new name");
  VXCommandListBuilder::copyNode(srcAddress, target.leaf, target.parent);
}

void CCommandList::renameNode(const std::string& address, const std::string& newName) {
  require(newName, "Empty new name");
  renameTarget(address, newName);
}

void CCommandList::deleteNode(const std::string& address) {
  require(address, "Empty node name");
  VXCommandListBuilder::deleteNode(address);
}

void CCommandList::deleteEffect(const std::string& address) {
  require(address, "Empty effect name");
  VXCommandListBuilder::deleteEffect(address);
}

void CCommandList::loadScene(const std::string& sceneName, const std::string& newAddress) {
  const ParentAndLeaf target(newAddress);
  require(target.leaf, "Empty new name");
  require(sceneName, "Empty scene name");
  VXCommandListBuilder::loadScene(sceneName, target.parent, target.leaf);
}

void CCommandList::doAction(const std::string& actionName) {
  require(actionName, "Empty action name");
  activateAction(actionName, {}, false, {});
}

void CCommandList::beginTransaction(const ScriptValue& transactionName) {
  append(std::make_unique<VXTransactionBeginCommand>(textOrEmpty(transactionName), false));
}

void CCommandList::endTransaction() { transactionEnd(); }

void CCommandList::rollTransaction(const ScriptValue& transactionName) {
  append(std::make_unique<VXTransactionRollCommand>(textOrEmpty(transactionName)));
}

int32_t CCommandList::callback() { return commandCallback(); }

void CCommandList::preload(const std::string& address) { VXCommandListBuilder::preload(address); }

void CCommandList::beginSequencePreview(int32_t previewID) {
  VXCommandListBuilder::beginSequencePreview(previewID);
}

void CCommandList::endSequencePreview(int32_t previewID) {
  VXCommandListBuilder::endSequencePreview(previewID);
}

void CCommandList::captureStillPreview(int32_t previewID) { preview(previewID); }

void CCommandList::setZoneState(int32_t state) {
  VXZonesState zones;
  zones.set({}, state != 0);
  VXCommandListBuilder::setZoneState(zones);
}

void CCommandList::visit(const Visitor& visitor) const {
  for (const auto& command : commands_) visitor(*command);
}

void CCommandList::append(std::unique_ptr<VXCommand> command) {
  commands_.push_back(std::move(command));
}
