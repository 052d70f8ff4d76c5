#include "client/client_exceptions.h"

void VXCommunicationErrorException::print(std::string& out) const {
  out += "Communication error, ";
  out += message_;
}
