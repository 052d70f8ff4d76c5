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

  // A lookup's outcome: the key's number (0 when absent; numbers start at 1) and where an absent
  // key would go.
  struct Lookup {
    uint32_t number;
    std::size_t slot;
    std::size_t capacity;  // of the table that was searched
  };
  Lookup find(const void* key) const noexcept {
    if (slots_.empty()) return {0, 0, 0};
    for (std::size_t i = slotOf(key);; i = (i + 1) & mask_) {
      const Slot& slot = slots_[i];
      if (slot.generation != generation_) return {0, i, slots_.size()};
      if (slot.key == key) return {slot.number, i, slots_.size()};
    }
  }
  // Adds a key that find() reported absent, without probing again when it can: other keys may
  // have come in between (a writer numbers an object after the objects it contains), but there
  // are no removals, so the slot found is still the key's place while it is empty and the table
  // has not grown.
  void insert(const void* key, uint32_t number, const Lookup& absent) {
    if ((count_ + 1) * 2 > slots_.size()) grow();
    if (absent.capacity == slots_.size() && slots_[absent.slot].generation != generation_) {
      slots_[absent.slot] = {key, number, generation_};
      ++count_;
    } else {
      place(key, number);
    }
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
  // Adds a key that is not yet present, probing from its home slot.
  void place(const void* key, uint32_t number) {
    std::size_t i = slotOf(key);
    while (slots_[i].generation == generation_) i = (i + 1) & mask_;
    slots_[i] = {key, number, generation_};
    ++count_;
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
