#include "commands/transaction_commands.h"

#include <utility>

VX_IMPLEMENT_UNLISTED_COMMAND(VXTransactionBaseCommand, VXCommand)
AFC_IMPLEMENT_CLASS(VXTransactionBeginCommand, VXTransactionBaseCommand)
AFC_IMPLEMENT_CLASS(VXTransactionStopCommand, VXTransactionBaseCommand)
AFC_IMPLEMENT_CLASS(VXTransactionRollCommand, VXTransactionBaseCommand)
AFC_IMPLEMENT_CLASS(VXTransactionEndCommand, VXCommand)

void VXTransactionBaseCommand::bindDefaultName(std::string_view name) {
  if (transactionName_.empty()) transactionName_ = name;
}

std::string VXTransactionBaseCommand::toString() const { return textAs("TransactionBase"); }

void VXTransactionBaseCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  out.writeString(transactionName_);
}

void VXTransactionBaseCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  transactionName_ = in.readString();
}

VXTransactionBeginCommand::VXTransactionBeginCommand(std::string transactionName, bool flag)
    : VXTransactionBaseCommand(std::move(transactionName)), flag_(flag) {}

void VXTransactionBeginCommand::write(AFCPersistentOutputStream& out) const {
  VXTransactionBaseCommand::write(out);
  out.writeBool(flag_);
}

void VXTransactionBeginCommand::read(AFCPersistentInputStream& in) {
  VXTransactionBaseCommand::read(in);
  flag_ = in.readBool();
}
