#include "tools/vxctl/command_file.h"

#include <array>
#include <cctype>
#include <charconv>

#include "tools/vxctl/value_syntax.h"

namespace {

struct CommandShape {
  std::string_view name;
  VXCtlCommand::Kind kind;
  std::string_view usage;  // the words after the name
  std::size_t wordCount;   // including the name
};

constexpr std::array<CommandShape, 7> kShapes = {{
    {"set", VXCtlCommand::Kind::kSet, "ADDRESS ATTR VALUE", 4},
    {"create", VXCtlCommand::Kind::kCreate, "TYPE NAME PARENT", 4},
    {"delete", VXCtlCommand::Kind::kDelete, "ADDRESS", 2},
    {"load", VXCtlCommand::Kind::kLoad, "SCENE PARENT NODE", 4},
    {"message", VXCtlCommand::Kind::kMessage, "TEXT", 2},
    {"wait", VXCtlCommand::Kind::kWait, "MILLISECONDS", 2},
    {"callback", VXCtlCommand::Kind::kCallback, "", 1},
}};

std::string unquoteWord(const std::string& word) {
  return !word.empty() && word.front() == '"' ? vxctlUnquote(word) : word;
}

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// The end of the quoted part that starts at begin (the index after its closing quote).
std::size_t skipQuoted(std::string_view line, std::size_t begin) {
  for (std::size_t i = begin + 1; i < line.size(); ++i) {
    if (line[i] == '\\') {
      ++i;
    } else if (line[i] == '"') {
      return i + 1;
    }
  }
  throw VXCtlSyntaxException("Unterminated string: " + std::string(line.substr(begin)));
}

std::size_t skipBracketed(std::string_view line, std::size_t begin) {
  const std::size_t close = line.find(']', begin);
  if (close == std::string_view::npos) {
    throw VXCtlSyntaxException("Unterminated vector: " + std::string(line.substr(begin)));
  }
  return close + 1;
}

}  // namespace

std::vector<std::string> vxctlSplitWords(std::string_view line) {
  std::vector<std::string> words;
  std::size_t i = 0;
  while (true) {
    while (i < line.size() && isBlank(line[i])) ++i;
    if (i == line.size()) return words;
    const std::size_t begin = i;
    while (i < line.size() && !isBlank(line[i])) {
      if (line[i] == '"') {
        i = skipQuoted(line, i);
      } else if (line[i] == '[') {
        i = skipBracketed(line, i);
      } else {
        ++i;
      }
    }
    words.emplace_back(line.substr(begin, i - begin));
  }
}

VXCtlCommand vxctlParseCommand(const std::vector<std::string>& words) {
  if (words.empty()) throw VXCtlSyntaxException("Empty command");
  for (const CommandShape& shape : kShapes) {
    if (words[0] != shape.name) continue;
    if (words.size() != shape.wordCount) {
      throw VXCtlSyntaxException("Usage: " + std::string(shape.name) +
                                 (shape.usage.empty() ? "" : " ") + std::string(shape.usage));
    }
    VXCtlCommand command;
    command.kind = shape.kind;
    const std::size_t last = shape.kind == VXCtlCommand::Kind::kSet ? 3 : words.size();
    for (std::size_t i = 1; i < last; ++i) command.args.push_back(unquoteWord(words[i]));
    if (shape.kind == VXCtlCommand::Kind::kSet) command.value = vxctlParseValue(words[3]);
    if (shape.kind == VXCtlCommand::Kind::kWait) {
      const std::string& text = words[1];
      auto [end, error] =
          std::from_chars(text.data(), text.data() + text.size(), command.milliseconds);
      if (error != std::errc() || end != text.data() + text.size() || command.milliseconds < 0) {
        throw VXCtlSyntaxException("Not a time in milliseconds: \"" + text + "\"");
      }
    }
    return command;
  }
  throw VXCtlSyntaxException("Unknown command \"" + words[0] +
                             "\" (set, create, delete, load, message, wait, callback)");
}

std::vector<VXCtlCommand> vxctlParseCommandFile(std::istream& in, const std::string& fileName) {
  std::vector<VXCtlCommand> commands;
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string::npos || line[first] == '#') continue;
    try {
      commands.push_back(vxctlParseCommand(vxctlSplitWords(line)));
    } catch (const VXCtlSyntaxException& e) {
      throw VXCtlSyntaxException(fileName + ":" + std::to_string(number) + ": " + e.getMessage());
    }
  }
  return commands;
}

int32_t vxctlApply(const VXCtlCommand& command, VXCommandListBuilder& builder) {
  const std::vector<std::string>& a = command.args;
  switch (command.kind) {
    case VXCtlCommand::Kind::kSet:
      builder.setAttribute(a[0], a[1], std::unique_ptr<AFCAttribute>(command.value->clone()));
      break;
    case VXCtlCommand::Kind::kCreate:
      builder.createNode(a[0], a[1], a[2]);
      break;
    case VXCtlCommand::Kind::kDelete:
      builder.deleteNode(a[0]);
      break;
    case VXCtlCommand::Kind::kLoad:
      builder.loadScene(a[0], a[1], a[2]);
      break;
    case VXCtlCommand::Kind::kMessage:
      builder.sendMessage(a[0]);
      break;
    case VXCtlCommand::Kind::kWait:
      builder.wait(command.milliseconds);
      break;
    case VXCtlCommand::Kind::kCallback:
      return builder.commandCallback();
  }
  return 0;
}

std::vector<int32_t> vxctlSend(const std::vector<VXCtlCommand>& commands,
                               VXCommandListBeginEndBuilder& builder,
                               const std::optional<std::string>& transaction) {
  std::vector<int32_t> callbacks;
  const int level = builder.beginImmediate(false);
  try {
    if (transaction) builder.transactionBegin(*transaction, false);
    for (const VXCtlCommand& command : commands) {
      if (const int32_t id = vxctlApply(command, builder)) callbacks.push_back(id);
    }
    if (transaction) builder.transactionEnd();
  } catch (...) {
    builder.rollback(level);
    throw;
  }
  builder.end();
  return callbacks;
}
