#pragma once
// Target addresses: the "/"-separated paths that name nodes, effects and other objects on the
// server, and the target exceptions of the foundation.
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/exception.h"

// "Empty target address": the first or last component of an empty address was asked for.
class AFCEmptyTargetAddressException : public AFCException {
 public:
  AFCEmptyTargetAddressException() : AFCException("Empty target address") {}
};

// Base of the two not-found exceptions.
AFC_DECLARE_EXCEPTION(AFCTargetNotFoundException, AFCException);

// "TargetID <id> not found!"
class AFCTargetIDNotFoundException : public AFCTargetNotFoundException {
 public:
  explicit AFCTargetIDNotFoundException(uint32_t id);
};

// "<kind> '<name>' not found!"
class AFCTargetNameNotFoundException : public AFCTargetNotFoundException {
 public:
  explicit AFCTargetNameNotFoundException(std::string_view name, std::string_view kind = "Target");
};

// "Duplicate name '<name>'." or "Duplicate name '<name>': <detail>."
class AFCDuplicateTargetNameException : public AFCException {
 public:
  explicit AFCDuplicateTargetNameException(std::string_view name, std::string_view detail = {});
};

// An ordered list of name components. The empty list is a valid address that names nothing.
// A plain value: copies are independent, const use is thread safe.
class AFCTargetAddress {
 public:
  AFCTargetAddress() = default;
  explicit AFCTargetAddress(std::vector<std::string> components)
      : components_(std::move(components)) {}

  // Cuts the text at "/"; runs of separators give no empty components, so "/a//b/" and "a/b"
  // are the same address, and "" or "///" is the empty one.
  static AFCTargetAddress parse(std::string_view text);
  // The components of both texts, the prefix's first, joined: join("Root/t1/", "/txt") is
  // "Root/t1/txt". The text of parse(path).withPrefix(parse(prefix)) in one pass.
  static std::string join(std::string_view prefix, std::string_view path);

  // The components with one "/" between neighbours, no leading or trailing separator.
  std::string toString() const;
  // The components of prefix, then these.
  AFCTargetAddress withPrefix(const AFCTargetAddress& prefix) const;
  void append(std::string component) { components_.push_back(std::move(component)); }

  // Both throw AFCEmptyTargetAddressException on the empty address.
  const std::string& first() const;
  const std::string& last() const;

  std::size_t size() const { return components_.size(); }
  bool empty() const { return components_.empty(); }
  const std::vector<std::string>& components() const { return components_; }
  bool operator==(const AFCTargetAddress&) const = default;

 private:
  std::vector<std::string> components_;
};
