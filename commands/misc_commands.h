#pragma once
// Records that address the session rather than a node: the project of a channel, callbacks,
// messages, waits and previews.
//
// Plain single-owner values, not thread safe; reading throws the stream's exceptions.
#include <cstdint>
#include <string>

#include "commands/command.h"

// Selects the project that the channel's later commands refer to.
class VXSetProjectCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXSetProjectCommand)
 public:
  VXSetProjectCommand() = default;
  VXSetProjectCommand(const VXSetProjectCommand&) = default;
  explicit VXSetProjectCommand(std::string projectName) : projectName_(std::move(projectName)) {}

  const std::string& getProjectName() const { return projectName_; }

  std::string toString() const override { return "SetProject " + projectName_; }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string projectName_;
};

// Asks the server to call back with the id once it has executed everything before it.
class VXCallbackCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXCallbackCommand)
 public:
  VXCallbackCommand() = default;
  VXCallbackCommand(const VXCallbackCommand&) = default;
  explicit VXCallbackCommand(int32_t callbackId) : callbackId_(callbackId) {}

  int32_t getCallbackId() const { return callbackId_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  int32_t callbackId_ = 0;
};

// A text for the server; it travels as a wide string.
class VXMessageCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXMessageCommand)
 public:
  VXMessageCommand() = default;
  VXMessageCommand(const VXMessageCommand&) = default;
  explicit VXMessageCommand(std::string message) : message_(std::move(message)) {}

  const std::string& getMessage() const { return message_; }

  // "Message %d" and the text: the "%d" stays as it is, readers of trace lines expect it.
  std::string toString() const override { return "Message %d" + message_; }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string message_;
};

// Makes the server wait before the next command.
class VXWaitCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXWaitCommand)
 public:
  VXWaitCommand() = default;
  VXWaitCommand(const VXWaitCommand&) = default;
  explicit VXWaitCommand(int32_t time) : time_(time) {}

  int32_t getTime() const { return time_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  int32_t time_ = 0;
};

// Schedules a preview: type 0 a single one, 1 the begin and 2 the end of a sequence. Two further
// words travel after the type, always 0.
class VXPreviewCommand : public VXCommand {
  VX_DECLARE_COMMAND(VXPreviewCommand)
 public:
  static constexpr int32_t kSingle = 0;
  static constexpr int32_t kSequenceBegin = 1;
  static constexpr int32_t kSequenceEnd = 2;

  VXPreviewCommand() = default;
  VXPreviewCommand(const VXPreviewCommand&) = default;
  explicit VXPreviewCommand(int32_t previewId, int32_t previewType = kSingle)
      : previewID_(previewId), previewType_(previewType) {}

  int32_t getPreviewID() const { return previewID_; }
  int32_t getPreviewType() const { return previewType_; }

  std::string toString() const override;
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  int32_t previewID_ = 0;
  int32_t previewType_ = kSingle;
};
