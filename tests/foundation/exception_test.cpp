#include "foundation/exception.h"

#include <gtest/gtest.h>

TEST(Exception, RendersTextThroughWhat) {
  EXPECT_STREQ(AFCException("boom").what(), "boom");
  EXPECT_STREQ(AFCRangeException(5, 0, 3).what(), "Index out of range (index=5, min=0, max=3)");
  EXPECT_STREQ(AFCNullPointerException("args[0]").what(), "Null pointer to args[0]");
  EXPECT_STREQ(AFCNullPointerException().what(), "Null pointer");
  EXPECT_STREQ(AFCInvalidArgumentCountException().what(), "Invalid argument count");
  EXPECT_STREQ(AFCCloneNotImplementedException().what(), "Clone not implemented");
}

TEST(Exception, EachWhatTextBelongsToItsException) {
  const AFCException first("first");
  const AFCNullPointerException second("x");
  const char* a = first.what();
  const char* b = second.what();
  EXPECT_STREQ(a, "first");
  EXPECT_STREQ(b, "Null pointer to x");
}

TEST(Exception, IllegalStateSharesTheIllegalArgumentWords) {
  EXPECT_STREQ(AFCIllegalArgumentException().what(), "Illegal Argument Exception");
  EXPECT_STREQ(AFCIllegalArgumentException("No node name").what(),
               "Illegal Argument Exception, No node name");
  EXPECT_STREQ(AFCIllegalStateException("x").what(), "Illegal Argument Exception, x");
}

TEST(Exception, ArgumentTypeNamesExpectedAndReceived) {
  EXPECT_STREQ(AFCInvalidArgumentTypeException().what(), "Invalid argument type");
  EXPECT_STREQ(AFCInvalidArgumentTypeException("AFCAttributeInt32", "AFCAttributeString").what(),
               "Invalid argument type, expected AFCAttributeInt32, received AFCAttributeString");
}

TEST(Exception, RunTimeNamesStructuredExceptionCodes) {
  EXPECT_STREQ(AFCRunTimeException(0xC0000094u).what(), "Runtime exception INT_DIVIDE_BY_ZERO");
  EXPECT_STREQ(AFCRunTimeException(0xC000008Cu).what(), "Runtime exception ARRAY_BOUNDS_EXCEEDE");
  EXPECT_STREQ(AFCRunTimeException(0xC06D007Eu).what(), "Runtime exception MODULE_NOT_FOUND");
  EXPECT_STREQ(AFCRunTimeException(0xE0001234u).what(), "Runtime exception CODE E0001234");
  EXPECT_STREQ(AFCRunTimeException(0xC0000005u, 0x401000, 0x10).what(),
               "Runtime exception ACCESS_VIOLATION CodeAddress=401000 DataAddress=10");
}
