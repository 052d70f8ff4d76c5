#pragma once
// Object numbers of a persistent writer: an open-addressing hash map from object address to
// number. Linear probing, power-of-two capacity, load factor at most one half; the null
// address marks an empty slot and is never a key.
#include <cstddef>
#include <cstdint>
#include <vector>

class AFCPointerNumberMap {
public:
  // The number of key, or 0 when absent (numbers start at 1).
  uint32_t find(const void* key) const noexcept {
    if (slots_.empty()) return 0;
    for (std::size_t i = slotOf(key);; i = (i + 1) & mask_) {
      const Slot& slot = slots_[i];
      if (slot.key == key) return slot.number;
      if (slot.key == nullptr) return 0;
    }
  }
  // Adds a key that is not yet present.
  void insert(const void* key, uint32_t number) {
    if ((count_ + 1) * 2 > slots_.size()) rehash();
    std::size_t i = slotOf(key);
    while (slots_[i].key != nullptr) i = (i + 1) & mask_;
    slots_[i] = {key, number};
    ++count_;
  }
  std::size_t size() const noexcept { return count_; }

private:
  struct Slot {
    const void* key = nullptr;
    uint32_t number = 0;
  };
  std::size_t slotOf(const void* key) const noexcept {
    auto bits = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(key));
    return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ull) >> 32) & mask_;
  }
  void rehash() {
    std::vector<Slot> old = std::move(slots_);
    slots_.assign(old.empty() ? 64 : old.size() * 2, Slot{});
    mask_ = slots_.size() - 1;
    count_ = 0;
    for (const Slot& slot : old) {
      if (slot.key != nullptr) insert(slot.key, slot.number);
    }
  }

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  std::size_t count_ = 0;
};
