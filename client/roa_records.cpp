#include "client/roa_records.h"

#include <utility>

namespace {

void writeValues(AFCPersistentOutputStream& out, const VXROAValues& values) {
  out.writeUInt32(static_cast<uint32_t>(values.size()));
  for (const auto& value : values) out.writeObject(value.get());
}

VXROAValues readValues(AFCPersistentInputStream& in) {
  // No reserve from the count: it comes off the wire, and every value has to be there anyway.
  const uint32_t count = in.readUInt32();
  VXROAValues values;
  for (uint32_t i = 0; i < count; ++i) values.push_back(in.readOwnedObject<AFCAttribute>());
  return values;
}

void appendValueTexts(std::string& line, const VXROAValues& values) {
  for (const auto& value : values) {
    line += ',';
    line += value ? value->toString() : "<NULL>";
  }
}

}  // namespace

std::string_view vxROARequestKindName(int32_t kind) {
  static constexpr std::string_view kNames[] = {"NULL",           "SET_ATTR",   "GET_ATTR",
                                                "INVOKE",         "WATCH_ATTR", "ENUM_PROPS",
                                                "GET_MULTI_ATTR", "FEATURES"};
  switch (kind) {
    case VX_ROA_NULL_ASYNC:
      return "NULL_ASYNC";
    case VX_ROA_SET_ATTR_ASYNC:
      return "SET_ATTR_ASYNC";
    default:
      return kind >= VX_ROA_NULL && kind <= VX_ROA_FEATURES ? kNames[kind] : std::string_view();
  }
}

std::string_view vxROAReplyKindName(int32_t kind) {
  static constexpr std::string_view kNames[] = {"VOID", "EXCEPTION", "VALUE", "PROPS"};
  return kind >= VX_ROA_REPLY_VOID && kind <= VX_ROA_REPLY_PROPS ? kNames[kind]
                                                                 : std::string_view();
}

std::string vxROAMemberTarget(std::string_view objectPath, std::string_view member) {
  std::string target(objectPath);
  target += '.';
  target += member;
  return target;
}

// --- VXROARequest

AFC_IMPLEMENT_CLASS(VXROARequest, AFCPersistent)

VXROARequest::VXROARequest(std::string target, int32_t kind, VXROAValues arguments)
    : target_(std::move(target)), kind_(kind), arguments_(std::move(arguments)) {}

std::string VXROARequest::toTrace() const {
  std::string line = "ROA-REQ[";
  line += vxROARequestKindName(kind_);
  line += ',';
  line += target_;
  appendValueTexts(line, arguments_);
  line += ']';
  return line;
}

void VXROARequest::write(AFCPersistentOutputStream& out) const {
  AFCPersistent::write(out);
  out.writeString(target_);
  out.writeInt32(kind_);
  writeValues(out, arguments_);
}

void VXROARequest::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  std::string target = in.readString();
  const int32_t kind = in.readInt32();
  arguments_ = readValues(in);
  target_ = std::move(target);
  kind_ = kind;
}

// --- VXROAReply

AFC_IMPLEMENT_CLASS(VXROAReply, AFCPersistent)

VXROAReply::VXROAReply(int32_t kind, VXROAValues values)
    : kind_(kind), values_(std::move(values)) {}

std::string VXROAReply::toTrace() const {
  std::string line = "ROA-REPLY[";
  line += vxROAReplyKindName(kind_);
  appendValueTexts(line, values_);
  return line;
}

void VXROAReply::write(AFCPersistentOutputStream& out) const {
  AFCPersistent::write(out);
  out.writeInt32(kind_);
  writeValues(out, values_);
}

void VXROAReply::read(AFCPersistentInputStream& in) {
  AFCPersistent::read(in);
  const int32_t kind = in.readInt32();
  values_ = readValues(in);
  kind_ = kind;
}

void registerClientRoaClasses() {
  registerFoundationClasses();
  VXROARequest::staticClass();
  VXROAReply::staticClass();
}
