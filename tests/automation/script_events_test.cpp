#include "automation/script_events.h"

#include <gtest/gtest.h>

#include <functional>

#include "tests/automation/script_recorder.h"

namespace {

// A handler that logs its call, then changes the list it is called from. It reads its own
// members after the change, so a list that freed it mid-call shows under the address sanitizer.
struct ChangingHandler : ScriptHandler {
  ChangingHandler(std::vector<std::string>* log, std::function<void()> change)
      : log_(log), change_(std::move(change)) {}
  bool invoke(std::span<const ScriptValue>) override {
    std::function<void()> change = std::move(change_);  // once
    if (change) change();
    log_->push_back(name_);
    return true;
  }
  std::vector<std::string>* log_;
  std::function<void()> change_;
  std::string name_ = "changer";
};

TEST(ScriptHandlers, ACallGoesOnOverTheListAsItWasAndTheNextCallSeesTheChange) {
  const struct {
    const char* name;
    std::function<void(ScriptHandlers&, std::vector<std::string>*)> change;
    std::vector<std::string> expected;  // two calls
  } cases[] = {
      {"cleared", [](ScriptHandlers& h, auto*) { h.replace(nullptr); }, {"changer", "after()"}},
      {"replaced",
       [](ScriptHandlers& h, auto* log) {
         h.replace(std::make_shared<RecordingHandler>(log, "new"));
         h.replace(std::make_shared<RecordingHandler>(log, "newer"));
       },
       {"changer", "after()", "newer()"}},
      {"added",
       [](ScriptHandlers& h, auto* log) { h.add(std::make_shared<RecordingHandler>(log, "new")); },
       {"changer", "after()", "changer", "after()", "new()"}},
  };
  for (const auto& c : cases) {
    std::vector<std::string> log;
    ScriptHandlers handlers;
    handlers.add(std::make_shared<ChangingHandler>(&log, [&] { c.change(handlers, &log); }));
    handlers.add(std::make_shared<RecordingHandler>(&log, "after"));
    EXPECT_TRUE(handlers.invokeAll({}));
    handlers.invokeAll({});
    EXPECT_EQ(log, c.expected) << c.name;
  }
}

TEST(CmdEventSinks, ASinkDisconnectedDuringAnEventStillGetsThatEventOnly) {
  std::vector<std::string> log;
  CmdEventSinks sinks;
  uint32_t second = 0;
  struct Disconnecting : RecordingSink {
    using RecordingSink::RecordingSink;
    void onDisconnect() override {
      RecordingSink::onDisconnect();
      sinks->disconnect(*cookie);
    }
    CmdEventSinks* sinks = nullptr;
    uint32_t* cookie = nullptr;
  };
  auto first = std::make_shared<Disconnecting>(&log, "a");
  first->sinks = &sinks;
  first->cookie = &second;
  sinks.connect(first);
  second = sinks.connect(std::make_shared<RecordingSink>(&log, "b"));
  first.reset();
  sinks.fire([](CmdEventSink& sink) { sink.onDisconnect(); });
  sinks.fire([](CmdEventSink& sink) { sink.onCommand(1); });
  EXPECT_EQ(log, (std::vector<std::string>{"a.disconnect", "b.disconnect", "a.command 1"}));
  EXPECT_FALSE(sinks.disconnect(second));
}

}  // namespace
