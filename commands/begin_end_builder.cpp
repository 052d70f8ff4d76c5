#include "commands/begin_end_builder.h"

#include <atomic>
#include <string>
#include <utility>
#include <vector>

namespace {

std::atomic<uint64_t> nextBuilderId{1};

// The channel slots of the calling thread: builder id to channel + 1 (0 means "not set"). A
// thread talks to few builders, so a short list beats a map.
std::vector<std::pair<uint64_t, uint32_t>>& threadChannels() {
  thread_local std::vector<std::pair<uint64_t, uint32_t>> slots;
  return slots;
}

uint32_t* threadChannelSlot(uint64_t builder, bool create) {
  auto& slots = threadChannels();
  for (auto& slot : slots) {
    if (slot.first == builder) return &slot.second;
  }
  if (!create) return nullptr;
  slots.emplace_back(builder, 0);
  return &slots.back().second;
}

}  // namespace

VXCommandListBeginEndBuilder::VXCommandListBeginEndBuilder()
    : id_(nextBuilderId.fetch_add(1, std::memory_order_relaxed)) {}

VXCommandListBeginEndBuilder::~VXCommandListBeginEndBuilder() {
  auto& slots = threadChannels();
  std::erase_if(slots, [this](const auto& slot) { return slot.first == id_; });
}

void VXCommandListBeginEndBuilder::setChannel(uint32_t channel) {
  *threadChannelSlot(id_, true) = channel + 1;
}

uint32_t VXCommandListBeginEndBuilder::getChannel() const {
  const uint32_t* slot = threadChannelSlot(id_, false);
  return slot && *slot != 0 ? *slot - 1 : defaultChannel_;
}

VXCommandListBeginEndBuilder::Stack& VXCommandListBeginEndBuilder::currentStack() {
  return openActions_[getChannel()];
}

int VXCommandListBeginEndBuilder::depth() const {
  auto found = openActions_.find(getChannel());
  return found == openActions_.end() ? 0 : static_cast<int>(found->second.size());
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
  std::unique_ptr<VXAction> top = std::move(stack.back());
  stack.pop_back();
  if (auto* merged = dynamic_cast<VXMergedAction*>(top.get()); merged && !stack.empty()) {
    trace("end (merge)");
    if (merged->isInTransaction()) trace("transactionEnd() implicit due to merge");
    merged->foldInto(*stack.back());
    return;
  }
  if (traceEnabled()) {
    std::ostream& line = traceStream() << "end (sending)";
    if (dynamic_cast<const VXChannelAction*>(top.get())) {
      line << ", channel " << top->getChannel();
    }
    line << '\n';
  }
  sendAction(*top);
}

bool VXCommandListBeginEndBuilder::rollback(int level) {
  Stack& stack = currentStack();
  const int before = static_cast<int>(stack.size());
  if (before <= level || stack.empty()) return true;
  if (traceEnabled()) traceStream() << "rollback " << level << " " << before << '\n';
  while (static_cast<int>(stack.size()) > level) stack.pop_back();
  return false;
}

int VXCommandListBeginEndBuilder::flush(int level) {
  trace("flush");
  while (depth() > level) end();
  return depth();
}

void VXCommandListBeginEndBuilder::clearOpenActions() { openActions_.clear(); }
