#include "client/roa_resolvable.h"

#include <functional>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "client/roa_exceptions.h"
#include "foundation/attribute_string.h"
#include "foundation/errlog.h"

namespace {

struct ObjectTable {
  std::mutex lock;
  std::map<std::string, VXROAResolvable*, std::less<>> entries;
};

ObjectTable& objectTable() {
  static ObjectTable* table = new ObjectTable;  // never destroyed: resolvables may be static
  return *table;
}

struct Member {
  AFCObject* object;
  const AFCClass* objectClass;
  std::string name;
};

// The object and its class for a member target, split at the last '.'.
Member findMember(std::string_view target) {
  const auto dot = target.rfind('.');
  if (dot == std::string_view::npos) throw VXROABadRequest();
  AFCObject* object = VXROAResolvable::resolve(target.substr(0, dot)).getRoaObject();
  return {object, object ? object->getClass() : nullptr, std::string(target.substr(dot + 1))};
}

const AFCDeclaredAttribute& findAttribute(const Member& member) {
  const AFCDeclaredAttribute* attribute =
      member.objectClass ? member.objectClass->findAttribute(member.name) : nullptr;
  if (attribute == nullptr) throw VXROAEntityNotFound("Attribute", member.name);
  return *attribute;
}

void logAsyncSetFailure(const AFCException& failure) noexcept {
  AFC_REPORT(AFC_ERRLOG_ERROR, "libVX", "ROA async set: " + failure.toString());
}

// The one argument of a set request; anything else is malformed.
const AFCAttribute& setValueOf(const VXROARequest& request) {
  const VXROAValues& arguments = request.getArguments();
  if (arguments.size() != 1 || !arguments.front()) throw VXROABadRequest();
  return *arguments.front();
}

VXROAValues oneValue(std::unique_ptr<AFCAttribute> value) {
  VXROAValues values;
  values.push_back(std::move(value));
  return values;
}

// The class name, then every declared attribute's name, the root class's first.
VXROAValues propertiesOf(std::string_view path) {
  AFCObject* object = VXROAResolvable::resolve(path).getRoaObject();
  if (object == nullptr) throw VXROAEntityNotFound("object", std::string(path));
  std::vector<const AFCClass*> chain;
  for (const AFCClass* c = object->getClass(); c != nullptr; c = c->getParent()) {
    chain.push_back(c);
  }
  VXROAValues values = oneValue(std::make_unique<AFCAttributeString>(chain.front()->getName()));
  for (auto c = chain.rbegin(); c != chain.rend(); ++c) {
    for (const auto& attribute : (*c)->getAttributes()) {
      values.push_back(std::make_unique<AFCAttributeString>(attribute.getName()));
    }
  }
  return values;
}

std::unique_ptr<VXROAReply> serveNow(const VXROARequest& request) {
  const std::string& target = request.getTarget();
  switch (request.getKind()) {
    case VX_ROA_NULL:
      return std::make_unique<VXROAReply>(VX_ROA_REPLY_VOID);
    case VX_ROA_SET_ATTR:
      VXROAResolvable::localSetAttr(target, setValueOf(request));
      return std::make_unique<VXROAReply>(VX_ROA_REPLY_VOID);
    case VX_ROA_GET_ATTR:
      return std::make_unique<VXROAReply>(VX_ROA_REPLY_VALUE,
                                          oneValue(VXROAResolvable::localGetAttr(target)));
    case VX_ROA_INVOKE: {
      std::vector<AFCAttribute*> arguments;
      for (const auto& argument : request.getArguments()) arguments.push_back(argument.get());
      std::unique_ptr<AFCAttribute> result = VXROAResolvable::localInvoke(target, arguments);
      if (!result) return std::make_unique<VXROAReply>(VX_ROA_REPLY_VOID);
      return std::make_unique<VXROAReply>(VX_ROA_REPLY_VALUE, oneValue(std::move(result)));
    }
    case VX_ROA_ENUM_PROPS:
      return std::make_unique<VXROAReply>(VX_ROA_REPLY_PROPS, propertiesOf(target));
    default:
      throw VXROABadRequest();
  }
}

}  // namespace

VXROAResolvable::~VXROAResolvable() { setRoaPath({}); }

void VXROAResolvable::setRoaPath(std::string path) {
  ObjectTable& table = objectTable();
  std::lock_guard<std::mutex> guard(table.lock);
  const auto old = table.entries.find(path_);
  if (old != table.entries.end() && old->second == this) table.entries.erase(old);
  if (!path.empty()) table.entries.insert_or_assign(path, this);
  path_ = std::move(path);
}

AFCObject* VXROAResolvable::getRoaObject() { return dynamic_cast<AFCObject*>(this); }

VXROAResolvable& VXROAResolvable::resolve(std::string_view path) {
  ObjectTable& table = objectTable();
  std::lock_guard<std::mutex> guard(table.lock);
  const auto found = table.entries.find(path);
  if (found == table.entries.end()) throw VXROAEntityNotFound("object", std::string(path));
  return *found->second;
}

std::unique_ptr<AFCAttribute> VXROAResolvable::localGetAttr(std::string_view target) {
  const Member member = findMember(target);
  return findAttribute(member).get(*member.object);
}

void VXROAResolvable::localSetAttr(std::string_view target, const AFCAttribute& value) {
  const Member member = findMember(target);
  findAttribute(member).set(*member.object, value);
}

void VXROAResolvable::localSetAttrAsync(std::string_view target,
                                        const AFCAttribute& value) noexcept {
  try {
    localSetAttr(target, value);
  } catch (const AFCException& failure) {
    logAsyncSetFailure(failure);
  }
}

std::unique_ptr<AFCAttribute> VXROAResolvable::localInvoke(
    std::string_view target, std::span<AFCAttribute* const> arguments) {
  const Member member = findMember(target);
  const AFCMethod* method =
      member.objectClass ? member.objectClass->findMethod(member.name) : nullptr;
  if (method == nullptr) throw VXROAEntityNotFound("Method", member.name);
  return method->invoke(member.object, arguments);
}

std::unique_ptr<VXROAReply> VXROAResolvable::serve(const VXROARequest& request) {
  if (request.getKind() == VX_ROA_SET_ATTR_ASYNC) {
    try {
      localSetAttr(request.getTarget(), setValueOf(request));
    } catch (const AFCException& failure) {
      logAsyncSetFailure(failure);
    }
  }
  if (vxROAIsAsync(request.getKind())) return nullptr;
  try {
    return serveNow(request);
  } catch (const AFCException& failure) {
    return std::make_unique<VXROAReply>(
        VX_ROA_REPLY_EXCEPTION, oneValue(std::make_unique<AFCAttributeString>(failure.toString())));
  }
}
