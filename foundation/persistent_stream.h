#pragma once
// The binary persistence format: tagged big-endian values (marker 0xDA and a type code before
// each one), strings as UTF-16BE, objects by class name with back-references.
//
// Writers and readers are single-threaded. Readers take untrusted bytes: every length is checked
// against the bytes that remain before anything is allocated or copied, and every failure is an
// AFCPersistentReadException2 with its own text.
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "foundation/buffer.h"
#include "foundation/class.h"
#include "foundation/exception.h"
#include "foundation/pointer_map.h"

class AFCPersistentOutputStream;
class AFCPersistentInputStream;

// Type codes of the wire format.
enum AFCPersistentCode : uint8_t {
  AFC_PC_INT8 = 0x01,
  AFC_PC_UINT8 = 0x02,  // also bool
  AFC_PC_INT16 = 0x03,
  AFC_PC_UINT16 = 0x04,
  AFC_PC_INT32 = 0x05,
  AFC_PC_UINT32 = 0x06,
  AFC_PC_INT64 = 0x07,
  AFC_PC_UINT64 = 0x08,
  AFC_PC_FLOAT = 0x09,
  AFC_PC_DOUBLE = 0x0A,
  AFC_PC_STRING = 0x0B,
  AFC_PC_OBJECT = 0x0C,
  AFC_PC_BINARY = 0x0D,
  AFC_PC_WSTRING = 0x0E,
  AFC_PC_PERSISTENT = 0x0F,
};
constexpr uint8_t AFC_PERSISTENT_MARKER = 0xDA;

// Read-side failures, each with its text ("Header expected", "Incorrect data length", ...).
AFC_DECLARE_EXCEPTION(AFCPersistentReadException2, AFCException);
AFC_DECLARE_EXCEPTION(AFCPersistentReadException, AFCException);
AFC_DECLARE_EXCEPTION(AFCPersistentWriteException, AFCException);

// Base of every class whose instances are written as objects. write() starts with the base part
// (0xDA 0x0F); every subclass calls its parent's write first, and read() mirrors it.
class AFCPersistent : public AFCObject {
  AFC_DECLARE_CLASS()
public:
  virtual void write(AFCPersistentOutputStream& out) const;
  virtual void read(AFCPersistentInputStream& in);
};

class AFCPersistentStream {
public:
  // Streams are made for one server version (a combined version number such as 2294017); the
  // persisted forms of several records depend on it.
  static constexpr uint32_t kCurrentVersion = 2295007;

  explicit AFCPersistentStream(uint32_t version = kCurrentVersion) : version_(version) {}
  AFCPersistentStream(const AFCPersistentStream&) = delete;
  AFCPersistentStream& operator=(const AFCPersistentStream&) = delete;
  virtual ~AFCPersistentStream() = default;

  uint32_t getVersion() const noexcept { return version_; }
  void setVersion(uint32_t version) noexcept { version_ = version; }
  int getStreamKind() const noexcept { return kind_; }

private:
  uint32_t version_;
  int kind_ = 2;
};

// The writer. Typed writes go straight into the sink's window [pos_, end_) and call the virtual
// raw write only when the window is full.
class AFCPersistentOutputStream : public AFCPersistentStream {
public:
  using AFCPersistentStream::AFCPersistentStream;

  // Raw write: appends the bytes to the sink; nothing for a length below 1.
  void write(const void* bytes, int32_t length) {
    if (length <= 0) return;
    if (end_ - pos_ >= length) {
      std::memcpy(pos_, bytes, static_cast<std::size_t>(length));
      pos_ += length;
    } else {
      writeRaw(bytes, length);
    }
  }

  void writeHeader(uint8_t code) {
    uint8_t* p = reserve(2);
    p[0] = AFC_PERSISTENT_MARKER;
    p[1] = code;
  }
  void writeInt8(int8_t v) { putScalar(AFC_PC_INT8, static_cast<uint8_t>(v)); }
  void writeUInt8(uint8_t v) { putScalar(AFC_PC_UINT8, v); }
  void writeBool(bool v) { putScalar(AFC_PC_UINT8, static_cast<uint8_t>(v ? 1 : 0)); }
  void writeInt16(int16_t v) { putScalar(AFC_PC_INT16, static_cast<uint16_t>(v)); }
  void writeUInt16(uint16_t v) { putScalar(AFC_PC_UINT16, v); }
  void writeInt32(int32_t v) { putScalar(AFC_PC_INT32, static_cast<uint32_t>(v)); }
  void writeUInt32(uint32_t v) { putScalar(AFC_PC_UINT32, v); }
  void writeInt64(int64_t v) { putScalar(AFC_PC_INT64, static_cast<uint64_t>(v)); }
  void writeUInt64(uint64_t v) { putScalar(AFC_PC_UINT64, v); }
  void writeFloat(float v) { putScalar(AFC_PC_FLOAT, std::bit_cast<uint32_t>(v)); }
  void writeDouble(double v) { putScalar(AFC_PC_DOUBLE, std::bit_cast<uint64_t>(v)); }
  // 8-bit text, converted with the default character set.
  void writeString(std::string_view text) { writeText(AFC_PC_STRING, text); }
  void writeWString(std::u16string_view text) { writeUnits(AFC_PC_WSTRING, text); }
  // Header 0x0D, the length, then the bytes when the length is above 0.
  void writeBinary(const void* bytes, int32_t length);
  // Header 0x06 with the count, then a binary block when the count is not 0.
  void writeBuffer(const AFCBuffer& buffer);
  // Null, a back-reference, or a new object with its class name and contents.
  void writeObject(const AFCPersistent* object);

  AFCPersistentOutputStream& operator<<(int8_t v) { writeInt8(v); return *this; }
  AFCPersistentOutputStream& operator<<(uint8_t v) { writeUInt8(v); return *this; }
  AFCPersistentOutputStream& operator<<(bool v) { writeBool(v); return *this; }
  AFCPersistentOutputStream& operator<<(int16_t v) { writeInt16(v); return *this; }
  AFCPersistentOutputStream& operator<<(uint16_t v) { writeUInt16(v); return *this; }
  AFCPersistentOutputStream& operator<<(int32_t v) { writeInt32(v); return *this; }
  AFCPersistentOutputStream& operator<<(uint32_t v) { writeUInt32(v); return *this; }
  AFCPersistentOutputStream& operator<<(int64_t v) { writeInt64(v); return *this; }
  AFCPersistentOutputStream& operator<<(uint64_t v) { writeUInt64(v); return *this; }
  AFCPersistentOutputStream& operator<<(float v) { writeFloat(v); return *this; }
  AFCPersistentOutputStream& operator<<(double v) { writeDouble(v); return *this; }
  AFCPersistentOutputStream& operator<<(std::string_view v) { writeString(v); return *this; }
  AFCPersistentOutputStream& operator<<(const std::string& v) { writeString(v); return *this; }
  AFCPersistentOutputStream& operator<<(const char* v) { writeString(v); return *this; }
  AFCPersistentOutputStream& operator<<(std::u16string_view v) { writeWString(v); return *this; }
  AFCPersistentOutputStream& operator<<(const AFCBuffer& v) { writeBuffer(v); return *this; }
  AFCPersistentOutputStream& operator<<(const AFCPersistent* v) { writeObject(v); return *this; }

protected:
  // Slow path of write: the window [pos_, end_) had no room for length bytes. The sink takes
  // what it can and sets a new window.
  virtual void writeRaw(const void* bytes, int32_t length) = 0;
  // Makes room for at least n contiguous bytes in the window (or throws).
  virtual void makeRoom(std::size_t n) = 0;

  uint8_t* pos_ = nullptr;
  uint8_t* end_ = nullptr;

private:
  uint8_t* reserve(std::size_t n) {
    if (static_cast<std::size_t>(end_ - pos_) < n) makeRoom(n);
    uint8_t* p = pos_;
    pos_ += n;
    return p;
  }
  template <class U>
  void putScalar(uint8_t code, U value) {
    uint8_t* p = reserve(2 + sizeof(U));
    p[0] = AFC_PERSISTENT_MARKER;
    p[1] = code;
    for (std::size_t i = 0; i < sizeof(U); ++i) {
      p[2 + i] = static_cast<uint8_t>(value >> (8 * (sizeof(U) - 1 - i)));
    }
  }
  void writeText(uint8_t code, std::string_view text);
  void writeUnits(uint8_t code, std::u16string_view units);

  // Numbers given to the objects written so far; the first null takes a number too.
  AFCPointerNumberMap numbers_;
  uint32_t nullNumber_ = 0;
  uint32_t nextNumber_ = 1;
};

// Writes into an AFCBuffer that it owns (shared; getBuffer() hands out a reference).
class AFCPersistentOutputStreamBuffer : public AFCPersistentOutputStream {
public:
  explicit AFCPersistentOutputStreamBuffer(uint32_t version = kCurrentVersion,
                                           std::size_t reserve = 256);
  ~AFCPersistentOutputStreamBuffer() override;
  // The buffer with every byte written so far.
  AFCBuffer& getBuffer();
  std::size_t size() const { return buffer_->size() + static_cast<std::size_t>(pos_ - start()); }

protected:
  void writeRaw(const void* bytes, int32_t length) override;
  void makeRoom(std::size_t n) override;

private:
  uint8_t* start() const { return buffer_->data() + buffer_->size(); }
  void sync();
  AFCRef<AFCBuffer> buffer_;
};

// The reader. Typed reads take bytes from the window [pos_, end_) and call the virtual raw read
// only when the window does not hold them.
class AFCPersistentInputStream : public AFCPersistentStream {
public:
  using AFCPersistentStream::AFCPersistentStream;
  ~AFCPersistentInputStream() override;

  // Raw read of length bytes into dest; see the buffer reader for negative lengths.
  virtual void read(void* dest, int32_t length) = 0;
  // A new instance of the named class; throws "Can't find class ..." or
  // "Bad type of created instance".
  virtual AFCPersistent* createInstance(std::string_view className);

  // Reads a header; throws "Header expected" unless the marker is there.
  uint8_t readHeader() {
    if (end_ - pos_ >= 2 && pos_[0] == AFC_PERSISTENT_MARKER) {
      pos_ += 2;
      return pos_[-1];
    }
    return readHeaderSlow();
  }
  // Reads a header and demands the code.
  void readHeader(uint8_t expected) {
    if (end_ - pos_ >= 2 && pos_[0] == AFC_PERSISTENT_MARKER && pos_[1] == expected) {
      pos_ += 2;
      return;
    }
    readHeaderSlow(expected);
  }
  // The code of the next header without consuming it (0 when fewer than two bytes remain or
  // the marker is missing).
  uint8_t peekHeader() const;

  int8_t readInt8() { return static_cast<int8_t>(getScalar<uint8_t>(AFC_PC_INT8)); }
  uint8_t readUInt8() { return getScalar<uint8_t>(AFC_PC_UINT8); }
  bool readBool() { return getScalar<uint8_t>(AFC_PC_UINT8) != 0; }
  int16_t readInt16() { return static_cast<int16_t>(getScalar<uint16_t>(AFC_PC_INT16)); }
  uint16_t readUInt16() { return getScalar<uint16_t>(AFC_PC_UINT16); }
  int32_t readInt32() { return static_cast<int32_t>(getScalar<uint32_t>(AFC_PC_INT32)); }
  uint32_t readUInt32() { return getScalar<uint32_t>(AFC_PC_UINT32); }
  int64_t readInt64() { return static_cast<int64_t>(getScalar<uint64_t>(AFC_PC_INT64)); }
  uint64_t readUInt64() { return getScalar<uint64_t>(AFC_PC_UINT64); }
  float readFloat() { return std::bit_cast<float>(getScalar<uint32_t>(AFC_PC_FLOAT)); }
  double readDouble() { return std::bit_cast<double>(getScalar<uint64_t>(AFC_PC_DOUBLE)); }
  // Either string code is accepted; 8-bit text through the default character set.
  std::string readString();
  std::u16string readWString();
  // A binary block into a growable buffer (resized to the length read).
  void readBinary(AFCBuffer& into);
  // A binary block whose length must equal size.
  void readBinary(void* into, int32_t size);
  // A count (0x06) and, when not 0, a binary block of that length.
  void readBuffer(AFCBuffer& into);

  // The object reference as the format states it: a new object (the caller takes it over), a
  // back-reference (owned elsewhere) or null.
  AFCPersistent* readObject();
  // An object the caller owns alone. A back-reference is refused: it would give the object a
  // second owner. A class that is not a T is refused too.
  template <class T>
  std::unique_ptr<T> readOwnedObject() {
    return std::unique_ptr<T>(checkedCast<T>(readReference(Ownership::Owned)));
  }
  // A shared (AFCShareBase) object, new or referenced again; the stream holds a reference to
  // every such object until it ends.
  template <class T>
  AFCRef<T> readSharedObject() {
    static_assert(std::is_base_of_v<AFCShareBase, T>);
    AFCPersistent* object = readReference(Ownership::Shared);
    if (object == nullptr) return {};
    T* typed = dynamic_cast<T*>(object);
    if (typed == nullptr) throwWrongClass(*object, T::staticClass());
    return AFCRef<T>(typed);
  }
  // Objects read so far, in the order their reading finished (null for the ones a failed read
  // discarded).
  std::size_t objectCount() const { return table_.size(); }

  AFCPersistentInputStream& operator>>(int8_t& v) { v = readInt8(); return *this; }
  AFCPersistentInputStream& operator>>(uint8_t& v) { v = readUInt8(); return *this; }
  AFCPersistentInputStream& operator>>(bool& v) { v = readBool(); return *this; }
  AFCPersistentInputStream& operator>>(int16_t& v) { v = readInt16(); return *this; }
  AFCPersistentInputStream& operator>>(uint16_t& v) { v = readUInt16(); return *this; }
  AFCPersistentInputStream& operator>>(int32_t& v) { v = readInt32(); return *this; }
  AFCPersistentInputStream& operator>>(uint32_t& v) { v = readUInt32(); return *this; }
  AFCPersistentInputStream& operator>>(int64_t& v) { v = readInt64(); return *this; }
  AFCPersistentInputStream& operator>>(uint64_t& v) { v = readUInt64(); return *this; }
  AFCPersistentInputStream& operator>>(float& v) { v = readFloat(); return *this; }
  AFCPersistentInputStream& operator>>(double& v) { v = readDouble(); return *this; }
  AFCPersistentInputStream& operator>>(std::string& v) { v = readString(); return *this; }
  AFCPersistentInputStream& operator>>(std::u16string& v) { v = readWString(); return *this; }
  AFCPersistentInputStream& operator>>(AFCBuffer& v) { readBuffer(v); return *this; }

protected:
  // Bytes the reader may still take without a raw read; -1 when the sink cannot tell.
  virtual int64_t remaining() const { return -1; }

  const uint8_t* pos_ = nullptr;
  const uint8_t* end_ = nullptr;

private:
  enum class Ownership { Loose, Owned, Shared };
  struct Entry {
    AFCPersistent* object;
    Ownership ownership;
  };

  template <class U>
  U getScalar(uint8_t code) {
    const uint8_t* p;
    uint8_t scratch[sizeof(U)];
    if (static_cast<std::size_t>(end_ - pos_) >= 2 + sizeof(U) &&
        pos_[0] == AFC_PERSISTENT_MARKER && pos_[1] == code) {
      p = pos_ + 2;
      pos_ += 2 + sizeof(U);
    } else {
      readHeader(code);
      p = take(scratch, sizeof(U));
    }
    U value = 0;
    for (std::size_t i = 0; i < sizeof(U); ++i) value = static_cast<U>((value << 8) | p[i]);
    return value;
  }
  // n bytes from the window, or read into scratch through the raw read.
  const uint8_t* take(uint8_t* scratch, std::size_t n) {
    if (static_cast<std::size_t>(end_ - pos_) >= n) {
      const uint8_t* p = pos_;
      pos_ += n;
      return p;
    }
    read(scratch, static_cast<int32_t>(n));
    return scratch;
  }
  uint8_t readHeaderSlow();
  void readHeaderSlow(uint8_t expected);
  [[noreturn]] static void throwHeaderExpected();
  [[noreturn]] static void throwBadHeader(uint8_t got, uint8_t expected);
  [[noreturn]] static void throwWrongClass(const AFCPersistent& object, const AFCClass& expected);
  int32_t readUnitCount();
  void readUnits(int32_t count, char16_t* into);
  AFCPersistent* readReference(Ownership ownership);
  AFCPersistent* readNewObject(Ownership ownership);
  void checkAvailable(int64_t bytes) const;
  // Objects of this stream were made from their class records, so the record tells the type.
  template <class T>
  T* checkedCast(AFCPersistent* object) {
    if (object == nullptr) return nullptr;
    if (!object->getClass()->isSubclassOf(T::staticClass())) {
      discardWrongClass(object, T::staticClass());
    }
    return static_cast<T*>(object);
  }
  [[noreturn]] void discardWrongClass(AFCPersistent* object, const AFCClass& expected);
  void forgetFrom(std::size_t firstEntry);

  // A class met before in this stream, with what creating an instance needs to know.
  struct SeenClass {
    std::string_view name;  // the record's own name
    uint64_t nameTail;
    const AFCClass* record;
    bool persistent;
  };
  // The class of that name, from the classes met so far or else the registry; nullptr when
  // unknown. Valid until the next call.
  const SeenClass* findClass(std::string_view name);

  std::vector<Entry> table_;
  std::vector<AFCRef<AFCShareBase>> sharedHolds_;  // keeps shared objects alive for back-references
  // Spares registry lookups, which take the registry's lock. Only registered classes enter, so
  // it stays as small as the registry whatever the input.
  std::vector<SeenClass> seenClasses_;
};

// Inline: every persistent class's write and read starts here.
inline void AFCPersistent::write(AFCPersistentOutputStream& out) const {
  out.writeHeader(AFC_PC_PERSISTENT);
}

inline void AFCPersistent::read(AFCPersistentInputStream& in) { in.readHeader(AFC_PC_PERSISTENT); }

// Reads an AFCBuffer from a signed 32-bit position starting at 0.
class AFCPersistentInputStreamBuffer : public AFCPersistentInputStream {
public:
  explicit AFCPersistentInputStreamBuffer(AFCRef<AFCBuffer> buffer,
                                          uint32_t version = kCurrentVersion);
  // Copies the bytes into a buffer of its own.
  AFCPersistentInputStreamBuffer(const void* bytes, std::size_t size,
                                 uint32_t version = kCurrentVersion);

  // n > 0: n bytes or "Incorrect data length" (position kept); n < 0: moves back by -n.
  void read(void* dest, int32_t length) override;
  int32_t getPosition() const;
  bool atEnd() const { return underflow_ == 0 && pos_ == end_; }

protected:
  int64_t remaining() const override { return underflow_ < 0 ? 0 : end_ - pos_; }

private:
  AFCRef<AFCBuffer> buffer_;
  int64_t underflow_ = 0;  // a position moved back below 0 (then the window is empty)
};
