#include "client/roa_exceptions.h"

void VXROAEntityNotFound::print(std::string& out) const {
  out += entityKind_;
  out += ' ';
  out += name_;
  out += " not found!";
}

void VXROARemoteException::print(std::string& out) const {
  out += "Remote exception: ";
  out += message_;
}
