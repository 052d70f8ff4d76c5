#include "commands/misc_commands.h"

#include "foundation/charset.h"

AFC_IMPLEMENT_CLASS(VXSetProjectCommand, VXCommand)
AFC_IMPLEMENT_CLASS(VXCallbackCommand, VXCommand)
AFC_IMPLEMENT_CLASS(VXMessageCommand, VXCommand)
AFC_IMPLEMENT_CLASS(VXWaitCommand, VXCommand)
AFC_IMPLEMENT_CLASS(VXPreviewCommand, VXCommand)

void VXSetProjectCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  out.writeString(projectName_);
}

void VXSetProjectCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  projectName_ = in.readString();
}

std::string VXCallbackCommand::toString() const {
  return "Callback " + std::to_string(callbackId_);
}

void VXCallbackCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  out.writeInt32(callbackId_);
}

void VXCallbackCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  callbackId_ = in.readInt32();
}

void VXMessageCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  out.writeWString(AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, message_));
}

void VXMessageCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  message_ = in.readString();  // either string code, converted as it was written
}

std::string VXWaitCommand::toString() const { return "Wait " + std::to_string(time_); }

void VXWaitCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  out.writeInt32(time_);
}

void VXWaitCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  time_ = in.readInt32();
}

std::string VXPreviewCommand::toString() const {
  return "Preview " + std::to_string(previewID_) + " type " + std::to_string(previewType_);
}

void VXPreviewCommand::write(AFCPersistentOutputStream& out) const {
  VXCommand::write(out);
  out.writeInt32(previewID_);
  out.writeInt32(previewType_);
  out.writeInt32(0);
  out.writeInt32(0);
}

void VXPreviewCommand::read(AFCPersistentInputStream& in) {
  VXCommand::read(in);
  previewID_ = in.readInt32();
  previewType_ = in.readInt32();
  in.readInt32();  // the two further words carry nothing for us
  in.readInt32();
}
