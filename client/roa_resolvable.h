#pragma once
// Things that can be looked up by path in the process's local object table, and the local
// lookups that act on them: get or set a declared attribute, invoke a method, all through the
// reflection of the object's class. A member is named as for a remote request: the object path,
// '.', the member name, split at the last '.'.
//
// A resolvable is entered in the table while it has a path (setRoaPath) and leaves it when it
// dies; the table does not own it. The table is guarded by its own lock, but a resolvable found
// there is used without one: only the thread that owns an object should reach it through the
// table. Lookups throw VXROAEntityNotFound ("object", "Attribute", "Method") and
// VXROABadRequest for a member target without '.'; the member's own exceptions pass unchanged.
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "client/roa_records.h"
#include "foundation/class.h"

class VXROAResolvable {
 public:
  VXROAResolvable() = default;
  VXROAResolvable(const VXROAResolvable&) = delete;
  VXROAResolvable& operator=(const VXROAResolvable&) = delete;
  virtual ~VXROAResolvable();

  // Enters this object in the table under path, replacing whatever held the path before and
  // leaving the object's old path; an empty path only leaves the table.
  void setRoaPath(std::string path);
  const std::string& getRoaPath() const { return path_; }

  // The object whose class describes the members: by default this resolvable's own AFCObject
  // part; nullptr when it has none (it then has no members).
  virtual AFCObject* getRoaObject();

  // The resolvable entered under path; throws VXROAEntityNotFound("object", path).
  static VXROAResolvable& resolve(std::string_view path);
  // A new attribute holding the member attribute's value.
  static std::unique_ptr<AFCAttribute> localGetAttr(std::string_view target);
  static void localSetAttr(std::string_view target, const AFCAttribute& value);
  // As localSetAttr, but a failure is written to the error log ("ROA async set: " and the
  // exception's text) instead of being thrown.
  static void localSetAttrAsync(std::string_view target, const AFCAttribute& value) noexcept;
  // The method's result, nullptr when it returns nothing.
  static std::unique_ptr<AFCAttribute> localInvoke(std::string_view target,
                                                   std::span<AFCAttribute* const> arguments);
  // Serves a request against the table: VOID, VALUE or PROPS, or EXCEPTION with the failure's
  // text; nullptr for an asynchronous kind, which is served without a reply. PROPS holds the
  // object's class name, then the name of every declared attribute.
  static std::unique_ptr<VXROAReply> serve(const VXROARequest& request);

 private:
  std::string path_;
};
