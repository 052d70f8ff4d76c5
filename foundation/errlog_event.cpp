#include "foundation/errlog_event.h"

#include <functional>
#include <utility>

#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"

namespace {
const std::string& unknown() {
  static const std::string text = "-unknown-";
  return text;
}
}  // namespace

namespace {
// A reflective read operation returning the event's text field as a string attribute.
template <class Text>
AFCMethod::Invoker textReader(Text (AFCErrLogEvent::*read)() const) {
  return [read](AFCObject* self, AFCArguments) -> AFCResult {
    return std::make_unique<AFCAttributeString>((static_cast<AFCErrLogEvent*>(self)->*read)());
  };
}
}  // namespace

const AFCClass& AFCErrLogEvent::staticClass() {
  static const AFCClass& record = [] {
    const AFCClass* text = &AFCAttributeString::staticClass();
    auto* c = new AFCClassEx("AFCErrLogEvent", &AFCPersistent::staticClass());
    c->defaultConstructor<AFCErrLogEvent>()
        .method("getTypeString", {}, text, textReader(&AFCErrLogEvent::getTypeString))
        .method("getArea", {}, text, textReader(&AFCErrLogEvent::getArea))
        .method("getTimeString", {}, text, textReader(&AFCErrLogEvent::getTimeString))
        .method("getSourceFileName", {}, text, textReader(&AFCErrLogEvent::getSourceFileName))
        .method("getSourceLineNumber", {}, &AFCAttributeInt32::staticClass(),
                [](AFCObject* self, AFCArguments) -> AFCResult {
                  return std::make_unique<AFCAttributeInt32>(
                      static_cast<AFCErrLogEvent*>(self)->getSourceLineNumber());
                })
        .method("getMessage", {}, text, textReader(&AFCErrLogEvent::getMessage));
    return std::cref(c->registerClass());
  }();
  return record;
}

AFCErrLogEvent::AFCErrLogEvent(unsigned type, std::string area, const AFCTimestamp& time,
                               std::string sourceFile, int32_t sourceLine, std::string message)
    : type_(type),
      area_(std::move(area)),
      time_(time),
      sourceFile_(std::move(sourceFile)),
      sourceLine_(sourceLine),
      message_(std::move(message)) {}

const std::string& AFCErrLogEvent::getArea() const { return hasArea() ? area_ : unknown(); }

const std::string& AFCErrLogEvent::getSourceFileName() const {
  return hasSourceFile() ? sourceFile_ : unknown();
}

bool AFCErrLogEvent::isSameReport(const AFCErrLogEvent& other) const {
  return type_ == other.type_ && sourceLine_ == other.sourceLine_ && message_ == other.message_ &&
         area_ == other.area_ && sourceFile_ == other.sourceFile_;
}

void AFCErrLogEvent::write(AFCPersistentOutputStream& out) const {
  AFCPersistent::write(out);
  out.writeUInt32(type_);
  out.writeString(area_);
  out.writeString(getTimeString());
  out.writeString(sourceFile_);
  out.writeInt32(sourceLine_);
  out.writeString(message_);
}

void AFCErrLogEvent::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  AFCErrLogEvent event;
  event.type_ = in.readUInt32();
  event.area_ = in.readString();
  event.time_.fromString(in.readString());
  event.sourceFile_ = in.readString();
  event.sourceLine_ = in.readInt32();
  event.message_ = in.readString();
  *this = std::move(event);
}
