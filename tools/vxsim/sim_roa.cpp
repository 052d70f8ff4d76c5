// Remote objects of the simulator: the scene's nodes by "Root/..." path with their attributes,
// and the server's services ("::Preview", "::Pick", "::CameraManager", "::Control").
//
// Member kinds (SET_ATTR, GET_ATTR, INVOKE, WATCH_ATTR) name "OBJECT.MEMBER", split at the last
// '.'; object kinds (ENUM_PROPS, GET_MULTI_ATTR) name the object itself, so a node name may hold
// a '.' there. The layouts this server chose where the client leaves them open:
//   ENUM_PROPS      PROPS: the object's class name (a node's type, "Node" for one without, a
//                   service's name without "::"), then one string per property: a node's
//                   attribute names in name order, a service's method names in name order.
//                   The client matches the class name to a local class of that name.
//   GET_MULTI_ATTR  arguments: the attribute names (any value, read as its text); VALUE with
//                   the values in the same order. A missing name fails the whole request with
//                   "Attribute NAME not found!"; services have no attributes.
//   WATCH_ATTR      "NODE.ATTR", no arguments; the attribute must exist; VOID. Its later
//                   changes are told as server messages "TARGET=VALUE" (see VXSimWatches).
//   FEATURES        any target, no arguments; VALUE with one Int32 per request kind served,
//                   the synchronous ones 0-7, then NULL_ASYNC and SET_ATTR_ASYNC.
// An asynchronous form (kind + 256) is served like its synchronous kind, without a reply.
#include <algorithm>
#include <map>
#include <set>

#include "client/packet_frame.h"
#include "client/roa_exceptions.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_hub.h"

namespace {

constexpr std::string_view kServicePrefix = "::";
constexpr const char* kUntypedNodeClass = "Node";

// The services by name, with their methods.
const std::map<std::string, std::set<std::string>>& services() {
  static const std::map<std::string, std::set<std::string>> kServices = {
      {"::Preview", {"generateID", "getStillImageFile", "getSequenceImageFile"}},
      {"::Pick", {"sendRequest"}},
      {"::CameraManager", {"switchCamera"}},
      {"::Control", {"writePicture", "writeScene"}},
  };
  return kServices;
}

const std::set<std::string>& serviceMethods(const std::string& object) {
  const auto service = services().find(object);
  if (service == services().end()) throw VXROAEntityNotFound("object", object);
  return service->second;
}

VXROAReply valueReply(std::unique_ptr<AFCAttribute> value) {
  VXROAValues values;
  values.push_back(std::move(value));
  return VXROAReply(VX_ROA_REPLY_VALUE, std::move(values));
}

VXROAReply propsReply(const std::string& className, const std::set<std::string>& names) {
  VXROAValues values;
  values.push_back(std::make_unique<AFCAttributeString>(className));
  for (const std::string& name : names) {
    values.push_back(std::make_unique<AFCAttributeString>(name));
  }
  return VXROAReply(VX_ROA_REPLY_PROPS, std::move(values));
}

VXROAReply featuresReply() {
  VXROAValues values;
  for (int32_t kind = VX_ROA_NULL; kind <= VX_ROA_FEATURES; ++kind) {
    values.push_back(std::make_unique<AFCAttributeInt32>(kind));
  }
  for (int32_t kind : {VX_ROA_NULL_ASYNC, VX_ROA_SET_ATTR_ASYNC}) {
    values.push_back(std::make_unique<AFCAttributeInt32>(kind));
  }
  return VXROAReply(VX_ROA_REPLY_VALUE, std::move(values));
}

// Markup-safe text for an attribute value of the pick result.
std::string escapeXml(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

// The argument at index; a missing or null one makes the request bad.
const AFCAttribute& argumentAt(const VXROAValues& arguments, std::size_t index) {
  if (index >= arguments.size() || !arguments[index]) throw VXROABadRequest();
  return *arguments[index];
}

}  // namespace

VXROAReply vxSimExceptionReply(const std::string& text) {
  VXROAValues values;
  values.push_back(std::make_unique<AFCAttributeString>(text));
  return VXROAReply(VX_ROA_REPLY_EXCEPTION, std::move(values));
}

VXROAReply VXSimHub::answer(VXSimConnection& from, const VXROARequest& request) {
  VXROAReply reply;
  try {
    reply = serveRemote(from, request);
  } catch (const AFCException& e) {
    if (vxROAIsAsync(request.getKind())) {
      log("client " + std::to_string(from.getId()) + ": ROA async set: " + e.what());
    }
    reply = vxSimExceptionReply(e.what());
  }
  notifyWatchers();
  return reply;
}

VXROAReply VXSimHub::serveRemote(VXSimConnection& from, const VXROARequest& request) {
  const int32_t kind = request.getKind() % VX_ROA_ASYNC;
  const std::string& target = request.getTarget();
  switch (kind) {
    case VX_ROA_NULL:
      return VXROAReply(VX_ROA_REPLY_VOID);
    case VX_ROA_FEATURES:
      return featuresReply();
    case VX_ROA_ENUM_PROPS:
      return serveProperties(target);
    case VX_ROA_GET_MULTI_ATTR:
      return serveMultiGet(target, request.getArguments());
    case VX_ROA_WATCH_ATTR:
      return serveWatch(from, target);
    default:
      break;
  }
  const std::size_t dot = target.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == target.size()) throw VXROABadRequest();
  const std::string object = target.substr(0, dot);
  const std::string member = target.substr(dot + 1);
  if (object.starts_with(kServicePrefix))
    return serveService(from, object, member, kind, request.getArguments());
  return serveNode(object, member, kind, request.getArguments());
}

VXROAReply VXSimHub::serveService(VXSimConnection& from, const std::string& object,
                                  const std::string& member, int32_t kind,
                                  const VXROAValues& arguments) {
  if (!serviceMethods(object).contains(member)) throw VXROAEntityNotFound("Method", member);
  if (kind != VX_ROA_INVOKE) throw VXROABadRequest();
  const std::string call = "client " + std::to_string(from.getId()) + ": " + object + "." + member;
  if (object == "::Preview") return servePreview(call, member, arguments);
  if (object == "::Pick") return servePick(from, arguments);
  if (object == "::CameraManager") {
    camera_ = argumentAt(arguments, 0).toString();
    log(call + " " + camera_);
  } else {
    log(call);
  }
  return VXROAReply(VX_ROA_REPLY_VOID);
}

VXROAReply VXSimHub::servePreview(const std::string& call, const std::string& member,
                                  const VXROAValues& arguments) {
  if (member == "generateID") {
    return valueReply(std::make_unique<AFCAttributeInt32>(++lastPreviewId_));
  }
  const int32_t id = argumentAt(arguments, 0).getInt();
  const std::string fileName = argumentAt(arguments, 1).toString();
  if (id <= 0 || id > lastPreviewId_) throw VXROAEntityNotFound("Preview", std::to_string(id));
  log(call + " " + std::to_string(id) + " " + fileName);
  if (member == "getStillImageFile") return VXROAReply(VX_ROA_REPLY_VOID);
  // One image per preview record of the id: a sequence's begin and end make two.
  const std::string prefix = std::to_string(id) + " ";
  const auto images =
      std::count_if(scene_.getPreviews().begin(), scene_.getPreviews().end(),
                    [&](const std::string& entry) { return entry.starts_with(prefix); });
  return valueReply(std::make_unique<AFCAttributeInt32>(static_cast<int32_t>(images)));
}

VXROAReply VXSimHub::servePick(VXSimConnection& from, const VXROAValues& arguments) {
  // A tag picks the first node of that name, a position (or nothing) the first leaf.
  std::string path = scene_.firstLeafPath();
  std::string where;
  if (arguments.size() == 1) {
    const std::string tag = argumentAt(arguments, 0).toString();
    path = scene_.findNamed(tag);
    where = " tag=\"" + escapeXml(tag) + "\"";
  } else if (arguments.size() == 2) {
    where = " x=\"" + escapeXml(argumentAt(arguments, 0).toString()) + "\" y=\"" +
            escapeXml(argumentAt(arguments, 1).toString()) + "\"";
  }
  std::string xml = "<?xml version=\"1.0\"?><pick" + where + ">";
  if (!path.empty()) xml += "<node path=\"" + escapeXml(path) + "\"/>";
  xml += "</pick>";
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  out.writeString(xml);
  from.sendAfterReply(VXPacketFrame::kPickResult, out.getBuffer());
  return VXROAReply(VX_ROA_REPLY_VOID);
}

VXROAReply VXSimHub::serveNode(const std::string& object, const std::string& member, int32_t kind,
                               const VXROAValues& arguments) {
  VXSimNode& node = remoteNode(object);
  switch (kind) {
    case VX_ROA_GET_ATTR: {
      const auto found = node.attributes.find(member);
      if (found == node.attributes.end()) throw VXROAEntityNotFound("Attribute", member);
      return valueReply(std::unique_ptr<AFCAttribute>(found->second->clone()));
    }
    case VX_ROA_SET_ATTR:
      if (arguments.size() != 1 || !arguments.front()) throw VXROABadRequest();
      scene_.setAttribute(object, member, *arguments.front());
      return VXROAReply(VX_ROA_REPLY_VOID);
    case VX_ROA_INVOKE:
      throw VXROAEntityNotFound("Method", member);
    default:
      throw VXROABadRequest();
  }
}

VXSimNode& VXSimHub::remoteNode(const std::string& path) {
  VXSimNode* node = scene_.find(path);
  if (node == nullptr || !(path == "Root" || path.starts_with("Root/"))) {
    throw VXROAEntityNotFound("object", path);
  }
  return *node;
}

VXROAReply VXSimHub::serveProperties(const std::string& object) {
  if (object.starts_with(kServicePrefix)) {
    return propsReply(object.substr(kServicePrefix.size()), serviceMethods(object));
  }
  const VXSimNode& node = remoteNode(object);
  std::set<std::string> names;
  for (const auto& attribute : node.attributes) names.insert(attribute.first);
  return propsReply(node.type.empty() ? kUntypedNodeClass : node.type, names);
}

VXROAReply VXSimHub::serveMultiGet(const std::string& object, const VXROAValues& names) {
  if (names.empty()) throw VXROABadRequest();
  if (object.starts_with(kServicePrefix)) {
    serviceMethods(object);  // an unknown service is named as such
    throw VXROAEntityNotFound("Attribute", argumentAt(names, 0).toString());
  }
  const VXSimNode& node = remoteNode(object);
  VXROAValues values;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string name = argumentAt(names, i).toString();
    const auto found = node.attributes.find(name);
    if (found == node.attributes.end()) throw VXROAEntityNotFound("Attribute", name);
    values.push_back(std::unique_ptr<AFCAttribute>(found->second->clone()));
  }
  return VXROAReply(VX_ROA_REPLY_VALUE, std::move(values));
}

VXROAReply VXSimHub::serveWatch(VXSimConnection& from, const std::string& target) {
  const std::size_t dot = target.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == target.size()) throw VXROABadRequest();
  const std::string object = target.substr(0, dot);
  const std::string member = target.substr(dot + 1);
  if (object.starts_with(kServicePrefix)) {
    serviceMethods(object);  // an unknown service is named as such
    throw VXROAEntityNotFound("Attribute", member);
  }
  const VXSimNode& node = remoteNode(object);
  const auto found = node.attributes.find(member);
  if (found == node.attributes.end()) throw VXROAEntityNotFound("Attribute", member);
  watches_.add(from, target, found->second->toString());
  log("client " + std::to_string(from.getId()) + ": watching " + target);
  return VXROAReply(VX_ROA_REPLY_VOID);
}
