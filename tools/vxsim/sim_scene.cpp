#include "tools/vxsim/sim_scene.h"

#include <algorithm>

#include "commands/animation_commands.h"
#include "commands/animation_control_commands.h"
#include "commands/misc_commands.h"
#include "commands/node_commands.h"
#include "commands/transaction_commands.h"

namespace {

constexpr std::string_view kRootName = "Root";
constexpr const char* kClientAnimation = "<client>";

// Calls visit with each node name of an address, without "Root" in front and without empty
// components, until visit returns false. Returns false when it was stopped.
template <class Visit>
bool eachName(std::string_view address, Visit visit) {
  bool first = true;
  std::size_t start = 0;
  while (start <= address.size()) {
    const std::size_t slash = std::min(address.find('/', start), address.size());
    if (slash > start) {
      const std::string_view name = address.substr(start, slash - start);
      if (!(first && name == kRootName) && !visit(name)) return false;
      first = false;
    }
    start = slash + 1;
  }
  return true;
}

// The node names of an address, as eachName gives them.
std::vector<std::string> components(std::string_view address) {
  std::vector<std::string> names;
  eachName(address, [&](std::string_view name) {
    names.emplace_back(name);
    return true;
  });
  return names;
}

// The address of the node's parent ("" for a child of Root).
std::string parentAddress(std::string_view address) {
  std::vector<std::string> names = components(address);
  if (!names.empty()) names.pop_back();
  std::string parent;
  for (const std::string& name : names) parent += name + "/";
  return parent;
}

std::string rootPath(std::string_view address) {
  std::string path(kRootName);
  for (const std::string& name : components(address)) path += "/" + name;
  return path;
}

template <class T>
const T* as(const VXCommand& record) {
  return dynamic_cast<const T*>(&record);
}

void dumpNode(const VXSimNode& node, int depth, std::string& out) {
  const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
  out += indent + node.name;
  if (!node.type.empty()) out += " (" + node.type + ")";
  if (node.kind == VXSimNode::Kind::Effect) out += node.active ? " effect, active" : " effect";
  if (!node.sceneName.empty()) out += " scene=" + node.sceneName;
  out += '\n';
  for (const auto& [name, value] : node.attributes) {
    out += indent + "  ." + name + " = " + value->toString() + '\n';
  }
  for (const auto& [name, animation] : node.animations) {
    out += indent + "  ~" + name + (animation.running ? " running" : " stopped") +
           (animation.stored ? ", stored" : "") + '\n';
  }
  for (const auto& child : node.children) dumpNode(*child, depth + 1, out);
}

}  // namespace

VXSimNode* VXSimNode::findChild(std::string_view childName) const {
  const auto found = byName_.find(childName);
  return found == byName_.end() ? nullptr : found->second;
}

void VXSimNode::addChild(std::unique_ptr<VXSimNode> child) {
  byName_.emplace(child->name, child.get());
  children.push_back(std::move(child));
}

void VXSimNode::removeChild(const VXSimNode& child) {
  byName_.erase(child.name);
  std::erase_if(children, [&](const auto& each) { return each.get() == &child; });
}

void VXSimNode::renameChild(VXSimNode& child, std::string newName) {
  byName_.erase(child.name);
  child.name = std::move(newName);
  byName_.emplace(child.name, &child);
}

std::unique_ptr<VXSimNode> VXSimNode::clone() const {
  auto copy = std::make_unique<VXSimNode>();
  copy->name = name;
  copy->type = type;
  copy->kind = kind;
  copy->active = active;
  copy->sceneName = sceneName;
  copy->animations = animations;
  for (const auto& [key, value] : attributes) {
    copy->attributes.emplace(key, std::unique_ptr<AFCAttribute>(value->clone()));
  }
  for (const auto& child : children) copy->addChild(child->clone());
  return copy;
}

std::size_t VXSimNode::countNodes() const {
  std::size_t count = 1;
  for (const auto& child : children) count += child->countNodes();
  return count;
}

std::size_t VXSimNode::height() const {
  std::size_t below = 0;
  for (const auto& child : children) below = std::max(below, child->height());
  return below + 1;
}

VXSimScene::VXSimScene() : root_(std::make_unique<VXSimNode>()) {
  root_->name = std::string(kRootName);
}

VXSimNode* VXSimScene::find(std::string_view address) const {
  VXSimNode* current = root_.get();
  eachName(address, [&](std::string_view name) {
    current = current->findChild(name);
    return current != nullptr;
  });
  return current;
}

VXSimNode& VXSimScene::node(std::string_view address) const {
  VXSimNode* found = find(address);
  if (found == nullptr) throw VXSimSceneException("Node not found: " + rootPath(address));
  return *found;
}

VXSimNode& VXSimScene::effect(std::string_view address) const {
  VXSimNode* found = find(address);
  if (found == nullptr || found->kind != VXSimNode::Kind::Effect) {
    throw VXSimSceneException("Effect not found: " + rootPath(address));
  }
  return *found;
}

VXSimNode& VXSimScene::freeSlot(std::string_view parentAddress,
                                const std::string& childName) const {
  if (childName.empty() || childName.find('/') != std::string::npos) {
    throw VXSimSceneException("Bad node name: \"" + childName + "\"");
  }
  VXSimNode& parent = node(parentAddress);
  if (parent.findChild(childName) != nullptr) {
    throw VXSimSceneException("Node already exists: " + rootPath(parentAddress) + "/" + childName);
  }
  return parent;
}

void VXSimScene::addChild(std::string_view parentAddress, std::unique_ptr<VXSimNode> child) {
  VXSimNode& parent = freeSlot(parentAddress, child->name);
  if (components(parentAddress).size() + child->height() > kMaxDepth) {
    throw VXSimSceneException("Node too deep: " + rootPath(parentAddress) + "/" + child->name);
  }
  const std::size_t count = child->countNodes();
  if (nodeCount_ + count > kMaxNodes) throw VXSimSceneException("Scene is full");
  parent.addChild(std::move(child));
  nodeCount_ += count;
}

void VXSimScene::removeNode(std::string_view address, VXSimNode::Kind kind) {
  const std::vector<std::string> names = components(address);
  VXSimNode* target = kind == VXSimNode::Kind::Effect ? &effect(address) : find(address);
  if (target == nullptr || names.empty()) {
    throw VXSimSceneException("Node not found: " + rootPath(address));
  }
  VXSimNode& parent = *find(parentAddress(address));
  nodeCount_ -= target->countNodes();
  parent.removeChild(*target);
}

void VXSimScene::setAttribute(std::string_view address, const std::string& name,
                              const AFCAttribute& value) {
  if (name.empty()) throw VXSimSceneException("No attribute name");
  node(address).attributes.insert_or_assign(name, std::unique_ptr<AFCAttribute>(value.clone()));
}

std::string VXSimScene::firstLeafPath() const {
  std::string path(kRootName);
  const VXSimNode* current = root_.get();
  while (!current->children.empty()) {
    current = current->children.front().get();
    path += "/" + current->name;
  }
  return path;
}

namespace {

bool findNamedBelow(const VXSimNode& node, std::string_view name, std::string& path) {
  for (const auto& child : node.children) {
    const std::size_t length = path.size();
    path += "/" + child->name;
    if (child->name == name || findNamedBelow(*child, name, path)) return true;
    path.resize(length);
  }
  return false;
}

}  // namespace

std::string VXSimScene::findNamed(std::string_view name) const {
  std::string path(kRootName);
  return findNamedBelow(*root_, name, path) ? path : std::string();
}

void VXSimScene::setZones(const VXZonesState& zones) {
  for (const auto& [zone, state] : zones.getZones()) {
    zones_.set(zone, state);
    zoneChanges_.set(zone, state);
  }
}

VXZonesState VXSimScene::takeZoneChanges() { return std::exchange(zoneChanges_, {}); }

void VXSimScene::apply(const VXCommand& record) {
  if (applyNodeRecord(record) || applyAnimationRecord(record) || applySessionRecord(record)) {
    return;
  }
  // Records the simulator has no use for (callbacks are the caller's) change nothing.
}

bool VXSimScene::applyNodeRecord(const VXCommand& record) {
  if (const auto* set = as<VXSetAttributeCommand>(record)) {
    if (set->getValue() == nullptr) throw VXSimSceneException("No attribute value");
    setAttribute(set->getTarget(), set->getAttrName(), *set->getValue());
  } else if (const auto* create = as<VXCreateNodeCommand>(record)) {
    auto child = std::make_unique<VXSimNode>();
    child->name = create->getNodeName();
    child->type = create->getNodeType();
    addChild(create->getTarget(), std::move(child));
  } else if (const auto* copy = as<VXCopyNodeCommand>(record)) {
    std::unique_ptr<VXSimNode> child = node(copy->getSrcAddress()).clone();
    child->name = copy->getNodeName();
    addChild(copy->getParentAddress(), std::move(child));
  } else if (const auto* rename = as<VXRenameTargetCommand>(record)) {
    VXSimNode& target = node(rename->getTarget());
    if (&target == root_.get()) throw VXSimSceneException("Root cannot be renamed");
    freeSlot(parentAddress(rename->getTarget()), rename->getNewName())
        .renameChild(target, rename->getNewName());
  } else if (const auto* remove = as<VXDeleteNodeCommand>(record)) {
    removeNode(remove->getTarget(), VXSimNode::Kind::Node);
  } else if (const auto* createEffect = as<VXCreateEffectCommand>(record)) {
    auto child = std::make_unique<VXSimNode>();
    child->name = createEffect->getEffectName();
    child->type = createEffect->getEffectType();
    child->kind = VXSimNode::Kind::Effect;
    addChild(createEffect->getTarget(), std::move(child));
  } else if (const auto* activate = as<VXActivateEffectCommand>(record)) {
    effect(activate->getTarget()).active = true;
  } else if (const auto* removeEffect = as<VXDeleteEffectCommand>(record)) {
    removeNode(removeEffect->getTarget(), VXSimNode::Kind::Effect);
  } else if (const auto* load = as<VXLoadSceneCommand>(record)) {
    auto child = std::make_unique<VXSimNode>();
    child->name = load->getNodeName();
    child->type = "Scene";
    child->sceneName = load->getSceneName();
    addChild(load->getTarget(), std::move(child));
  } else if (const auto* preload = as<VXPreloadCommand>(record)) {
    preloads_.push_back(rootPath(preload->getTarget()));
  } else {
    return false;
  }
  return true;
}

bool VXSimScene::applyAnimationRecord(const VXCommand& record) {
  if (const auto* start = as<VXActivateAnimationCommand>(record)) {
    node(start->getTarget()).animations[start->getAnimName()].running = true;
  } else if (const auto* startClient = as<VXActivateClientAnimationCommand>(record)) {
    node(startClient->getTarget()).animations[kClientAnimation].running = true;
  } else if (const auto* stop = as<VXStopAnimationCommand>(record)) {
    VXSimAnimation& animation = node(stop->getTarget()).animations[stop->getAnimName()];
    animation.running = false;
    animation.stopTime = stop->getTime();
  } else if (const auto* accelerate = as<VXAccelerateAnimationCommand>(record)) {
    node(accelerate->getTarget()).animations[accelerate->getAnimName()].speed =
        accelerate->getSpeed();
  } else if (const auto* store = as<VXStoreLocalAnimationCommand>(record)) {
    node(store->getTarget()).animations[store->getAnimName()].stored = true;
  } else if (const auto* removeStored = as<VXRemoveLocalAnimationCommand>(record)) {
    VXSimNode& target = node(removeStored->getTarget());
    const auto found = target.animations.find(removeStored->getAnimName());
    if (found == target.animations.end() || !found->second.stored) {
      throw VXSimSceneException("Animation not found: " + removeStored->getAnimName() + " on " +
                                rootPath(removeStored->getTarget()));
    }
    target.animations.erase(found);
  } else if (const auto* action = as<VXActivateActionCommand>(record)) {
    node(action->getTarget());
    actions_.push_back(action->getActionName() + " on " + rootPath(action->getTarget()) + " in " +
                       action->getTransactionName());
  } else {
    return false;
  }
  return true;
}

bool VXSimScene::applySessionRecord(const VXCommand& record) {
  if (const auto* begin = as<VXTransactionBeginCommand>(record)) {
    transactions_.push_back("begin " + begin->getTransactionName());
  } else if (as<VXTransactionEndCommand>(record) != nullptr) {
    transactions_.push_back("end");
  } else if (const auto* roll = as<VXTransactionRollCommand>(record)) {
    transactions_.push_back("roll " + roll->getTransactionName());
  } else if (const auto* stop = as<VXTransactionStopCommand>(record)) {
    transactions_.push_back("stop " + stop->getTransactionName());
  } else if (const auto* zones = as<VXSetZoneStateCommand>(record)) {
    setZones(zones->getZones());
  } else if (const auto* preview = as<VXPreviewCommand>(record)) {
    previews_.push_back(std::to_string(preview->getPreviewID()) + " type " +
                        std::to_string(preview->getPreviewType()));
  } else if (const auto* message = as<VXMessageCommand>(record)) {
    messages_.push_back(message->getMessage());
  } else if (const auto* wait = as<VXWaitCommand>(record)) {
    waitTotal_ += wait->getTime();
  } else if (const auto* project = as<VXSetProjectCommand>(record)) {
    projects_.push_back(project->getProjectName());
  } else {
    return false;
  }
  return true;
}

std::string VXSimScene::dumpTree() const {
  std::string out;
  dumpNode(*root_, 0, out);
  return out;
}
