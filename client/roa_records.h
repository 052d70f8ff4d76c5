#pragma once
// The records of remote object access: the request a client sends (packet 9) and the reply the
// server returns (packet 10), both persistent objects known to the class registry by name.
//
// A request names its target by path; a member of an object is the object path, '.', and the
// member name, and the server splits the target at the last '.'. Both records carry attribute
// values, any of which may be null.
//
// Records are plain single-owner values, not thread safe. read() takes untrusted bytes: it
// throws the stream's AFCPersistentReadException2 (a count larger than the bytes that follow
// fails with "Incorrect data length") and then leaves the record unchanged.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/attribute.h"
#include "foundation/persistent_stream.h"

// Request kinds. An asynchronous kind is its synchronous code plus VX_ROA_ASYNC; it gets no reply.
enum VXROARequestKind : int32_t {
  VX_ROA_NULL = 0,
  VX_ROA_SET_ATTR = 1,
  VX_ROA_GET_ATTR = 2,
  VX_ROA_INVOKE = 3,
  VX_ROA_WATCH_ATTR = 4,
  VX_ROA_ENUM_PROPS = 5,
  VX_ROA_GET_MULTI_ATTR = 6,
  VX_ROA_FEATURES = 7,
  VX_ROA_ASYNC = 256,
  VX_ROA_NULL_ASYNC = VX_ROA_ASYNC + VX_ROA_NULL,
  VX_ROA_SET_ATTR_ASYNC = VX_ROA_ASYNC + VX_ROA_SET_ATTR,
};

enum VXROAReplyKind : int32_t {
  VX_ROA_REPLY_VOID = 0,
  VX_ROA_REPLY_EXCEPTION = 1,
  VX_ROA_REPLY_VALUE = 2,
  VX_ROA_REPLY_PROPS = 3,
};

// "NULL" ... "FEATURES", "NULL_ASYNC", "SET_ATTR_ASYNC"; "" for any other code.
std::string_view vxROARequestKindName(int32_t kind);
// "VOID", "EXCEPTION", "VALUE", "PROPS"; "" for any other code.
std::string_view vxROAReplyKindName(int32_t kind);
// True for the kinds that are sent without waiting for a reply.
inline bool vxROAIsAsync(int32_t kind) { return kind >= VX_ROA_ASYNC; }
// The target of an object's member: the object path, '.', the member name.
std::string vxROAMemberTarget(std::string_view objectPath, std::string_view member);

using VXROAValues = std::vector<std::unique_ptr<AFCAttribute>>;

class VXROARequest : public AFCPersistent {
  AFC_DECLARE_CLASS()
 public:
  VXROARequest() = default;
  VXROARequest(std::string target, int32_t kind, VXROAValues arguments = {});

  const std::string& getTarget() const { return target_; }
  int32_t getKind() const { return kind_; }
  const VXROAValues& getArguments() const { return arguments_; }

  // "ROA-REQ[", the kind's name, ',', the target, ',' and the text of each argument ("<NULL>"
  // for a null one), then ']'.
  std::string toTrace() const;

  // The base part, the target (string), the kind (int32), the argument count (uint32), then
  // each argument as an object reference.
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  std::string target_;
  int32_t kind_ = VX_ROA_NULL;
  VXROAValues arguments_;
};

class VXROAReply : public AFCPersistent {
  AFC_DECLARE_CLASS()
 public:
  VXROAReply() = default;
  VXROAReply(int32_t kind, VXROAValues values = {});

  int32_t getKind() const { return kind_; }
  const VXROAValues& getValues() const { return values_; }
  // Hands the values over; the reply keeps its kind and no values.
  VXROAValues takeValues() { return std::move(values_); }

  // "ROA-REPLY[", the kind's name, then ',' and the text of each value, "<NULL>" for a null one.
  std::string toTrace() const;

  // The base part, the kind (int32), the value count (uint32), then each value as an object
  // reference.
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  int32_t kind_ = VX_ROA_REPLY_VOID;
  VXROAValues values_;
};

// Touches the class records of both records (and the foundation's), so that the persistent
// reader finds them by name. Call it before any reader runs; calling it again does nothing new.
void registerClientRoaClasses();
