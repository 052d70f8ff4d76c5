#pragma once
// Records that open, close, stop and roll back named transactions on the server. A transaction
// begun inside a merged action and left open is closed by the action when it is folded.
//
// Plain single-owner values, not thread safe; reading throws the stream's exceptions.
#include <string>
#include <string_view>

#include "commands/command.h"

// A record naming a transaction. Never sent by itself; the reader does not know it by name.
class VXTransactionBaseCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXTransactionBaseCommand)
 public:
  VXTransactionBaseCommand() = default;
  VXTransactionBaseCommand(const VXTransactionBaseCommand&) = default;
  explicit VXTransactionBaseCommand(std::string transactionName)
      : transactionName_(std::move(transactionName)) {}

  const std::string& getTransactionName() const { return transactionName_; }

  // An empty transaction name takes the given one.
  void bindDefaultName(std::string_view name) override;
  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 protected:
  // "<word> <transactionName>"
  std::string textAs(const char* word) const { return std::string(word) + " " + transactionName_; }

  std::string transactionName_;
};

// Opens a transaction. The flag is passed through to the server; titles always send false.
class VXTransactionBeginCommand : public VXTransactionBaseCommand {
  VX_DECLARE_COMMAND(VXTransactionBeginCommand)
 public:
  VXTransactionBeginCommand() = default;
  VXTransactionBeginCommand(const VXTransactionBeginCommand&) = default;
  VXTransactionBeginCommand(std::string transactionName, bool flag);

  bool getFlag() const { return flag_; }

  std::string toString() const override { return textAs("TransactionBegin"); }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  bool flag_ = false;
};

class VXTransactionStopCommand : public VXTransactionBaseCommand {
  VX_DECLARE_COMMAND(VXTransactionStopCommand)
 public:
  VXTransactionStopCommand() = default;
  VXTransactionStopCommand(const VXTransactionStopCommand&) = default;
  explicit VXTransactionStopCommand(std::string transactionName)
      : VXTransactionBaseCommand(std::move(transactionName)) {}

  std::string toString() const override { return textAs("TransactionStop"); }
};

class VXTransactionRollCommand : public VXTransactionBaseCommand {
  VX_DECLARE_COMMAND(VXTransactionRollCommand)
 public:
  VXTransactionRollCommand() = default;
  VXTransactionRollCommand(const VXTransactionRollCommand&) = default;
  explicit VXTransactionRollCommand(std::string transactionName)
      : VXTransactionBaseCommand(std::move(transactionName)) {}

  std::string toString() const override { return textAs("TransactionRoll"); }
};

// Closes the innermost open transaction; carries no fields.
class VXTransactionEndCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXTransactionEndCommand)
 public:
  VXTransactionEndCommand() = default;
  VXTransactionEndCommand(const VXTransactionEndCommand&) = default;

  std::string toString() const override { return "TransactionEnd"; }
};
