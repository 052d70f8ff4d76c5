#pragma once
// Groups records into actions with begin/end brackets. Each channel has a stack of open
// actions: outside any bracket a record is sent at once in an action of its own; inside, it
// joins the innermost open action, and the outermost one is sent when it is ended. A nested
// begin opens a merged action that is folded into its parent at its end, closing a transaction
// it left open.
//
// Threads: the channel is per calling thread (set with setChannel, else the default channel).
// Threads on different channels build independent stacks: the map of stacks is locked, a
// channel's stack is not, so one channel is used by one thread at a time. clearOpenActions may
// come from any thread (a session closed by its event loop): it marks every open action
// discarded, and each channel's thread drops them, unsent, at its next use of the builder; an
// action being sent at that moment is still sent.
//
// Exceptions: whatever sendAction throws passes to the caller. A failed end() leaves the action
// open and the depth unchanged; a record sent alone is destroyed on the way out. Trace lines go to
// traceStream() when traceEnabled() says so.
#include <atomic>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <ostream>
#include <string_view>
#include <unordered_map>

#include "commands/action.h"
#include "commands/command_list_builder.h"

class VXCommandListBeginEndBuilder : public VXCommandListBuilder {
 public:
  VXCommandListBeginEndBuilder();
  ~VXCommandListBeginEndBuilder() override;

  // Sets the calling thread's channel.
  void setChannel(uint32_t channel);
  // The calling thread's channel if it set one, else the default channel.
  uint32_t getChannel() const;
  void setDefaultChannel(uint32_t channel) { defaultChannel_.store(channel, std::memory_order_relaxed); }
  uint32_t getDefaultChannel() const { return defaultChannel_.load(std::memory_order_relaxed); }

  void addCommand(std::unique_ptr<VXCommand> record) override;
  // Opens an action on the current channel; nested inside an open one, a merged action. Returns
  // the depth before the call.
  virtual int beginImmediate(bool nested);
  // Closes the innermost open action: sends it when it is the outermost, else folds or sends it.
  virtual void end();
  // Discards open actions, unsent, until level remain; true when nothing was discarded. A
  // negative level counts as 0.
  virtual bool rollback(int level);
  // Ends open actions until at most level remain; returns the depth after. A negative level
  // counts as 0.
  virtual int flush(int level);
  // Sends a finished action as it is, past the open actions (a replayed command list).
  void sendWholeAction(const VXAction& action) { sendAction(action); }
  // The number of open actions of the current channel.
  int depth() const;
  // Discards every open action of every channel without sending it (see the class comment).
  void clearOpenActions();

 protected:
  // Puts the finished action on the wire. The builder keeps it and destroys it afterwards.
  virtual void sendAction(const VXAction& action) = 0;
  virtual bool traceEnabled() const = 0;
  // The stream for one trace line; the builder writes the text and the line end.
  virtual std::ostream& traceStream() = 0;

 private:
  using Stack = std::deque<std::unique_ptr<VXAction>>;
  // A channel's open actions and the clear generation they belong to; both touched only by the
  // channel's thread.
  struct Channel {
    Stack actions;
    uint64_t generation = 0;
  };

  // The current channel's stack, emptied first when clearOpenActions came since its last use.
  Stack& currentStack();
  std::unique_ptr<VXAction> newAction(uint32_t channel) const;
  void trace(std::string_view text);

  // Nodes of an unordered_map stay put when it grows, so a stack found under the lock may be
  // used after it.
  mutable std::mutex channelsLock_;
  std::unordered_map<uint32_t, Channel> openActions_;
  std::atomic<uint64_t> clearGeneration_{0};
  std::atomic<uint32_t> defaultChannel_{0};
  // Identifies this builder in the per-thread channel slots; never reused within a process.
  const uint64_t id_;
};
