#include "automation/title.h"

#include <atomic>
#include <utility>
#include <vector>

#include "automation/animation_objects.h"
#include "automation/command_list.h"
#include "automation/parent_and_leaf.h"
#include "automation/title_host.h"
#include "commands/action.h"
#include "commands/begin_end_builder.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/errlog.h"
#include "foundation/target_address.h"

namespace {
std::atomic<int32_t> nodeCounter{0};

// Fills one action, which the title sends whole: the set-up commands through the builder
// operations, and the commands of a replayed list as clones under the title's node and zone.
class ActionBuilder : public VXCommandListBuilder {
 public:
  ActionBuilder(VXAction& action, std::string base, std::string zone)
      : action_(action), base_(std::move(base)), zone_(std::move(zone)) {}

  void addCommand(std::unique_ptr<VXCommand> record) override {
    action_.addCommand(std::move(record));
  }
  void visit(const VXCommand& command) {
    std::unique_ptr<VXCommand> clone(command.clone());
    clone->applyNodePrefix(base_);
    clone->bindDefaultName(zone_);
    addCommand(std::move(clone));
  }

 private:
  VXAction& action_;
  std::string base_;
  std::string zone_;
};

std::unique_ptr<VXAction> newAction(int32_t channel) {
  if (channel == 0) return std::make_unique<VXImmediateAction>();
  return std::make_unique<VXChannelAction>(static_cast<uint32_t>(channel));
}
}  // namespace

CTitle::CTitle(std::shared_ptr<CTitleHost> host) : host_(std::move(host)) {
  if (!host_) throw AFCNullPointerException("CTitleHost");
}

CTitle::~CTitle() {
  try {
    destroyIn(destroyTransactionName_);
  } catch (...) {
  }
  try {
    host_->forgetTitle(*this);
  } catch (...) {
  }
}

int32_t CTitle::lastNodeNumber() { return nodeCounter.load(); }

void CTitle::setZone(const std::string& zoneName) {
  zoneName_ = zoneName;
  if (nodeName_.empty()) return;
  builder().setAttribute(nodeName_, "Zone", std::make_unique<AFCAttributeString>(zoneName_));
}

VXCommandListBeginEndBuilder& CTitle::builder() {
  VXCommandListBeginEndBuilder& builder = host_->getBuilder();
  builder.setChannel(static_cast<uint32_t>(channel_));
  return builder;
}

std::string CTitle::resolve(const std::string& address) {
  if (nodeName_.empty()) setUp(builder());
  return AFCTargetAddress::join(nodeName_, address);
}

void CTitle::setUp(VXCommandListBeginEndBuilder& builder) {
  builder.beginImmediate(true);
  try {
    writeSetUp(builder);
  } catch (...) {
    try {
      builder.end();
    } catch (...) {
    }
    throw;
  }
  builder.end();
}

void CTitle::writeSetUp(VXCommandListBuilder& out) {
  destroyed_ = false;
  nodeName_ = "_Br5_Title_" + std::to_string(++nodeCounter);
  out.createNode("Group", nodeName_, "Root");
  out.setAttribute(nodeName_, "Visible", std::make_unique<AFCAttributeBool>(true));
  out.setAttribute(nodeName_, "Zone", std::make_unique<AFCAttributeString>(zoneName_));
  writeProject(out);
}

void CTitle::writeProject(VXCommandListBuilder& out) {
  if (projectName_.empty() || nodeName_.empty()) return;
  if (!foreignProjectCreated_) {
    // The effect is made as br5... but its attribute lives under br4...: the server expects both.
    out.createEffect("ForeignProject", "br5RootForeignProject", nodeName_);
    foreignProjectCreated_ = true;
  }
  out.setAttribute(AFCTargetAddress::join(nodeName_, "br4RootForeignProject"), "ProjectName",
                   std::make_unique<AFCAttributeWString>(projectName_));
}

void CTitle::destroy() { destroyIn(destroyTransactionName_); }

void CTitle::begin() {
  builder().beginImmediate(true);
  ++beginDepth_;
}

void CTitle::end() {
  builder().end();
  --beginDepth_;
}

void CTitle::loadScene(const std::string& sceneName, const std::string& newAddress) {
  const ParentAndLeaf target(resolve(newAddress));
  builder().loadScene(sceneName, target.parent, target.leaf, nodeName_);
}

void CTitle::createNode(const std::string& nodeType, const std::string& newAddress) {
  const ParentAndLeaf target(resolve(newAddress));
  builder().createNode(nodeType, target.leaf, target.parent);
}

void CTitle::createEffect(const std::string& effectType, const std::string& newAddress) {
  const ParentAndLeaf target(resolve(newAddress));
  builder().createEffect(effectType, target.leaf, target.parent);
}

void CTitle::copyNode(const std::string& srcAddress, const std::string& newAddress) {
  const ParentAndLeaf target(resolve(newAddress));
  builder().copyNode(resolve(srcAddress), target.leaf, target.parent);
}

void CTitle::deleteNode(const std::string& nodeName) { builder().deleteNode(resolve(nodeName)); }

void CTitle::deleteEffect(const std::string& effectName) {
  builder().deleteEffect(resolve(effectName));
}

void CTitle::set(const std::string& address, const std::string& attrName,
                 const ScriptValue& value) {
  const std::string target = resolve(address);
  builder().setAttribute(target, attrName, value.toAttribute());
}

CCallResult CTitle::animate(const ScriptValue& animNameOrObject, const std::string& address,
                            const ScriptValue& options) {
  const std::string target = resolve(address);
  VXActivateAnimationOptions chosen;
  if (options.isObjectKind()) {
    const CAnimationOptions* object = options.asAnimationOptions();
    if (object == nullptr) return CCallResult::NoInterface;
    chosen = object->getNative();
  }
  if (animNameOrObject.getKind() == ScriptValue::Kind::Text) {
    builder().activateAnimation(ScriptValue::toBytes(animNameOrObject.getText()), target, chosen);
  } else if (animNameOrObject.isObjectKind()) {
    const CAnimation* animation = animNameOrObject.asAnimation();
    if (animation == nullptr) return CCallResult::NoInterface;
    builder().activateAnimationObj(animation->getNative(), target, chosen);
  }
  return CCallResult::Ok;
}

void CTitle::stopAnimation(const std::string& animName, const std::string& address) {
  const std::string target = resolve(address);
  builder().stopAnimation(animName, target, 0);
}

void CTitle::callSceneAction(const std::string& actionName) {
  builder().activateAction(actionName, zoneName_, false, nodeName_);
}

std::string CTitle::transactionName(const ScriptValue& value) const {
  std::string name;
  if (value.getKind() == ScriptValue::Kind::Text) name = ScriptValue::toBytes(value.getText());
  if (name.empty()) name = zoneName_;
  if (name.empty()) throw VX2Br5TitleException();
  return name;
}

void CTitle::transactionBegin(const ScriptValue& transactionName) {
  const std::string name = this->transactionName(transactionName);
  builder().transactionBegin(name, false);
}

void CTitle::transactionEnd() { builder().transactionEnd(); }

void CTitle::transactionRoll(const ScriptValue& transactionName) {
  const std::string name = this->transactionName(transactionName);
  builder().transactionRoll(name);
}

int32_t CTitle::commandCallback() { return builder().commandCallback(); }

bool CTitle::setProject(const std::u16string& name) {
  if (!projectName_.empty() && projectName_ != name) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "Bridge5")
        << "Changing project name may lead to strange errors\n";
  }
  projectName_ = name;
  if (nodeName_.empty()) return false;
  writeProject(builder());
  return true;
}

void CTitle::previewSchedule(int32_t previewID) { builder().preview(previewID); }

void CTitle::previewScheduleBegin(int32_t previewID) { builder().beginSequencePreview(previewID); }

void CTitle::previewScheduleEnd(int32_t previewID) { builder().endSequencePreview(previewID); }

void CTitle::destroyInTransaction(const ScriptValue& transactionName) {
  destroyIn(this->transactionName(transactionName));
}

void CTitle::preload(const std::string& nodeName) { builder().preload(resolve(nodeName)); }

void CTitle::renameNode(const std::string& nodeAddress, const std::string& newNodeName) {
  builder().renameTarget(nodeAddress, newNodeName);
}

void CTitle::enableZoneNotification() { host_->addZoneNotification(zoneName_); }

void CTitle::destroyIn(const std::string& transactionName) {
  if (beginDepth_ != 0) {
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "Bridge5")
        << "begin/end not balanced in title " << titleName_ << " (" << beginDepth_ << ")\n";
    builder().flush(0);
    beginDepth_ = 0;
  }
  if (!nodeName_.empty()) deleteNodeIn(builder(), transactionName);
  host_->removeZoneNotification(zoneName_);
  nodeName_.clear();
  projectName_.clear();
  destroyTransactionName_.clear();
  foreignProjectCreated_ = false;
  destroyed_ = true;
}

// The transaction begin and the deletion travel in one action, which is left without a
// transaction end: the server closes the transaction itself.
void CTitle::deleteNodeIn(VXCommandListBeginEndBuilder& builder,
                          const std::string& transactionName) {
  const int depth = builder.depth();
  bool begun = false;
  if (!transactionName.empty()) {
    try {
      builder.beginImmediate(true);
      begun = true;
      builder.transactionBegin(transactionName, false);
    } catch (...) {
    }
  }
  try {
    builder.deleteNode(nodeName_);
  } catch (...) {
    // Nothing of a failed destroy goes out: the transaction begin is dropped with its action.
    if (begun) builder.rollback(depth);
    throw;
  }
  if (!begun) return;
  try {
    builder.end();
  } catch (...) {
  }
}

void CTitle::execute(const CCommandList* cmdList, const ScriptValue& nodePrefix) {
  if (cmdList == nullptr) throw AFCNullPointerException("CCommandList");
  const std::string prefix = nodePrefix.getKind() == ScriptValue::Kind::Text
                                 ? ScriptValue::toBytes(nodePrefix.getText())
                                 : std::string();
  VXCommandListBeginEndBuilder& builder = this->builder();
  std::unique_ptr<VXAction> action = newAction(channel_);
  if (nodeName_.empty()) {
    ActionBuilder setUpCommands(*action, {}, {});
    writeSetUp(setUpCommands);
  }
  ActionBuilder replay(*action, AFCTargetAddress::join(nodeName_, prefix), zoneName_);
  cmdList->visit([&](const VXCommand& command) { replay.visit(command); });
  builder.sendWholeAction(*action);
}
