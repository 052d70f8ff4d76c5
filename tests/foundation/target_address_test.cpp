#include "foundation/target_address.h"

#include <gtest/gtest.h>

using Components = std::vector<std::string>;

TEST(TargetAddress, ParsesComponentsAndJoinsThemBack) {
  const AFCTargetAddress address = AFCTargetAddress::parse("a/b/c");
  EXPECT_EQ(address.components(), (Components{"a", "b", "c"}));
  EXPECT_EQ(address.toString(), "a/b/c");
}

TEST(TargetAddress, RunsOfSeparatorsGiveNoEmptyComponents) {
  const AFCTargetAddress address = AFCTargetAddress::parse("//a///b//");
  EXPECT_EQ(address.components(), (Components{"a", "b"}));
  EXPECT_EQ(address.toString(), "a/b");
  EXPECT_EQ(AFCTargetAddress::parse("/a//b/"), AFCTargetAddress::parse("a/b"));
}

TEST(TargetAddress, EmptyTextAndSeparatorsOnlyGiveTheEmptyAddress) {
  EXPECT_TRUE(AFCTargetAddress::parse("").empty());
  EXPECT_TRUE(AFCTargetAddress::parse("///").empty());
  EXPECT_EQ(AFCTargetAddress().toString(), "");
}

TEST(TargetAddress, KeepsBlanksAndDotsInsideComponents) {
  const AFCTargetAddress address = AFCTargetAddress::parse(" lower third/txt.Text");
  EXPECT_EQ(address.first(), " lower third");
  EXPECT_EQ(address.last(), "txt.Text");
  EXPECT_EQ(address.size(), 2u);
}

TEST(TargetAddress, FirstAndLastOfTheEmptyAddressThrow) {
  const AFCTargetAddress empty;
  EXPECT_THROW(empty.first(), AFCEmptyTargetAddressException);
  try {
    empty.last();
    FAIL() << "last() of the empty address returned";
  } catch (const AFCEmptyTargetAddressException& e) {
    EXPECT_STREQ(e.what(), "Empty target address");
  }
}

TEST(TargetAddress, PrefixComponentsComeFirst) {
  const AFCTargetAddress path = AFCTargetAddress::parse("/txt/");
  const AFCTargetAddress joined = path.withPrefix(AFCTargetAddress::parse("Root/_Br5_Title_1"));
  EXPECT_EQ(joined.toString(), "Root/_Br5_Title_1/txt");
  EXPECT_EQ(path.withPrefix(AFCTargetAddress()), path);
  EXPECT_EQ(AFCTargetAddress().withPrefix(path), path);
}

TEST(TargetAddress, JoinOfTextsMatchesJoinOfParsedAddresses) {
  for (const char* prefix : {"", "/", "Root", "/Root//t1/"}) {
    for (const char* path : {"", "//", "txt", "a//b/"}) {
      const AFCTargetAddress expected =
          AFCTargetAddress::parse(path).withPrefix(AFCTargetAddress::parse(prefix));
      EXPECT_EQ(AFCTargetAddress::join(prefix, path), expected.toString())
          << "prefix '" << prefix << "', path '" << path << "'";
    }
  }
}

TEST(TargetAddress, AppendedEmptyComponentStillGetsItsSeparator) {
  AFCTargetAddress address;
  address.append("");
  address.append("b");
  EXPECT_EQ(address.toString(), "/b");
}

TEST(TargetException, TextsNameWhatWasMissingOrDuplicated) {
  EXPECT_STREQ(AFCTargetIDNotFoundException(42).what(), "TargetID 42 not found!");
  EXPECT_STREQ(AFCTargetNameNotFoundException("txt").what(), "Target 'txt' not found!");
  EXPECT_STREQ(AFCTargetNameNotFoundException("txt", "Node").what(), "Node 'txt' not found!");
  EXPECT_STREQ(AFCDuplicateTargetNameException("txt").what(), "Duplicate name 'txt'.");
  EXPECT_STREQ(AFCDuplicateTargetNameException("txt", "already a child of Root").what(),
               "Duplicate name 'txt': already a child of Root.");
}

TEST(TargetException, NotFoundExceptionsShareTheirBase) {
  EXPECT_THROW(throw AFCTargetIDNotFoundException(1), AFCTargetNotFoundException);
  EXPECT_THROW(throw AFCTargetNameNotFoundException("x"), AFCTargetNotFoundException);
}
