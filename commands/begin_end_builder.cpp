#include "commands/begin_end_builder.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>
#include <vector>

namespace {

std::atomic<uint64_t> nextBuilderId{1};

// What the calling thread keeps per builder: its channel + 1 (0 means "not set") and the channel
// whose stack it found last, with that stack, so that the map's lock is taken only when the
// channel changes. A thread talks to few builders, so a short list beats a map.
struct ThreadSlot {
  uint64_t builder = 0;
  uint32_t channelPlusOne = 0;
  uint32_t foundChannel = 0;
  void* found = nullptr;  // the builder's Channel for foundChannel; nodes of its map stay put
};

std::vector<ThreadSlot>& threadSlots() {
  thread_local std::vector<ThreadSlot> slots;
  return slots;
}

ThreadSlot* threadSlot(uint64_t builder, bool create) {
  auto& slots = threadSlots();
  for (auto& slot : slots) {
    if (slot.builder == builder) return &slot;
  }
  if (!create) return nullptr;
  slots.push_back({builder});
  return &slots.back();
}

}  // namespace

VXCommandListBeginEndBuilder::VXCommandListBeginEndBuilder()
    : id_(nextBuilderId.fetch_add(1, std::memory_order_relaxed)) {}

VXCommandListBeginEndBuilder::~VXCommandListBeginEndBuilder() {
  std::erase_if(threadSlots(), [this](const ThreadSlot& slot) { return slot.builder == id_; });
}

void VXCommandListBeginEndBuilder::setChannel(uint32_t channel) {
  threadSlot(id_, true)->channelPlusOne = channel + 1;
}

uint32_t VXCommandListBeginEndBuilder::getChannel() const {
  const ThreadSlot* slot = threadSlot(id_, false);
  return slot && slot->channelPlusOne != 0 ? slot->channelPlusOne - 1
                                           : defaultChannel_.load(std::memory_order_relaxed);
}

VXCommandListBeginEndBuilder::Stack& VXCommandListBeginEndBuilder::currentStack() {
  ThreadSlot& slot = *threadSlot(id_, true);
  const uint32_t current = slot.channelPlusOne != 0
                               ? slot.channelPlusOne - 1
                               : defaultChannel_.load(std::memory_order_relaxed);
  if (slot.found == nullptr || slot.foundChannel != current) {
    std::lock_guard lock(channelsLock_);
    slot.found = &openActions_[current];
    slot.foundChannel = current;
  }
  Channel* channel = static_cast<Channel*>(slot.found);
  const uint64_t generation = clearGeneration_.load(std::memory_order_acquire);
  if (channel->generation != generation) {
    channel->actions.clear();
    channel->generation = generation;
  }
  return channel->actions;
}

int VXCommandListBeginEndBuilder::depth() const {
  const Channel* channel = nullptr;
  {
    std::lock_guard lock(channelsLock_);
    auto found = openActions_.find(getChannel());
    if (found == openActions_.end()) return 0;
    channel = &found->second;
  }
  if (channel->generation != clearGeneration_.load(std::memory_order_acquire)) return 0;
  return static_cast<int>(channel->actions.size());
}

std::unique_ptr<VXAction> VXCommandListBeginEndBuilder::newAction(uint32_t channel) const {
  if (channel != 0) return std::make_unique<VXChannelAction>(channel);
  return std::make_unique<VXImmediateAction>();
}

void VXCommandListBeginEndBuilder::trace(std::string_view text) {
  if (traceEnabled()) traceStream() << text << '\n';
}

void VXCommandListBeginEndBuilder::addCommand(std::unique_ptr<VXCommand> record) {
  Stack& stack = currentStack();
  if (!stack.empty()) {
    stack.back()->addCommand(std::move(record));
    return;
  }
  std::unique_ptr<VXAction> single = newAction(getChannel());
  single->addCommand(std::move(record));
  sendAction(*single);
}

int VXCommandListBeginEndBuilder::beginImmediate(bool nested) {
  const uint32_t channel = getChannel();
  Stack& stack = currentStack();
  const int before = static_cast<int>(stack.size());
  const bool merge = before > 0 && nested;
  if (traceEnabled()) {
    traceStream() << "beginImmediate " << (merge ? "(nested)" : "") << ", channel " << channel
                  << '\n';
  }
  if (merge) {
    stack.push_back(std::make_unique<VXMergedAction>());
  } else {
    stack.push_back(newAction(channel));
  }
  return before;
}

void VXCommandListBeginEndBuilder::end() {
  Stack& stack = currentStack();
  if (stack.empty()) {
    trace("end (no begin!)");
    return;
  }
  if (auto* merged = dynamic_cast<VXMergedAction*>(stack.back().get()); merged && stack.size() > 1) {
    trace("end (merge)");
    if (merged->isInTransaction()) trace("transactionEnd() implicit due to merge");
    const std::unique_ptr<VXAction> top = std::move(stack.back());
    stack.pop_back();
    merged->foldInto(*stack.back());
    return;
  }
  const VXAction& top = *stack.back();
  if (traceEnabled()) {
    std::ostream& line = traceStream() << "end (sending)";
    if (dynamic_cast<const VXChannelAction*>(&top)) line << ", channel " << top.getChannel();
    line << '\n';
  }
  // Popped only once sent: a send that throws leaves the action open. A send that closes the
  // session meanwhile only marks the stacks, so top is still ours here.
  sendAction(top);
  stack.pop_back();
}

bool VXCommandListBeginEndBuilder::rollback(int level) {
  level = std::max(level, 0);
  Stack& stack = currentStack();
  const int before = static_cast<int>(stack.size());
  if (before <= level || stack.empty()) return true;
  if (traceEnabled()) traceStream() << "rollback " << level << " " << before << '\n';
  while (static_cast<int>(stack.size()) > level) stack.pop_back();
  return false;
}

int VXCommandListBeginEndBuilder::flush(int level) {
  trace("flush");
  level = std::max(level, 0);
  while (depth() > level) end();
  return depth();
}

void VXCommandListBeginEndBuilder::clearOpenActions() {
  clearGeneration_.fetch_add(1, std::memory_order_acq_rel);
}
