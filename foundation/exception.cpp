#include "foundation/exception.h"

#include <cstdio>
#include <utility>

void AFCException::print(std::string& out) const { out += message_; }

std::string AFCException::toString() const {
  std::string text;
  print(text);
  return text;
}

const char* AFCException::what() const noexcept {
  if (!rendered_) {
    try {
      rendered_ = toString();
    } catch (...) {
      return "AFCException";
    }
  }
  return rendered_->c_str();
}

namespace {
struct CodeName {
  uint32_t code;
  const char* name;
};
constexpr CodeName kCodeNames[] = {
    {0xC0000005u, "ACCESS_VIOLATION"},      {0x80000002u, "DATATYPE_MISALIGNMENT"},
    {0x80000003u, "BREAKPOINT"},            {0x80000004u, "SINGLE_STEP"},
    {0xC000008Cu, "ARRAY_BOUNDS_EXCEEDE"},  {0xC000008Du, "FLT_DENORMAL_OPERAND"},
    {0xC000008Eu, "FLT_DIVIDE_BY_ZERO"},    {0xC000008Fu, "FLT_INEXACT_RESULT"},
    {0xC0000090u, "FLT_INVALID_OPERATION"}, {0xC0000091u, "FLT_OVERFLOW"},
    {0xC0000092u, "FLT_STACK_CHECK"},       {0xC0000093u, "FLT_UNDERFLOW"},
    {0xC0000094u, "INT_DIVIDE_BY_ZERO"},    {0xC0000095u, "INT_OVERFLOW"},
    {0xC0000096u, "PRIV_INSTRUCTION"},      {0xC0000006u, "IN_PAGE_ERROR"},
    {0xC000001Du, "ILLEGAL_INSTRUCTION"},   {0xC0000025u, "NONCONTINUABLE_EXCEPTION"},
    {0xC00000FDu, "STACK_OVERFLOW"},        {0xC0000026u, "INVALID_DISPOSITION"},
    {0x80000001u, "GUARD_PAGE"},            {0xC0000008u, "INVALID_HANDLE"},
    {0xC06D007Eu, "MODULE_NOT_FOUND"},      {0xC06D007Fu, "PROCEDURE_NOT_FOUND"},
};

std::string hex(uint64_t value) {
  char text[32];
  std::snprintf(text, sizeof text, "%llX", static_cast<unsigned long long>(value));
  return text;
}
}  // namespace

const char* AFCRunTimeException::codeName(uint32_t code) {
  for (const auto& entry : kCodeNames) {
    if (entry.code == code) return entry.name;
  }
  return nullptr;
}

void AFCRunTimeException::print(std::string& out) const {
  out += "Runtime exception ";
  if (const char* name = codeName(code_)) {
    out += name;
  } else {
    out += "CODE " + hex(code_);
  }
  if (code_ == 0xC0000005u) {
    out += " CodeAddress=" + hex(codeAddress_) + " DataAddress=" + hex(dataAddress_);
  }
}

namespace {
void printWithDetail(std::string& out, const char* words, const std::string& detail) {
  out += words;
  if (!detail.empty()) out += ", " + detail;
}
}  // namespace

void AFCIllegalArgumentException::print(std::string& out) const {
  printWithDetail(out, "Illegal Argument Exception", message_);
}

void AFCIllegalStateException::print(std::string& out) const {
  printWithDetail(out, "Illegal Argument Exception", message_);
}

void AFCNullPointerException::print(std::string& out) const {
  out += "Null pointer";
  if (!message_.empty()) out += " to " + message_;
}

void AFCRangeException::print(std::string& out) const {
  out += "Index out of range (index=" + std::to_string(index_) + ", min=" + std::to_string(min_) +
         ", max=" + std::to_string(max_) + ")";
}

void AFCInvalidArgumentTypeException::print(std::string& out) const {
  out += "Invalid argument type";
  if (!expected_.empty()) out += ", expected " + expected_;
  if (!received_.empty()) out += ", received " + received_;
}
