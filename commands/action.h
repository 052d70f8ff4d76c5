#pragma once
// Actions: the ordered lists of command records that the server executes together, the unit
// that goes into one packet. An immediate action runs on the default channel, a channel action
// on its channel; a merged action is opened inside another one and folded into it instead of
// being sent.
//
// An action owns its records. Not thread safe: an action is filled and sent by one thread.
// Reading throws the stream's exceptions (a record that is not a command is refused) and then
// leaves the action unchanged.
#include <cstdint>
#include <memory>
#include <vector>

#include "commands/command.h"

// Takes new command records over, one at a time.
class VXCommandSink {
 public:
  virtual ~VXCommandSink() = default;
  // A null record is ignored.
  virtual void addCommand(std::unique_ptr<VXCommand> record) = 0;
};

class VXAction : public AFCPersistent, public VXCommandSink {
  AFC_DECLARE_CLASS()
 public:
  using Commands = std::vector<std::unique_ptr<VXCommand>>;

  VXAction() = default;
  VXAction(const VXAction&) = delete;
  VXAction& operator=(const VXAction&) = delete;

  // Appends the record.
  void addCommand(std::unique_ptr<VXCommand> record) override;
  const Commands& getCommands() const { return commands_; }
  // The channel the server runs the action on; 0 is the default channel.
  virtual uint32_t getChannel() const = 0;

  // The base part, the record count (uint32), then each record as a new object.
  void write(AFCPersistentOutputStream& out) const override;
  // Reads every record first, then hands them to addCommand in order.
  void read(AFCPersistentInputStream& in) override;

 protected:
  // The count and the records, not yet added; nulls are dropped.
  static Commands readCommands(AFCPersistentInputStream& in);
  void addCommands(Commands records);
  static Commands& commandsOf(VXAction& action) { return action.commands_; }

  Commands commands_;
};

// Runs at once on the default channel.
class VXImmediateAction : public VXAction {
  AFC_DECLARE_CLASS()
 public:
  uint32_t getChannel() const override { return 0; }
};

// Runs on a numbered channel, which travels after the records.
class VXChannelAction : public VXAction {
  AFC_DECLARE_CLASS()
 public:
  VXChannelAction() = default;
  explicit VXChannelAction(uint32_t channel) : channel_(channel) {}

  uint32_t getChannel() const override { return channel_; }

  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  uint32_t channel_ = 0;
};

// An action opened inside another one. It has no class of its own: written by itself it would
// go out as an immediate action. It tracks whether a transaction it began is still open, so
// that folding can close it.
class VXMergedAction : public VXAction {
 public:
  const AFCClass* getClass() const override { return &VXImmediateAction::staticClass(); }
  uint32_t getChannel() const override { return 0; }

  // Notes transaction begins and ends, then appends.
  void addCommand(std::unique_ptr<VXCommand> record) override;
  bool isInTransaction() const { return inTransaction_; }

  // Closes a transaction left open with a transaction end, then moves every record, in order,
  // to the end of the parent's list; this action is left empty.
  void foldInto(VXAction& parent);

 private:
  bool inTransaction_ = false;
};
