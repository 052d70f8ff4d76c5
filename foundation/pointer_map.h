#pragma once
// Object numbers of a persistent writer: an open-addressing hash map from object address to
// number. Linear probing, power-of-two capacity, load factor at most one half; a slot is empty
// unless it carries the map's generation, so a table is reused without clearing it. Each thread
// keeps the table of its last finished map for the next one: streams are made per packet, and
// this spares them the allocation, the clearing and the regrowth.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

class AFCPointerNumberMap {
public:
  AFCPointerNumberMap();
  ~AFCPointerNumberMap();
  AFCPointerNumberMap(const AFCPointerNumberMap&) = delete;
  AFCPointerNumberMap& operator=(const AFCPointerNumberMap&) = delete;
  AFCPointerNumberMap(AFCPointerNumberMap&&) = delete;

  // The number of key, or 0 when absent (numbers start at 1).
  uint32_t find(const void* key) const noexcept {
    if (count_ == 0) return 0;
    for (std::size_t i = slotOf(key);; i = (i + 1) & mask_) {
      const Slot& slot = slots_[i];
      if (slot.generation != generation_) return 0;
      if (slot.key == key) return slot.number;
    }
  }
  // Adds a key that is not yet present.
  void insert(const void* key, uint32_t number) {
    if ((count_ + 1) * 2 > slots_.size()) grow();
    std::size_t i = slotOf(key);
    while (slots_[i].generation == generation_) i = (i + 1) & mask_;
    slots_[i] = {key, number, generation_};
    ++count_;
  }
  std::size_t size() const noexcept { return count_; }

private:
  struct Slot {
    const void* key = nullptr;
    uint32_t number = 0;
    uint32_t generation = 0;
  };
  // Fibonacci hashing: the top bits of the product mix every bit of the address.
  std::size_t slotOf(const void* key) const noexcept {
    auto bits = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(key));
    return static_cast<std::size_t>((bits * 0x9E3779B97F4A7C15ull) >> shift_);
  }
  struct Spare;
  static Spare& spare();
  void grow();
  void adopt(std::vector<Slot> slots);

  std::vector<Slot> slots_;
  std::size_t mask_ = 0;
  int shift_ = 63;
  std::size_t count_ = 0;
  uint32_t generation_ = 1;
};
