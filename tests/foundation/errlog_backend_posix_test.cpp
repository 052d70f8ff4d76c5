#include <gtest/gtest.h>
#include <stdlib.h>

#include <iostream>
#include <sstream>

#include "foundation/errlog_backend.h"

TEST(ErrLogBackendCerr, SwitchesFromTheEnvironmentHideAreaAndTime) {
  ASSERT_EQ(setenv("AFC_ERRLOG_STDERR", "at", 1), 0);
  AFCErrLogBackendCerr backend;
  unsetenv("AFC_ERRLOG_STDERR");

  std::ostringstream captured;
  std::streambuf* saved = std::cerr.rdbuf(captured.rdbuf());
  backend.write(
      AFCErrLogEvent(AFC_ERRLOG_ERROR, "libAFC", AFCTimestamp::now(), "a.cpp", 3, "boom"));
  std::cerr.rdbuf(saved);
  EXPECT_EQ(captured.str(), "ERROR:  \"a.cpp\", line 3\n boom\n");
}
