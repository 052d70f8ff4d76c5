#include "commands/action.h"

#include <iterator>
#include <utility>

#include "commands/transaction_commands.h"

AFC_IMPLEMENT_ABSTRACT_CLASS(VXAction, AFCPersistent)
AFC_IMPLEMENT_CLASS(VXImmediateAction, VXAction)
AFC_IMPLEMENT_CLASS(VXChannelAction, VXAction)

void VXAction::addCommand(std::unique_ptr<VXCommand> record) {
  if (record) commands_.push_back(std::move(record));
}

void VXAction::write(AFCPersistentOutputStream& out) const {
  AFCPersistent::write(out);
  out.writeUInt32(static_cast<uint32_t>(commands_.size()));
  for (const auto& record : commands_) out.writeObject(record.get());
}

void VXAction::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  addCommands(readCommands(in));
}

VXAction::Commands VXAction::readCommands(AFCPersistentInputStream& in) {
  // No reserve from the count: it comes off the wire, and every record has to be there anyway.
  const uint32_t count = in.readUInt32();
  Commands records;
  for (uint32_t i = 0; i < count; ++i) {
    std::unique_ptr<VXCommand> record = in.readOwnedObject<VXCommand>();
    if (record) records.push_back(std::move(record));
  }
  return records;
}

// Through addCommand, so that a merged action read back knows again whether it is inside a
// transaction.
void VXAction::addCommands(Commands records) {
  for (auto& record : records) addCommand(std::move(record));
}

void VXChannelAction::write(AFCPersistentOutputStream& out) const {
  VXAction::write(out);
  out.writeInt32(static_cast<int32_t>(channel_));
}

// The channel follows the records but is read before they are added, so that a failed read
// leaves the action as it was.
void VXChannelAction::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  Commands records = readCommands(in);
  channel_ = static_cast<uint32_t>(in.readInt32());
  addCommands(std::move(records));
}

void VXMergedAction::addCommand(std::unique_ptr<VXCommand> record) {
  if (dynamic_cast<const VXTransactionBeginCommand*>(record.get()) != nullptr) {
    inTransaction_ = true;
  } else if (dynamic_cast<const VXTransactionEndCommand*>(record.get()) != nullptr) {
    inTransaction_ = false;
  }
  VXAction::addCommand(std::move(record));
}

void VXMergedAction::foldInto(VXAction& parent) {
  if (inTransaction_) addCommand(std::make_unique<VXTransactionEndCommand>());
  Commands& into = commandsOf(parent);
  into.insert(into.end(), std::make_move_iterator(commands_.begin()),
              std::make_move_iterator(commands_.end()));
  commands_.clear();
}
