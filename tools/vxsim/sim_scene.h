#pragma once
// The simulator's scene: a tree of named nodes under "Root" that the command records change,
// plus the logs a render server would act on (transactions, previews, preloads, messages, waits,
// scene actions) and the zone states. Nothing is rendered: the scene only remembers.
//
// Addresses are '/'-separated node names below Root; a leading "Root" component and empty
// components are ignored, so "Root/a/b", "a/b" and "/a/b" name the same node.
//
// A plain value owned by the simulator hub; not thread safe. apply() throws
// VXSimSceneException when a record cannot be applied (missing node, name taken); the scene is
// unchanged then. A tree deeper than kMaxDepth or larger than kMaxNodes is refused the same way.
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "commands/command.h"
#include "commands/zone_state.h"
#include "foundation/attribute.h"
#include "foundation/exception.h"

AFC_DECLARE_EXCEPTION(VXSimSceneException, AFCException);

// One animation of a node, by name; client animations are kept under "<client>".
struct VXSimAnimation {
  bool stored = false;   // left on the node by a store, until removed
  bool running = false;  // started and not stopped since
  float speed = 1.0f;
  int64_t stopTime = 0;  // microseconds, of the last stop
};

struct VXSimNode {
  enum class Kind { Node, Effect };

  std::string name;
  std::string type;
  Kind kind = Kind::Node;
  bool active = false;    // effects only
  std::string sceneName;  // set on the node a scene was loaded into
  // In the order added; read here, changed only through the child operations below, which keep
  // the index by name.
  std::vector<std::unique_ptr<VXSimNode>> children;
  std::map<std::string, std::unique_ptr<AFCAttribute>> attributes;
  std::map<std::string, VXSimAnimation> animations;

  VXSimNode* findChild(std::string_view childName) const;
  // The child's name must be free among the children.
  void addChild(std::unique_ptr<VXSimNode> child);
  void removeChild(const VXSimNode& child);
  void renameChild(VXSimNode& child, std::string newName);
  std::unique_ptr<VXSimNode> clone() const;
  // This node and all below it.
  std::size_t countNodes() const;
  // Levels from this node down to its deepest descendant, this one included.
  std::size_t height() const;

 private:
  // Every address lookup passes through here: a parent may hold thousands of children. The
  // keys view the children's own names, which stay put because the children are on the heap.
  std::unordered_map<std::string_view, VXSimNode*> byName_;
};

class VXSimScene {
 public:
  // Bounds on what clients can build: the tree is walked recursively, and copies double it.
  static constexpr std::size_t kMaxDepth = 64;
  static constexpr std::size_t kMaxNodes = 100000;

  VXSimScene();

  // Applies one record; zone records change zones (see takeZoneChanges), callback records are
  // left to the caller.
  void apply(const VXCommand& record);

  // The node at the address, or nullptr.
  VXSimNode* find(std::string_view address) const;
  const VXSimNode& getRoot() const { return *root_; }
  // "Root/..." of the first node found depth first that has no children, or "Root" when the
  // scene is empty.
  std::string firstLeafPath() const;
  // "Root/..." of the first node found depth first with that name; empty when none has it.
  std::string findNamed(std::string_view name) const;

  // Sets the attribute of the node at address, keeping the value's type (the value is cloned).
  void setAttribute(std::string_view address, const std::string& name, const AFCAttribute& value);

  const VXZonesState& getZones() const { return zones_; }
  void setZones(const VXZonesState& zones);
  // The zones changed since the last call, with their new states.
  VXZonesState takeZoneChanges();

  // "begin NAME", "end", "roll NAME", "stop NAME", in the order received.
  const std::vector<std::string>& getTransactions() const { return transactions_; }
  // "NAME on TARGET in TRANSACTION" per scene action run.
  const std::vector<std::string>& getActions() const { return actions_; }
  // "ID type TYPE" per preview.
  const std::vector<std::string>& getPreviews() const { return previews_; }
  const std::vector<std::string>& getPreloads() const { return preloads_; }
  const std::vector<std::string>& getMessages() const { return messages_; }
  const std::vector<std::string>& getProjects() const { return projects_; }
  // The sum of the waits asked for, in the records' unit.
  int64_t getWaitTotal() const { return waitTotal_; }

  // The tree as indented lines: a node as its name and "(type)", its attributes as
  // ".name = value" one level deeper.
  std::string dumpTree() const;

 private:
  VXSimNode& node(std::string_view address) const;
  // The parent and a child name that is still free.
  VXSimNode& freeSlot(std::string_view parentAddress, const std::string& childName) const;
  void addChild(std::string_view parentAddress, std::unique_ptr<VXSimNode> child);
  void removeNode(std::string_view address, VXSimNode::Kind kind);
  VXSimNode& effect(std::string_view address) const;
  bool applyNodeRecord(const VXCommand& record);
  bool applyAnimationRecord(const VXCommand& record);
  bool applySessionRecord(const VXCommand& record);

  std::unique_ptr<VXSimNode> root_;
  VXZonesState zones_;
  VXZonesState zoneChanges_;
  std::vector<std::string> transactions_;
  std::vector<std::string> actions_;
  std::vector<std::string> previews_;
  std::vector<std::string> preloads_;
  std::vector<std::string> messages_;
  std::vector<std::string> projects_;
  int64_t waitTotal_ = 0;
  std::size_t nodeCount_ = 0;  // below Root
};
