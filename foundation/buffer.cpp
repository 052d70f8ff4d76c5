#include "foundation/buffer.h"

#include <algorithm>

AFCBuffer& AFCBuffer::operator=(const AFCBuffer& other) {
  if (this != &other) {
    clear();
    append(other.data(), other.size());
  }
  return *this;
}

void AFCBuffer::resize(std::size_t size) {
  if (size > capacity_) grow(size);
  if (size > size_) std::memset(data_.get() + size_, 0, size - size_);
  size_ = size;
}

void AFCBuffer::reserve(std::size_t capacity) {
  if (capacity > capacity_) grow(capacity);
}

// Doubles the capacity (at least 64 bytes) so appends stay amortised linear.
void AFCBuffer::grow(std::size_t needed) {
  std::size_t capacity = std::max<std::size_t>({needed, capacity_ * 2, 64});
  auto data = std::make_unique_for_overwrite<uint8_t[]>(capacity);
  if (size_ > 0) std::memcpy(data.get(), data_.get(), size_);
  data_ = std::move(data);
  capacity_ = capacity;
}
