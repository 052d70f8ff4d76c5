#pragma once
// The text of the system exception a call throws, or "no exception": lets a test compare the
// exact message in one expectation. Naming the exception type also checks the type: any other
// exception escapes and fails the test.
#include <string>

#include "foundation/exception.h"

template <class Expected = AFCException, class Call>
std::string failureOf(Call call) {
  try {
    call();
  } catch (const Expected& e) {
    return e.what();
  }
  return "no exception";
}
