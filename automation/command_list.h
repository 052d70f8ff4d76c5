#pragma once
// A recorded list of commands without a title, a session or a connection: a reusable script of
// node, attribute, animation, transaction and preview operations on relative addresses. Nothing
// is sent while it is recorded; a title replays it later under its own node, zone and channel
// (visit), as many times and by as many titles as wanted. The list only grows.
//
// Not thread safe: one thread records at a time; replays only read. Every method checks its
// arguments before it appends anything and throws AFCIllegalArgumentException with its own text
// ("Empty new name", "Empty node type", ...), or what the value conversion throws; a failed
// method appends nothing. Callback ids come from the process-wide counter that every builder
// uses.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation/call_result.h"
#include "automation/script_value.h"
#include "commands/command.h"
#include "commands/command_list_builder.h"

class CCommandList : private VXCommandListBuilder {
 public:
  using Visitor = std::function<void(const VXCommand& command)>;

  CCommandList() = default;

  // By name (Text): VXActivateAnimationCommand. An object: the animation behind it,
  // VXActivateClientAnimationCommand, or NoInterface (and nothing appended) when the object is
  // not an animation. Any other value appends nothing. options: the options object's record when
  // an object is given (else "Object is not anim options"), the defaults for anything else.
  CCallResult animate(const ScriptValue& animNameOrObject, const std::string& address,
                      const ScriptValue& options);
  void stopAnimation(const std::string& animName, const std::string& address);
  // The value is converted as a title's set converts it; the address may be empty.
  void set(const std::string& address, const std::string& attrName, const ScriptValue& value);
  void createNode(const std::string& nodeType, const std::string& newAddress);
  void createEffect(const std::string& effectType, const std::string& newAddress);
  void copyNode(const std::string& srcAddress, const std::string& newAddress);
  void renameNode(const std::string& address, const std::string& newName);
  void deleteNode(const std::string& address);
  void deleteEffect(const std::string& address);
  void loadScene(const std::string& sceneName, const std::string& newAddress);
  // Without zone and address: the executing title supplies them.
  void doAction(const std::string& actionName);
  // The name is the value's text when it is Text, else empty; no fallback and no check here.
  void beginTransaction(const ScriptValue& transactionName);
  void endTransaction();
  void rollTransaction(const ScriptValue& transactionName);
  // Appends a callback command under a new id and returns the id; every replay reports it.
  int32_t callback();
  void preload(const std::string& address);
  void beginSequencePreview(int32_t previewID);
  void endSequencePreview(int32_t previewID);
  void captureStillPreview(int32_t previewID);
  // One zone entry without a name, on when state is non-zero; the executing title names it.
  void setZoneState(int32_t state);

  // Calls the visitor with each command, in the order they were recorded.
  void visit(const Visitor& visitor) const;
  void append(std::unique_ptr<VXCommand> command);
  std::size_t size() const { return commands_.size(); }

 private:
  void addCommand(std::unique_ptr<VXCommand> record) override { append(std::move(record)); }

  std::vector<std::shared_ptr<const VXCommand>> commands_;
};
