#include "foundation/persistent_stream.h"

#include <cstdio>
#include <limits>

#include "foundation/charset.h"

namespace {
[[noreturn]] void readError(const std::string& text) { throw AFCPersistentReadException2(text); }

std::string hexCode(uint8_t code) {
  char text[8];
  std::snprintf(text, sizeof text, "%x", code);
  return text;
}

inline void putBE32(uint8_t* p, uint32_t v) {
  p[0] = static_cast<uint8_t>(v >> 24);
  p[1] = static_cast<uint8_t>(v >> 16);
  p[2] = static_cast<uint8_t>(v >> 8);
  p[3] = static_cast<uint8_t>(v);
}

inline uint32_t getBE32(const uint8_t* p) {
  return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | p[3];
}

constexpr std::size_t kMaxUnits = std::numeric_limits<int32_t>::max() / 2;

// The two loops below check and convert in one pass without an early exit, so that the compiler
// turns them into vector code.

// Each byte as a big-endian UTF-16 unit; false when a byte is not ASCII, and then out holds
// nothing of use.
bool widenAscii(std::string_view text, uint8_t* out) {
  unsigned char bits = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    bits |= byte;
    out[2 * i] = 0;
    out[2 * i + 1] = byte;
  }
  return bits < 0x80;
}

// Narrows count big-endian UTF-16 units to bytes; false when any unit is not ASCII, and then
// out holds nothing of use.
bool narrowAsciiUnits(const uint8_t* units, std::size_t count, char* out) {
  unsigned bits = 0;
  for (std::size_t i = 0; i < count; ++i) {
    bits |= (unsigned{units[2 * i]} << 8) | units[2 * i + 1];
    out[i] = static_cast<char>(units[2 * i + 1]);
  }
  return bits < 0x80;
}

// Class names share long prefixes ("AFCAttribute...", "VXCommand..."): their last bytes tell
// them apart soonest.
uint64_t nameTail(std::string_view name) {
  uint64_t tail = 0;
  if (name.size() >= sizeof tail) {
    std::memcpy(&tail, name.data() + name.size() - sizeof tail, sizeof tail);
  } else {
    for (char c : name) tail = (tail << 8) | static_cast<unsigned char>(c);
  }
  return tail;
}

// Equal names, for two names of the same size whose last eight bytes (or whole text, when
// shorter) are known to be equal: word compares inline instead of a call to memcmp.
bool sameHead(const char* a, const char* b, std::size_t size) {
  if (size <= sizeof(uint64_t)) return true;
  const std::size_t head = size - sizeof(uint64_t);
  std::size_t i = 0;
  for (; i + sizeof(uint64_t) <= head; i += sizeof(uint64_t)) {
    uint64_t x;
    uint64_t y;
    std::memcpy(&x, a + i, sizeof x);
    std::memcpy(&y, b + i, sizeof y);
    if (x != y) return false;
  }
  // The word at i covers the rest of the head and runs into the tail, which is known equal.
  uint64_t x;
  uint64_t y;
  std::memcpy(&x, a + i, sizeof x);
  std::memcpy(&y, b + i, sizeof y);
  return x == y;
}

int32_t checkedCount(std::size_t units) {
  if (units > kMaxUnits) {
    throw AFCPersistentWriteException("String too long for the stream: " +
                                      std::to_string(units) + " units");
  }
  return static_cast<int32_t>(units);
}
}  // namespace

// ---- AFCPersistent ----

const AFCClass& AFCPersistent::staticClass() {
  static const AFCClass& record =
      (new AFCClassEx("AFCPersistent", &AFCObject::staticClass()))->registerClass();
  return record;
}

// ---- AFCPersistentOutputStream ----

void AFCPersistentOutputStream::writeText(uint8_t code, std::string_view text) {
  // ASCII is the rule and takes one unit a byte; any other text goes through the character set.
  if (text.size() <= kMaxUnits) {
    uint8_t* p = reserve(6 + 2 * text.size());
    if (widenAscii(text, p + 6)) {
      p[0] = AFC_PERSISTENT_MARKER;
      p[1] = code;
      putBE32(p + 2, static_cast<uint32_t>(text.size()));
      return;
    }
    pos_ = p;
  }
  std::u16string units;
  AFCCharset::toUtf16(AFC_CHARSET_DEFAULT, text, units);
  writeUnits(code, units);
}

void AFCPersistentOutputStream::writeUnits(uint8_t code, std::u16string_view units) {
  const int32_t count = checkedCount(units.size());
  uint8_t* p = reserve(6 + 2 * static_cast<std::size_t>(count));
  p[0] = AFC_PERSISTENT_MARKER;
  p[1] = code;
  putBE32(p + 2, static_cast<uint32_t>(count));
  p += 6;
  for (char16_t unit : units) {
    *p++ = static_cast<uint8_t>(unit >> 8);
    *p++ = static_cast<uint8_t>(unit);
  }
}

void AFCPersistentOutputStream::writeBinary(const void* bytes, int32_t length) {
  uint8_t* p = reserve(6);
  p[0] = AFC_PERSISTENT_MARKER;
  p[1] = AFC_PC_BINARY;
  putBE32(p + 2, static_cast<uint32_t>(length));
  if (length > 0) write(bytes, length);
}

void AFCPersistentOutputStream::writeBuffer(const AFCBuffer& buffer) {
  if (buffer.size() > static_cast<std::size_t>(std::numeric_limits<int32_t>::max())) {
    throw AFCPersistentWriteException("Buffer too large for the stream: " +
                                      std::to_string(buffer.size()) + " bytes");
  }
  writeUInt32(static_cast<uint32_t>(buffer.size()));
  if (!buffer.empty()) writeBinary(buffer.data(), static_cast<int32_t>(buffer.size()));
}

void AFCPersistentOutputStream::writeObject(const AFCPersistent* object) {
  if (object == nullptr) {
    putScalar(AFC_PC_OBJECT, uint32_t{0});
    // The first null uses up a number although readers never number it; streams in use
    // depend on the numbering this gives.
    if (nullNumber_ == 0) nullNumber_ = nextNumber_++;
    return;
  }
  const AFCPointerNumberMap::Lookup known = numbers_.find(object);
  if (known.number != 0) {
    putScalar(AFC_PC_OBJECT, known.number);
    return;
  }
  constexpr uint32_t kNewObject = 0xFFFFFFFFu;
  const std::string& name = object->getClass()->getName();
  if (name.empty() || name.size() > 0xFFFF) {
    putScalar(AFC_PC_OBJECT, kNewObject);  // the stream ends with it when the writer throws
    if (name.empty()) throw AFCPersistentWriteException();
    throw AFCPersistentWriteException("Class name too long: " + name);
  }
  // The reference, the name's length and the name in one piece.
  uint8_t* p = reserve(8 + name.size());
  p[0] = AFC_PERSISTENT_MARKER;
  p[1] = AFC_PC_OBJECT;
  putBE32(p + 2, kNewObject);
  p[6] = static_cast<uint8_t>(name.size() >> 8);
  p[7] = static_cast<uint8_t>(name.size());
  std::memcpy(p + 8, name.data(), name.size());
  object->write(*this);
  // Numbered only now: objects written by the object's own write come first.
  numbers_.insert(object, nextNumber_++, known);
}

// ---- AFCPersistentOutputStreamBuffer ----

AFCPersistentOutputStreamBuffer::AFCPersistentOutputStreamBuffer(uint32_t version,
                                                                 std::size_t reserve)
    : AFCPersistentOutputStream(version), buffer_(new AFCBuffer()) {
  buffer_->reserve(reserve);
  pos_ = buffer_->data();
  end_ = pos_ + buffer_->capacity();
}

AFCPersistentOutputStreamBuffer::~AFCPersistentOutputStreamBuffer() = default;

void AFCPersistentOutputStreamBuffer::sync() {
  buffer_->setSizeUnchecked(static_cast<std::size_t>(pos_ - buffer_->data()));
}

AFCBuffer& AFCPersistentOutputStreamBuffer::getBuffer() {
  sync();
  return *buffer_;
}

void AFCPersistentOutputStreamBuffer::makeRoom(std::size_t n) {
  sync();
  buffer_->reserve(buffer_->size() + n);
  pos_ = buffer_->data() + buffer_->size();
  end_ = buffer_->data() + buffer_->capacity();
}

void AFCPersistentOutputStreamBuffer::writeRaw(const void* bytes, int32_t length) {
  makeRoom(static_cast<std::size_t>(length));
  std::memcpy(pos_, bytes, static_cast<std::size_t>(length));
  pos_ += length;
}

// ---- AFCPersistentInputStream ----

AFCPersistentInputStream::~AFCPersistentInputStream() = default;

void AFCPersistentInputStream::throwHeaderExpected() { readError("Header expected"); }

void AFCPersistentInputStream::throwBadHeader(uint8_t got, uint8_t expected) {
  readError("Bad header type (got=0x" + hexCode(got) + ", exp=0x" + hexCode(expected) + ")");
}

void AFCPersistentInputStream::throwWrongClass(const AFCPersistent& object,
                                               const AFCClass& expected) {
  readError("Bad type of object (got=" + object.getClass()->getName() +
            ", exp=" + expected.getName() + ")");
}

void AFCPersistentInputStream::checkAvailable(int64_t bytes) const {
  const int64_t left = remaining();
  if (left >= 0 && bytes > left) readError("Incorrect data length");
}

uint8_t AFCPersistentInputStream::readHeaderSlow() {
  uint8_t scratch[2];
  const uint8_t* p = take(scratch, 2);
  if (p[0] != AFC_PERSISTENT_MARKER) throwHeaderExpected();
  return p[1];
}

void AFCPersistentInputStream::readHeaderSlow(uint8_t expected) {
  const uint8_t code = readHeaderSlow();
  if (code != expected) throwBadHeader(code, expected);
}

uint8_t AFCPersistentInputStream::peekHeader() const {
  if (end_ - pos_ < 2 || pos_[0] != AFC_PERSISTENT_MARKER) return 0;
  return pos_[1];
}

int32_t AFCPersistentInputStream::readUnitCount() {
  const uint8_t code = readHeader();
  if (code != AFC_PC_STRING && code != AFC_PC_WSTRING) {
    readError("Bad header type (got=0x" + hexCode(code) + ", exp=string)");
  }
  uint8_t scratch[4];
  const auto count = static_cast<int32_t>(getBE32(take(scratch, 4)));
  if (count < 1) return 0;
  if (int64_t{count} * 2 > end_ - pos_) checkAvailable(int64_t{count} * 2);
  return count;
}

void AFCPersistentInputStream::readUnits(int32_t count, char16_t* into) {
  for (int32_t i = 0; i < count; ++i) {
    uint8_t scratch[2];
    const uint8_t* p = take(scratch, 2);
    into[i] = static_cast<char16_t>((p[0] << 8) | p[1]);
  }
}

std::string AFCPersistentInputStream::readString() {
  const int32_t count = readUnitCount();
  const auto bytes = static_cast<std::size_t>(count) * 2;
  if (static_cast<std::size_t>(end_ - pos_) >= bytes) {
    std::string text(static_cast<std::size_t>(count), '\0');
    if (narrowAsciiUnits(pos_, text.size(), text.data())) {
      pos_ += bytes;
      return text;
    }
  }
  std::u16string units(static_cast<std::size_t>(count), u'\0');
  readUnits(count, units.data());
  std::string text;
  AFCCharset::fromUtf16(AFC_CHARSET_DEFAULT, units, text);
  return text;
}

std::u16string AFCPersistentInputStream::readWString() {
  const int32_t count = readUnitCount();
  std::u16string units(static_cast<std::size_t>(count), u'\0');
  readUnits(count, units.data());
  return units;
}

void AFCPersistentInputStream::readBinary(AFCBuffer& into) {
  readHeader(AFC_PC_BINARY);
  uint8_t scratch[4];
  const auto length = static_cast<int32_t>(getBE32(take(scratch, 4)));
  if (length < 0) readError("Bad binary length");
  checkAvailable(length);
  into.resize(static_cast<std::size_t>(length));
  if (length > 0) read(into.data(), length);
}

void AFCPersistentInputStream::readBinary(void* into, int32_t size) {
  readHeader(AFC_PC_BINARY);
  uint8_t scratch[4];
  const auto length = static_cast<int32_t>(getBE32(take(scratch, 4)));
  if (length < 0) readError("Bad binary length");
  if (length != size) readError("Length of binary data doesn't match");
  if (length > 0) read(into, length);
}

void AFCPersistentInputStream::readBuffer(AFCBuffer& into) {
  const uint32_t count = readUInt32();
  if (count == 0) {
    into.resize(0);
    return;
  }
  // The block that follows carries a header and a length besides the bytes.
  checkAvailable(int64_t{count} + 6);
  if (count > static_cast<uint32_t>(std::numeric_limits<int32_t>::max())) {
    readError("Length of binary data doesn't match");
  }
  into.resize(count);
  readBinary(into.data(), static_cast<int32_t>(count));
}

auto AFCPersistentInputStream::findClass(std::string_view name) -> const SeenClass* {
  const uint64_t tail = nameTail(name);
  for (const SeenClass& seen : seenClasses_) {
    if (seen.nameTail == tail && seen.name.size() == name.size() &&
        sameHead(seen.name.data(), name.data(), name.size())) {
      return &seen;
    }
  }
  const AFCClass* record = AFCClass::forName(name);
  if (record == nullptr) return nullptr;
  return &seenClasses_.emplace_back(SeenClass{record->getName(), tail, record,
                                              record->isSubclassOf(AFCPersistent::staticClass())});
}

AFCPersistent* AFCPersistentInputStream::createInstance(std::string_view className) {
  const SeenClass* seen = findClass(className);
  if (seen == nullptr) readError("Can't find class " + std::string(className));
  if (!seen->persistent) readError("Bad type of created instance");
  AFCObject* object = seen->record->newInstance();
  if (object == nullptr) readError("Bad type of created instance");
  // The record made it, so its type is the record's class, a persistent one.
  return static_cast<AFCPersistent*>(object);
}

AFCPersistent* AFCPersistentInputStream::readObject() { return readReference(Ownership::Loose); }

AFCPersistent* AFCPersistentInputStream::readReference(Ownership ownership) {
  const uint32_t number = getScalar<uint32_t>(AFC_PC_OBJECT);
  if (number == 0) return nullptr;
  if (number == 0xFFFFFFFFu) return readNewObject(ownership);
  if (number - 1 >= table_.size() || table_[number - 1].object == nullptr) {
    readError("Bad object index");
  }
  const Entry& entry = table_[number - 1];
  // Only shared objects may be referenced again: a second owner would free the object twice.
  if (ownership != Ownership::Loose && entry.ownership != Ownership::Shared) {
    readError("Bad object index " + std::to_string(number) + ": the object has an owner");
  }
  return entry.object;
}

AFCPersistent* AFCPersistentInputStream::readNewObject(Ownership ownership) {
  uint8_t scratch[2];
  const uint8_t* p = take(scratch, 2);
  const std::size_t length = (std::size_t{p[0]} << 8) | p[1];
  if (length == 0) readError("Bad object type name");
  std::string name;
  std::string_view nameView;
  if (static_cast<std::size_t>(end_ - pos_) >= length) {
    nameView = {reinterpret_cast<const char*>(pos_), length};
    pos_ += length;
  } else {
    checkAvailable(static_cast<int64_t>(length));
    name.resize(length);
    read(name.data(), static_cast<int32_t>(length));
    nameView = name;
  }

  std::unique_ptr<AFCPersistent> object(createInstance(nameView));
  const std::size_t firstEntry = table_.size();
  try {
    object->read(*this);
  } catch (...) {
    forgetFrom(firstEntry);
    throw;
  }
  if (ownership == Ownership::Shared) {
    auto* shared = dynamic_cast<AFCShareBase*>(object.get());
    if (shared == nullptr) {
      readError("Bad type of object (got=" + std::string(nameView) + ", exp=a shared object)");
    }
    sharedHolds_.emplace_back(shared);
  }
  table_.push_back({object.get(), ownership});
  return object.release();
}

// Entries that a failed read appended stay numbered, but refer to nothing any more: the
// objects died with the object that was being read.
void AFCPersistentInputStream::forgetFrom(std::size_t firstEntry) {
  for (std::size_t i = firstEntry; i < table_.size(); ++i) table_[i].object = nullptr;
}

void AFCPersistentInputStream::discardWrongClass(AFCPersistent* object,
                                                 const AFCClass& expected) {
  std::unique_ptr<AFCPersistent> owned(object);
  for (Entry& entry : table_) {
    if (entry.object == object) entry.object = nullptr;
  }
  throwWrongClass(*object, expected);
}

// ---- AFCPersistentInputStreamBuffer ----

AFCPersistentInputStreamBuffer::AFCPersistentInputStreamBuffer(AFCRef<AFCBuffer> buffer,
                                                               uint32_t version)
    : AFCPersistentInputStream(version), buffer_(std::move(buffer)) {
  pos_ = buffer_->data();
  end_ = pos_ + buffer_->size();
}

AFCPersistentInputStreamBuffer::AFCPersistentInputStreamBuffer(const void* bytes,
                                                               std::size_t size,
                                                               uint32_t version)
    : AFCPersistentInputStreamBuffer(AFCRef<AFCBuffer>(new AFCBuffer(bytes, size)), version) {}

int32_t AFCPersistentInputStreamBuffer::getPosition() const {
  if (underflow_ < 0) return static_cast<int32_t>(underflow_);
  return static_cast<int32_t>(pos_ - buffer_->data());
}

void AFCPersistentInputStreamBuffer::read(void* dest, int32_t length) {
  if (length > 0) {
    if (underflow_ < 0 || end_ - pos_ < length) readError("Incorrect data length");
    std::memcpy(dest, pos_, static_cast<std::size_t>(length));
    pos_ += length;
  } else if (length < 0) {
    // Moving back has no lower bound; below 0 the stream can only move back further, and a
    // read from there fails.
    const int64_t position = int64_t{getPosition()} + length;
    if (position >= 0) {
      pos_ = buffer_->data() + position;
      end_ = buffer_->data() + buffer_->size();
      underflow_ = 0;
    } else {
      pos_ = end_ = buffer_->data();
      underflow_ = position;
    }
  }
}
