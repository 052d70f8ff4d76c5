#pragma once
// The text of the system exception a call throws, or "no exception": lets a test compare the
// exact message in one expectation. An exception of another type than E escapes and fails the
// test.
#include <string>

#include "foundation/exception.h"

template <class E = AFCException, class Call>
std::string failureOf(Call call) {
  try {
    call();
  } catch (const E& e) {
    return e.what();
  }
  return "no exception";
}
