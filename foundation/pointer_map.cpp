#include "foundation/pointer_map.h"

#include <utility>

struct AFCPointerNumberMap::Spare {
  std::vector<Slot> slots;
  uint32_t generation = 0;  // the last generation used in slots
};

AFCPointerNumberMap::Spare& AFCPointerNumberMap::spare() {
  thread_local Spare table;
  return table;
}

AFCPointerNumberMap::AFCPointerNumberMap() {
  Spare& s = spare();
  generation_ = s.generation + 1;
  if (generation_ == 0) {  // wrapped: stale slots could look occupied
    s.slots.assign(s.slots.size(), Slot{});
    generation_ = 1;
  }
  adopt(std::move(s.slots));
  s.slots.clear();
}

AFCPointerNumberMap::~AFCPointerNumberMap() {
  Spare& s = spare();
  if (slots_.size() >= s.slots.size()) {
    s.slots = std::move(slots_);
    s.generation = generation_;
  }
}

void AFCPointerNumberMap::adopt(std::vector<Slot> slots) {
  slots_ = std::move(slots);
  if (slots_.empty()) return;
  mask_ = slots_.size() - 1;
  shift_ = 64 - std::countr_zero(slots_.size());
}

void AFCPointerNumberMap::grow() {
  std::vector<Slot> old = std::move(slots_);
  adopt(std::vector<Slot>(old.empty() ? 256 : old.size() * 2));
  count_ = 0;
  for (const Slot& slot : old) {
    if (slot.generation == generation_) place(slot.key, slot.number);
  }
}
