#pragma once
// The operations of remote object access as the session offers them: read and write attributes
// of objects that live in the server, call their methods and list a remote class's properties,
// each by path (a member is the object path, '.', the member name).
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "client/roa_records.h"
#include "foundation/class.h"

// A remote class matched to the local class of the same name.
struct VXROAClassInfo {
  const AFCClass* localClass = nullptr;  // a registered record, never null
  VXROAValues properties;                // one entry per property, as the server listed them
};

// Abstract; the session implements it through VXROAManager. Every operation throws
// VXROARemoteException for a failure the server reports and whatever the session throws for
// the exchange itself (not connected, I/O errors, a malformed reply).
class VXROAManagerInterface {
 public:
  virtual ~VXROAManagerInterface() = default;

  // Sets the attribute and waits for the server's answer. The value may be null.
  virtual void remoteSetAttr(std::string_view path, const AFCAttribute* value) = 0;
  // Sets the attribute without waiting for any answer.
  virtual void remoteSetAttrAsync(std::string_view path, const AFCAttribute* value) = 0;
  // The attribute's value; nullptr when the server sends none (or a null one).
  virtual std::unique_ptr<AFCAttribute> remoteGetAttr(std::string_view path) = 0;
  // The method's result; nullptr when it returns nothing.
  virtual std::unique_ptr<AFCAttribute> remoteInvoke(
      std::string_view path, std::span<const AFCAttribute* const> arguments) = 0;
  // The properties of the remote object's class, matched to the local class of the name the
  // server gives; nothing when the server lists no properties or the class is not known here.
  virtual std::optional<VXROAClassInfo> remoteEnumProps(std::string_view path) = 0;

 protected:
  VXROAManagerInterface() = default;
  VXROAManagerInterface(const VXROAManagerInterface&) = default;
  VXROAManagerInterface& operator=(const VXROAManagerInterface&) = default;
};
