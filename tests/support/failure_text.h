#pragma once
// The text of the system exception a call throws, or "no exception": lets a test compare the
// exact message in one expectation.
#include <string>

#include "foundation/exception.h"

template <class Call>
std::string failureOf(Call call) {
  try {
    call();
  } catch (const AFCException& e) {
    return e.what();
  }
  return "no exception";
}
