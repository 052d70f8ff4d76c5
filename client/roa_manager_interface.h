#pragma once
// The remote-object operations that every session offers: reading, writing and invoking
// attributes and methods of objects that live on the server, by path, and listing the
// properties of a remote class.
//
// Implementations throw the session's communication exceptions when not connected and the
// remote exception when the server answers with one.
#include <memory>
#include <string>
#include <vector>

class AFCAttribute;
class AFCClass;

class VXROAManagerInterface {
 public:
  virtual ~VXROAManagerInterface() = default;

  virtual void remoteSetAttr(const std::string& path, const AFCAttribute& value) = 0;
  // Sent without waiting for a reply.
  virtual void remoteSetAttrAsync(const std::string& path, const AFCAttribute& value) = 0;
  // The value, owned by the caller.
  virtual std::unique_ptr<AFCAttribute> remoteGetAttr(const std::string& path) = 0;
  // The result, owned by the caller; null when the method returns nothing.
  virtual std::unique_ptr<AFCAttribute> remoteInvoke(
      const std::string& path, const std::vector<const AFCAttribute*>& args) = 0;
  // Lists the remote class's properties and returns the local class they match; null (after
  // logging) when no local class does.
  virtual const AFCClass* remoteGetProperties(const std::string& className) = 0;
};
