#include "foundation/persistent_stream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "foundation/charset.h"
#include "tests/foundation/stream_bytes.h"
#include "tests/support/failure_text.h"

namespace {

Bytes bytesOf(AFCPersistentOutputStreamBuffer& out) {
  const AFCBuffer& b = out.getBuffer();
  return Bytes(b.data(), b.data() + b.size());
}

template <class Write>
Bytes written(Write write) {
  AFCPersistentOutputStreamBuffer out;
  write(out);
  return bytesOf(out);
}

AFCPersistentInputStreamBuffer reader(const Bytes& bytes) {
  return AFCPersistentInputStreamBuffer(bytes.data(), bytes.size());
}

template <class Read>
std::string readError(const Bytes& bytes, Read read) {
  auto in = reader(bytes);
  return failureOf<AFCPersistentReadException2>([&] { read(in); });
}

// An owned node: a value and an optional child it owns.
class TestNode : public AFCPersistent {
  AFC_DECLARE_CLASS()
 public:
  int32_t value = 0;
  std::unique_ptr<TestNode> child;
  void write(AFCPersistentOutputStream& out) const override {
    AFCPersistent::write(out);
    out.writeInt32(value);
    out.writeObject(child.get());
  }
  void read(AFCPersistentInputStream& in) override {
    AFCPersistent::read(in);
    value = in.readInt32();
    child = in.readOwnedObject<TestNode>();
  }
};
AFC_IMPLEMENT_CLASS(TestNode, AFCPersistent)

// A shared leaf that several holders may reference.
class TestShared : public AFCPersistent, public AFCShareBase {
  AFC_DECLARE_CLASS()
 public:
  std::string name;
  void write(AFCPersistentOutputStream& out) const override {
    AFCPersistent::write(out);
    out.writeString(name);
  }
  void read(AFCPersistentInputStream& in) override {
    AFCPersistent::read(in);
    name = in.readString();
  }
};
AFC_IMPLEMENT_CLASS(TestShared, AFCPersistent)

// Holds two references to shared leaves.
class TestPair : public AFCPersistent {
  AFC_DECLARE_CLASS()
 public:
  AFCRef<TestShared> first, second;
  void write(AFCPersistentOutputStream& out) const override {
    AFCPersistent::write(out);
    out.writeObject(first.get());
    out.writeObject(second.get());
  }
  void read(AFCPersistentInputStream& in) override {
    AFCPersistent::read(in);
    first = in.readSharedObject<TestShared>();
    second = in.readSharedObject<TestShared>();
  }
};
AFC_IMPLEMENT_CLASS(TestPair, AFCPersistent)

// Classes whose names differ in their first letter only: the reader must compare whole names.
template <char First>
class TestTwin : public AFCPersistent {
  AFC_DECLARE_CLASS()
};

template <char First>
const AFCClass& TestTwin<First>::staticClass() {
  static const AFCClass& record =
      (new AFCClassEx(First + std::string("TestTwinClass"), &AFCPersistent::staticClass()))
          ->defaultConstructor<TestTwin>()
          .registerClass();
  return record;
}

class PersistentStream : public ::testing::Test {
 protected:
  void SetUp() override {
    registerFoundationClasses();
    TestNode::staticClass();
    TestShared::staticClass();
    TestPair::staticClass();
    TestTwin<'A'>::staticClass();
    TestTwin<'B'>::staticClass();
  }
};

using ::testing::ElementsAre;

TEST_F(PersistentStream, WritesScalarsAndBuffersBigEndianBehindTheirHeaders) {
  EXPECT_THAT(written([](auto& o) { o.writeInt32(-2); }),
              ElementsAre(0xDA, 0x05, 0xFF, 0xFF, 0xFF, 0xFE));
  EXPECT_THAT(written([](auto& o) { o.writeDouble(1.0); }),
              ElementsAre(0xDA, 0x0A, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0));
  EXPECT_THAT(written([](auto& o) { o.writeFloat(1.0f); }),
              ElementsAre(0xDA, 0x09, 0x3F, 0x80, 0, 0));
  EXPECT_THAT(written([](auto& o) { o.writeBool(true); }), ElementsAre(0xDA, 0x02, 1));
  EXPECT_THAT(written([](auto& o) { o.writeInt8(-1); }), ElementsAre(0xDA, 0x01, 0xFF));
  EXPECT_THAT(written([](auto& o) { o.writeUInt16(0x1234); }), ElementsAre(0xDA, 0x04, 0x12, 0x34));
  EXPECT_THAT(written([](auto& o) { o.writeInt64(int64_t{0x0102030405060708}); }),
              ElementsAre(0xDA, 0x07, 1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_THAT(written([](auto& o) { o.writeUInt64(~uint64_t{0}); }),
              ElementsAre(0xDA, 0x08, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF));
  EXPECT_THAT(written([](auto& o) { o.writeBuffer(AFCBuffer()); }),
              ElementsAre(0xDA, 0x06, 0, 0, 0, 0));
  EXPECT_THAT(written([](auto& o) { o.writeBuffer(AFCBuffer("ab", 2)); }),
              ElementsAre(0xDA, 0x06, 0, 0, 0, 2, 0xDA, 0x0D, 0, 0, 0, 2, 'a', 'b'));
}

TEST_F(PersistentStream, WritesStringsAsUtf16UnitsWithACount) {
  EXPECT_THAT(written([](auto& o) { o.writeString(""); }), ElementsAre(0xDA, 0x0B, 0, 0, 0, 0));
  EXPECT_THAT(written([](auto& o) { o.writeString("Hi"); }),
              ElementsAre(0xDA, 0x0B, 0, 0, 0, 2, 0, 'H', 0, 'i'));
  EXPECT_THAT(written([](auto& o) { o.writeWString(u"\u20AC"); }),
              ElementsAre(0xDA, 0x0E, 0, 0, 0, 1, 0x20, 0xAC));
  // The default character set of the platform decodes 8-bit text.
  const std::u16string units = AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, "\xC3\xA9");
  Bytes expected = {0xDA, 0x0B, 0, 0, 0, static_cast<uint8_t>(units.size())};
  for (char16_t unit : units) {
    expected.push_back(static_cast<uint8_t>(unit >> 8));
    expected.push_back(static_cast<uint8_t>(unit));
  }
  EXPECT_EQ(written([](auto& o) { o.writeString("\xC3\xA9"); }), expected);
}

TEST_F(PersistentStream, ConvertsTextWithANonAsciiCharacterAnywhere) {
  const std::string ascii(40, 'a');
  for (const std::string& text : {"\xC3\xA9" + ascii, ascii + "\xC3\xA9"}) {
    auto units = reader(written([&](auto& o) {
      o.writeString(text);
      o.writeInt32(7);
    }));
    EXPECT_EQ(units.readWString(), AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, text));
    EXPECT_EQ(units.readInt32(), 7);
    auto in = reader(written([&](auto& o) { o.writeString(text); }));
    EXPECT_EQ(in.readString(), text);
  }
}

TEST_F(PersistentStream, RoundTripsEveryPrimitive) {
  AFCPersistentOutputStreamBuffer out;
  AFCBuffer blob("\x01\x02\x03", 3);
  out << int8_t{-5} << uint8_t{250} << true << int16_t{-300} << uint16_t{65000} << int32_t{-7}
      << uint32_t{4000000000u} << int64_t{-9000000000} << uint64_t{18000000000000000000u} << 1.5f
      << -2.25 << std::string("text \xC3\xA9t\xC3\xA9") << std::u16string_view(u"wide") << blob;
  out.writeBinary("xyz", 3);
  auto in = AFCPersistentInputStreamBuffer(AFCRef<AFCBuffer>(&out.getBuffer()));
  EXPECT_EQ(in.readInt8(), -5);
  EXPECT_EQ(in.readUInt8(), 250);
  EXPECT_TRUE(in.readBool());
  EXPECT_EQ(in.readInt16(), -300);
  EXPECT_EQ(in.readUInt16(), 65000);
  EXPECT_EQ(in.readInt32(), -7);
  EXPECT_EQ(in.readUInt32(), 4000000000u);
  EXPECT_EQ(in.readInt64(), -9000000000);
  EXPECT_EQ(in.readUInt64(), 18000000000000000000u);
  EXPECT_EQ(in.readFloat(), 1.5f);
  EXPECT_EQ(in.readDouble(), -2.25);
  EXPECT_EQ(in.readString(), "text \xC3\xA9t\xC3\xA9");
  EXPECT_EQ(in.readWString(), u"wide");
  AFCBuffer back;
  in.readBuffer(back);
  EXPECT_EQ(back, blob);
  char three[3];
  in.readBinary(three, 3);
  EXPECT_EQ(std::string(three, 3), "xyz");
  EXPECT_TRUE(in.atEnd());
}

TEST_F(PersistentStream, ReadsEitherStringCodeAsEitherKindAndANonZeroBoolByteAsTrue) {
  auto in = reader(written([](auto& o) {
    o.writeString("abc");
    o.writeWString(u"def");
  }));
  EXPECT_EQ(in.readWString(), u"abc");
  EXPECT_EQ(in.readString(), "def");
  EXPECT_TRUE(reader({0xDA, 0x02, 0x07}).readBool());
}

// Every length read off the wire is checked against the bytes that remain before anything is
// allocated for it.
TEST_F(PersistentStream, RejectsBadInputWithItsText) {
  using Read = void (*)(AFCPersistentInputStream&);
  const Read readInt32 = [](auto& in) { in.readInt32(); };
  const Read readString = [](auto& in) { in.readString(); };
  const Read readBinary = [](auto& in) {
    AFCBuffer b;
    in.readBinary(b);
  };
  const Read readObject = [](auto& in) { delete in.readObject(); };
  const struct {
    Bytes bytes;
    Read read;
    const char* text;
  } cases[] = {
      {{0xDB, 0x05, 0, 0, 0, 1}, readInt32, "Header expected"},
      {{0xDA, 0x06, 0, 0, 0, 1}, readInt32, "Bad header type (got=0x6, exp=0x5)"},
      {{0xDA, 0x05, 0, 0, 0, 1}, readString, "Bad header type (got=0x5, exp=string)"},
      {{0xDA, 0x0D, 0xFF, 0xFF, 0xFF, 0xFE}, readBinary, "Bad binary length"},
      {{0xDA, 0x0D, 0, 0, 0, 2, 1, 2},
       [](auto& in) {
         char four[4];
         in.readBinary(four, 4);
       },
       "Length of binary data doesn't match"},
      // A string count of two billion in a short payload.
      {{0xDA, 0x0B, 0x77, 0x35, 0x94, 0x00, 0, 'a'}, readString, "Incorrect data length"},
      {{0xDA, 0x0D, 0x7F, 0xFF, 0xFF, 0xFF, 0}, readBinary, "Incorrect data length"},
      {{0xDA, 0x06, 0xFF, 0xFF, 0xFF, 0xFF, 0xDA, 0x0D},
       [](auto& in) {
         AFCBuffer b;
         in.readBuffer(b);
       },
       "Incorrect data length"},
      {{0xDA, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 'A'}, readObject, "Incorrect data length"},
      {{0xDA, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0}, readObject, "Bad object type name"},
      {{0xDA, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0, 3, 'N', 'o', 'p'},
       readObject,
       "Can't find class Nop"},
      {newObjectHeader("AFCObject"), readObject, "Bad type of created instance"},
      {{0xDA, 0x0C, 0, 0, 0, 1}, readObject, "Bad object index"},
  };
  for (const auto& c : cases) EXPECT_EQ(readError(c.bytes, c.read), c.text) << c.text;
}

// The reader remembers the classes it met; a name of the same length and ending must still be
// told apart by every byte.
TEST_F(PersistentStream, TellsApartClassNamesOfOneLengthAndEnding) {
  const Bytes known = newObjectHeader("AFCAttributeInt32") + kBasePart + boolBytes(true) +
                      uint32Bytes(0x05, 7);
  for (std::string name : {"XFCAttributeInt32", "AFCAttrXbuteInt32", "AFCAttributXInt32"}) {
    auto in = reader(known + newObjectHeader(name) + kBasePart);
    delete in.readObject();
    EXPECT_EQ(failureOf([&] { delete in.readObject(); }), "Can't find class " + name);
  }
}

TEST_F(PersistentStream, ShortReadKeepsThePosition) {
  auto in = reader({0xDA, 0x05, 0, 0});
  EXPECT_THROW(in.readInt32(), AFCPersistentReadException2);
  EXPECT_EQ(in.getPosition(), 2);  // the header was read, the short payload was not
  char four[4];
  EXPECT_THROW(in.read(four, 4), AFCPersistentReadException2);
  EXPECT_EQ(in.getPosition(), 2);
}

TEST_F(PersistentStream, NegativeRawReadMovesBackWithoutALowerBound) {
  auto in = reader({0xDA, 0x05, 0, 0, 0, 9});
  EXPECT_EQ(in.readInt32(), 9);
  in.read(nullptr, -6);
  EXPECT_EQ(in.readInt32(), 9);
  in.read(nullptr, -10);
  EXPECT_EQ(in.getPosition(), -4);
  char one;
  EXPECT_THROW(in.read(&one, 1), AFCPersistentReadException2);  // nothing to read below 0
  in.read(nullptr, 0);
  EXPECT_EQ(in.getPosition(), -4);
}

TEST_F(PersistentStream, FirstNullUsesUpAWriterNumberThatReadersNeverGive) {
  TestNode x;
  x.value = 3;
  Bytes bytes = written([&](auto& o) {
    o.writeObject(nullptr);
    o.writeObject(&x);
    o.writeObject(&x);
    o.writeObject(nullptr);
  });
  const Bytes expected = {0xDA, 0x0C, 0,    0,    0,    0,               // null takes number 1
                          0xDA, 0x0C, 0xFF, 0xFF, 0xFF, 0xFF, 0,   8,    // new object
                          'T',  'e',  's',  't',  'N',  'o',  'd', 'e',  //
                          0xDA, 0x0F, 0xDA, 0x05, 0,    0,    0,   3,    // base part, value
                          0xDA, 0x0C, 0,    0,    0,    0,               // no child
                          0xDA, 0x0C, 0,    0,    0,    2,               // x is number 2
                          0xDA, 0x0C, 0,    0,    0,    0};
  EXPECT_EQ(bytes, expected);
  auto in = reader(bytes);
  EXPECT_EQ(in.readObject(), nullptr);
  EXPECT_EQ(in.objectCount(), 0u);
  std::unique_ptr<AFCPersistent> first(in.readObject());
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(static_cast<TestNode*>(first.get())->value, 3);
  // Back-reference 2 must not resolve against a table of one object.
  EXPECT_EQ(failureOf<AFCPersistentReadException2>([&] { in.readObject(); }), "Bad object index");
}

TEST_F(PersistentStream, NumbersInnerObjectsBeforeTheirOwner) {
  TestNode outer;
  outer.child = std::make_unique<TestNode>();
  TestNode* inner = outer.child.get();
  Bytes bytes = written([&](auto& o) {
    o.writeObject(&outer);
    o.writeObject(inner);
    o.writeObject(&outer);
  });
  // inner's null child takes number 1, inner finished next (2), outer last (3).
  const std::size_t tail = bytes.size();
  EXPECT_THAT(Bytes(bytes.begin() + static_cast<long>(tail) - 12, bytes.end()),
              ElementsAre(0xDA, 0x0C, 0, 0, 0, 2, 0xDA, 0x0C, 0, 0, 0, 3));
}

TEST_F(PersistentStream, RoundTripsAnOwnedGraph) {
  TestNode root;
  root.value = 1;
  root.child = std::make_unique<TestNode>();
  root.child->value = 2;
  auto in = reader(written([&](auto& o) { o.writeObject(&root); }));
  auto back = in.readOwnedObject<TestNode>();
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->value, 1);
  ASSERT_NE(back->child, nullptr);
  EXPECT_EQ(back->child->value, 2);
  EXPECT_EQ(back->child->child, nullptr);
  EXPECT_EQ(in.objectCount(), 2u);
}

TEST_F(PersistentStream, SharesBackReferencedSharedObjects) {
  TestPair pair;
  pair.first = new TestShared();
  pair.first->name = "shared";
  pair.second = pair.first;
  auto in = reader(written([&](auto& o) { o.writeObject(&pair); }));
  auto back = in.readOwnedObject<TestPair>();
  ASSERT_TRUE(back->first);
  EXPECT_EQ(back->first.get(), back->second.get());
  EXPECT_EQ(back->first->name, "shared");
}

TEST_F(PersistentStream, RefusesASecondOwnerForAnOwnedObject) {
  TestNode a;
  a.value = 1;
  Bytes bytes = written([&](auto& o) { o.writeObject(&a); });
  // A forged second node whose child refers back to the first one.
  const Bytes forged =
      newObjectHeader("TestNode") + kBasePart + uint32Bytes(0x05, 2) + uint32Bytes(0x0C, 1);
  bytes.insert(bytes.end(), forged.begin(), forged.end());
  auto in = reader(bytes);
  auto first = in.readOwnedObject<TestNode>();
  EXPECT_EQ(failureOf<AFCPersistentReadException2>([&] { in.readOwnedObject<TestNode>(); }),
            "Bad object index 1: the object has an owner");
  EXPECT_EQ(first->value, 1);
}

TEST_F(PersistentStream, ForgetsTheObjectsOfAFailedRead) {
  // A pair whose first leaf reads fine and whose second reference is broken.
  const Bytes bytes = newObjectHeader("TestPair") + kBasePart + newObjectHeader("TestShared") +
                      kBasePart + stringBytes("") + uint32Bytes(0x0C, 9) + uint32Bytes(0x0C, 1);
  auto in = reader(bytes);
  EXPECT_THROW(in.readOwnedObject<TestPair>(), AFCPersistentReadException2);
  EXPECT_EQ(in.objectCount(), 1u);
  // The leaf died with the pair: the reference that follows resolves to nothing.
  EXPECT_THROW(in.readObject(), AFCPersistentReadException2);
}

TEST_F(PersistentStream, TellsApartClassesWhoseNamesEndAlike) {
  TestTwin<'A'> a1, a2;
  TestTwin<'B'> b1, b2;
  const std::vector<const AFCPersistent*> objects = {&a1, &b1, &b2, &a2};
  auto in = reader(written([&](auto& o) {
    for (const AFCPersistent* object : objects) o.writeObject(object);
  }));
  for (const AFCPersistent* object : objects) {
    EXPECT_EQ(in.readOwnedObject<AFCPersistent>()->getClass(), object->getClass());
  }
}

TEST_F(PersistentStream, RefusesAnObjectOfAnotherClassThanExpected) {
  TestShared leaf;
  auto in = reader(written([&](auto& o) { o.writeObject(&leaf); }));
  EXPECT_THROW(in.readOwnedObject<TestNode>(), AFCPersistentReadException2);
}

TEST_F(PersistentStream, PeeksTheNextHeaderWithoutConsumingIt) {
  auto in = reader(written([](auto& o) { o.writeString("n"); }));
  EXPECT_EQ(in.peekHeader(), AFC_PC_STRING);
  EXPECT_EQ(in.readString(), "n");
  EXPECT_EQ(in.peekHeader(), 0);
}

TEST_F(PersistentStream, CarriesTheVersionItWasMadeFor) {
  AFCPersistentOutputStreamBuffer out(2294011);
  EXPECT_EQ(out.getVersion(), 2294011u);
  EXPECT_EQ(out.getStreamKind(), 2);
}

}  // namespace
