#pragma once
// The session's exceptions: framing and I/O failures, and connection and login failures.
#include "foundation/exception.h"

// "Communication error, " followed by the text.
class VXCommunicationErrorException : public AFCException {
 public:
  using AFCException::AFCException;
  void print(std::string& out) const override;
};

// Connection and login failures; the text is the message.
AFC_DECLARE_EXCEPTION(VXClientException, AFCException);
