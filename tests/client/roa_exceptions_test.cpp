#include "client/roa_exceptions.h"

#include <gtest/gtest.h>

TEST(RoaExceptions, RenderTheirFixedTexts) {
  EXPECT_STREQ(VXROABadRequest().what(), "Bad ROA request");
  EXPECT_STREQ(VXROAEntityNotFound("object", "Root/x").what(), "object Root/x not found!");
  EXPECT_STREQ(VXROAEntityNotFound("Method", "play").what(), "Method play not found!");
}

TEST(RoaExceptions, RemoteExceptionPrefixesTheServerTextAndKeepsItAlone) {
  const VXROARemoteException failure("No such node");
  EXPECT_STREQ(failure.what(), "Remote exception: No such node");
  EXPECT_EQ(failure.getMessage(), "No such node");
}
