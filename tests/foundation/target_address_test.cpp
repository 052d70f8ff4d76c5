#include "foundation/target_address.h"

#include <gtest/gtest.h>

#include "tests/support/failure_text.h"

using Components = std::vector<std::string>;

// Runs of separators give no empty components; separators alone give the empty address.
TEST(TargetAddress, ParsesComponentsAndJoinsThemBack) {
  const struct {
    const char* text;
    Components components;
    const char* joined;
  } cases[] = {{"a/b/c", {"a", "b", "c"}, "a/b/c"},
               {"//a///b//", {"a", "b"}, "a/b"},
               {"", {}, ""},
               {"///", {}, ""}};
  for (const auto& c : cases) {
    const AFCTargetAddress address = AFCTargetAddress::parse(c.text);
    EXPECT_EQ(address.components(), c.components) << c.text;
    EXPECT_EQ(address.toString(), c.joined) << c.text;
    EXPECT_EQ(address.empty(), c.components.empty()) << c.text;
  }
  EXPECT_EQ(AFCTargetAddress::parse("/a//b/"), AFCTargetAddress::parse("a/b"));
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
  EXPECT_EQ(failureOf<AFCEmptyTargetAddressException>([&] { empty.last(); }),
            "Empty target address");
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

TEST(TargetException, TextsNameWhatWasMissingOrDuplicatedAndNotFoundSharesABase) {
  EXPECT_STREQ(AFCTargetIDNotFoundException(42).what(), "TargetID 42 not found!");
  EXPECT_STREQ(AFCTargetNameNotFoundException("txt").what(), "Target 'txt' not found!");
  EXPECT_STREQ(AFCTargetNameNotFoundException("txt", "Node").what(), "Node 'txt' not found!");
  EXPECT_STREQ(AFCDuplicateTargetNameException("txt").what(), "Duplicate name 'txt'.");
  EXPECT_STREQ(AFCDuplicateTargetNameException("txt", "already a child of Root").what(),
               "Duplicate name 'txt': already a child of Root.");
  EXPECT_THROW(throw AFCTargetIDNotFoundException(1), AFCTargetNotFoundException);
  EXPECT_THROW(throw AFCTargetNameNotFoundException("x"), AFCTargetNotFoundException);
}
