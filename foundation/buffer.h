#pragma once
// A growable byte buffer, shared by reference count between a writer and the streams that read
// it. Not thread safe: one thread writes or reads it at a time.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "foundation/object.h"

class AFCBuffer : public AFCShareBase {
public:
  AFCBuffer() = default;
  AFCBuffer(const void* bytes, std::size_t size) { append(bytes, size); }
  AFCBuffer(const AFCBuffer& other) : AFCShareBase() { append(other.data(), other.size()); }
  AFCBuffer& operator=(const AFCBuffer& other);

  const uint8_t* data() const noexcept { return data_.get(); }
  uint8_t* data() noexcept { return data_.get(); }
  std::size_t size() const noexcept { return size_; }
  std::size_t capacity() const noexcept { return capacity_; }
  bool empty() const noexcept { return size_ == 0; }
  std::string_view view() const noexcept {
    return {reinterpret_cast<const char*>(data_.get()), size_};
  }

  // New bytes are zero.
  void resize(std::size_t size);
  void reserve(std::size_t capacity);
  void clear() noexcept { size_ = 0; }
  void append(const void* bytes, std::size_t count) {
    if (count == 0) return;
    if (capacity_ - size_ < count) grow(size_ + count);
    std::memcpy(data_.get() + size_, bytes, count);
    size_ += count;
  }
  // Sets the size without touching the bytes; at most the capacity. For writers that filled
  // the spare capacity in place.
  void setSizeUnchecked(std::size_t size) noexcept { size_ = size; }

  bool operator==(const AFCBuffer& other) const noexcept { return view() == other.view(); }

private:
  void grow(std::size_t needed);
  std::unique_ptr<uint8_t[]> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};
