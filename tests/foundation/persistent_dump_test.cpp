#include "foundation/persistent_dump.h"

#include <gtest/gtest.h>

#include "foundation/persistent_stream.h"

TEST(PersistentDump, NamesEveryValueOnItsOwnLine) {
  AFCPersistentOutputStreamBuffer out;
  out << int32_t{-2} << std::string("Title") << 1.5f << true;
  out.writeObject(nullptr);
  const AFCBuffer& b = out.getBuffer();
  EXPECT_EQ(afcDumpPersistent(b.data(), b.size()),
            "int32 -2\nstring \"Title\"\nfloat 1.5\nuint8 1\nobject null\n");
}

TEST(PersistentDump, ShowsNewObjectsByClassName) {
  const uint8_t bytes[] = {0xDA, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0, 3, 'A', 'b', 'c', 0xDA, 0x0F,
                           0xDA, 0x0C, 0,    0,    0,    2};
  EXPECT_EQ(afcDumpPersistent(bytes, sizeof bytes), "object new Abc\nbase\nobject ref 2\n");
}

TEST(PersistentDump, StopsAtTheFirstMalformedValue) {
  const uint8_t bytes[] = {0xDA, 0x05, 0, 0, 0, 7, 0xDA, 0x7E, 0x00, 0x01};
  EXPECT_EQ(afcDumpPersistent(bytes, sizeof bytes),
            "int32 7\nheader 0x7e\nerror at offset 10: Header expected\n");
}

TEST(HexDump, PrintsOffsetsBytesAndPrintableCharacters) {
  const uint8_t bytes[] = {'A', 0x00, 'z'};
  EXPECT_EQ(afcHexDump(bytes, sizeof bytes),
            "000000  41 00 7a" + std::string(39, ' ') + "  A.z\n");
}
