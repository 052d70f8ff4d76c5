#pragma once
// A script function and an event sink that write what they are called with into one log, so a
// test sees the order of handler calls and events: "NAME(ARG,...)" for a handler, "NAME.EVENT
// ARG ..." for a sink. A handler can be told to fail.
#include <string>
#include <vector>

#include "automation/script_events.h"

inline std::string scriptText(const ScriptValue& value) {
  switch (value.getKind()) {
    case ScriptValue::Kind::Text:
      return ScriptValue::toBytes(value.getText());
    case ScriptValue::Kind::Integer:
      return std::to_string(value.getInt32());
    default:
      return "?";
  }
}

struct RecordingHandler : ScriptHandler {
  RecordingHandler(std::vector<std::string>* log, std::string name, bool fails = false)
      : log_(log), name_(std::move(name)), fails_(fails) {}
  bool invoke(std::span<const ScriptValue> args) override {
    std::string line = name_ + "(";
    for (const ScriptValue& arg : args) line += (line.back() == '(' ? "" : ",") + scriptText(arg);
    log_->push_back(line + ")");
    return !fails_;
  }

 private:
  std::vector<std::string>* log_;
  std::string name_;
  bool fails_;
};

struct RecordingSink : CmdEventSink {
  RecordingSink(std::vector<std::string>* log, std::string name)
      : log_(log), name_(std::move(name)) {}
  void onCommand(int32_t cmd) override { note("command " + std::to_string(cmd)); }
  void onDisconnect() override { note("disconnect"); }
  void onPickResult(const std::u16string& xml) override { note("pick " + text(xml)); }
  void onZoneChange(const std::u16string& zone, int32_t state) override {
    note("zone " + text(zone) + " " + std::to_string(state));
  }
  void onMessage(const std::u16string& message) override { note("message " + text(message)); }

 private:
  static std::string text(const std::u16string& value) { return ScriptValue::toBytes(value); }
  void note(const std::string& what) { log_->push_back(name_ + "." + what); }
  std::vector<std::string>* log_;
  std::string name_;
};
