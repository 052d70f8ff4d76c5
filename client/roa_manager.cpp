#include "client/roa_manager.h"

#include <string>
#include <utility>

#include "client/roa_exceptions.h"
#include "foundation/errlog.h"

namespace {

VXROAValues copyOf(std::span<const AFCAttribute* const> values) {
  VXROAValues copies;
  copies.reserve(values.size());
  for (const AFCAttribute* value : values) {
    copies.push_back(std::unique_ptr<AFCAttribute>(value ? value->clone() : nullptr));
  }
  return copies;
}

// A missing reply, a server-side failure or a reply kind this side does not know all end here.
void checkReply(const VXROAReply* reply) {
  if (reply == nullptr) throw VXROARemoteException("? null reply ?");
  switch (reply->getKind()) {
    case VX_ROA_REPLY_VOID:
    case VX_ROA_REPLY_VALUE:
    case VX_ROA_REPLY_PROPS:
      return;
    case VX_ROA_REPLY_EXCEPTION: {
      const VXROAValues& values = reply->getValues();
      if (!values.empty() && values.front()) {
        throw VXROARemoteException(values.front()->toString());
      }
      [[fallthrough]];
    }
    default:
      throw VXROARemoteException("? bad reply ?");
  }
}

// The first value of a VALUE reply; nothing for any other kind.
std::unique_ptr<AFCAttribute> valueOf(VXROAReply& reply) {
  if (reply.getKind() != VX_ROA_REPLY_VALUE) return nullptr;
  VXROAValues values = reply.takeValues();
  return values.empty() ? nullptr : std::move(values.front());
}

}  // namespace

void VXROAManager::remoteSetAttr(std::string_view path, const AFCAttribute* value) {
  roaCall(VXROARequest(std::string(path), VX_ROA_SET_ATTR, copyOf({&value, 1})));
}

void VXROAManager::remoteSetAttrAsync(std::string_view path, const AFCAttribute* value) {
  roaCall(VXROARequest(std::string(path), VX_ROA_SET_ATTR_ASYNC, copyOf({&value, 1})));
}

std::unique_ptr<AFCAttribute> VXROAManager::remoteGetAttr(std::string_view path) {
  return valueOf(*roaCall(VXROARequest(std::string(path), VX_ROA_GET_ATTR)));
}

std::unique_ptr<AFCAttribute> VXROAManager::remoteInvoke(
    std::string_view path, std::span<const AFCAttribute* const> arguments) {
  return valueOf(*roaCall(VXROARequest(std::string(path), VX_ROA_INVOKE, copyOf(arguments))));
}

std::optional<VXROAClassInfo> VXROAManager::remoteEnumProps(std::string_view path) {
  std::unique_ptr<VXROAReply> reply = roaCall(VXROARequest(std::string(path), VX_ROA_ENUM_PROPS));
  if (reply->getKind() != VX_ROA_REPLY_PROPS || reply->getValues().empty()) return std::nullopt;
  VXROAValues values = reply->takeValues();
  const std::string name = values.front() ? values.front()->toString() : std::string();
  // The empty name is the registry's global pseudo-class, never a remote class.
  const AFCClass* localClass = name.empty() ? nullptr : AFCClass::forName(name);
  if (localClass == nullptr) {
    AFC_REPORT(AFC_ERRLOG_WARNING, "libVX", "Remote class " + name + " not found in local eoe!");
    return std::nullopt;
  }
  values.erase(values.begin());
  return VXROAClassInfo{localClass, std::move(values)};
}

std::unique_ptr<VXROAReply> VXROAManager::roaCall(const VXROARequest& request) {
  if (request.getTarget().empty()) throw VXROABadRequest();
  AFCPersistentOutputStreamBuffer out;
  out.writeObject(&request);
  const bool async = vxROAIsAsync(request.getKind());
  if (traceEnabled()) trace(async ? request.toTrace() + " ASYNC" : request.toTrace());
  if (async) {
    roaSend(out.getBuffer());
    return nullptr;
  }
  std::unique_ptr<VXROAReply> reply = exchange(out.getBuffer());
  if (reply && traceEnabled()) trace(reply->toTrace());
  checkReply(reply.get());
  return reply;
}

// An empty reply payload means that no reply came (the session was closed while waiting).
std::unique_ptr<VXROAReply> VXROAManager::exchange(const AFCBuffer& requestPayload) {
  AFCRef<AFCBuffer> replyPayload(new AFCBuffer);
  roaRequest(requestPayload, *replyPayload);
  if (replyPayload->empty()) return nullptr;
  AFCPersistentInputStreamBuffer in(replyPayload);
  return in.readOwnedObject<VXROAReply>();
}

void VXROAManager::trace(std::string_view line) {
  std::ostream& stream = traceStream();
  stream << line << '\n';
  stream.flush();
}
