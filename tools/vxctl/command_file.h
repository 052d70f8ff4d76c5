#pragma once
// vxctl's command lines, from a command file or the command line, and how they become builder
// operations.
//
// A file holds one command a line; blank lines and lines whose first non-blank character is '#'
// are ignored. Words are separated by blanks; a "quoted" word may hold blanks (escapes as in the
// value syntax), and a [bracketed] part of a word may too, so "color:[1, 0, 0, 1]" is one word.
// The commands:
//   set ADDRESS ATTR VALUE      create TYPE NAME PARENT     delete ADDRESS
//   load SCENE PARENT NODE      message TEXT                wait MILLISECONDS
//   callback
// Names and texts may be quoted; VALUE follows the value syntax (value_syntax.h).
//
// The whole file is parsed before anything is sent: the first bad line throws
// VXCtlSyntaxException "FILE:LINE: reason" and nothing reaches the builder.
#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands/begin_end_builder.h"
#include "foundation/attribute.h"

struct VXCtlCommand {
  enum class Kind { kSet, kCreate, kDelete, kLoad, kMessage, kWait, kCallback };

  Kind kind = Kind::kSet;
  // The words after the command, unquoted (for kSet: address and attribute name).
  std::vector<std::string> args;
  // kSet only.
  std::unique_ptr<AFCAttribute> value;
  // kWait only.
  int32_t milliseconds = 0;
};

// The words of one line, as written (quotes kept); throws for an unterminated quote or bracket.
std::vector<std::string> vxctlSplitWords(std::string_view line);

// One command from its words (the first is the command's name); throws VXCtlSyntaxException.
VXCtlCommand vxctlParseCommand(const std::vector<std::string>& words);

// Every command of the stream; fileName names it in errors.
std::vector<VXCtlCommand> vxctlParseCommandFile(std::istream& in, const std::string& fileName);

// Adds the command to the builder; returns the callback id of kCallback, else 0.
int32_t vxctlApply(const VXCtlCommand& command, VXCommandListBuilder& builder);

// Sends the commands as one action: one begin/end bracket, and inside it one transaction when
// transaction is given. When the builder refuses a command, the open action is discarded unsent
// and the exception passes on. Returns the callback ids in order.
std::vector<int32_t> vxctlSend(const std::vector<VXCtlCommand>& commands,
                               VXCommandListBeginEndBuilder& builder,
                               const std::optional<std::string>& transaction);
