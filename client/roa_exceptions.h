#pragma once
// The exceptions of remote object access: a request that cannot be made or served, a path that
// names nothing in the local object table, and the failure the server reported for a request.
#include <string>
#include <utility>

#include "foundation/exception.h"

// "Bad ROA request": a request without target, or a target that does not fit its kind.
class VXROABadRequest : public AFCException {
 public:
  VXROABadRequest() : AFCException("Bad ROA request") {}
};

// The entity kind ("object", "Attribute" or "Method"), a blank, the name, then " not found!".
class VXROAEntityNotFound : public AFCException {
 public:
  VXROAEntityNotFound(std::string entityKind, std::string name)
      : entityKind_(std::move(entityKind)), name_(std::move(name)) {}
  void print(std::string& out) const override;
  const std::string& getEntityKind() const noexcept { return entityKind_; }
  const std::string& getName() const noexcept { return name_; }

 private:
  std::string entityKind_;
  std::string name_;
};

// "Remote exception: " and the server's text (the message holds the server's text alone).
class VXROARemoteException : public AFCException {
 public:
  using AFCException::AFCException;
  void print(std::string& out) const override;
};
