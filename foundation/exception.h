#pragma once
// The foundation's exception tree. Every exception renders its text through the virtual
// print operation; what() renders it once into the exception itself, so the text lives as long
// as the exception. Like any exception object, one is not shared between threads unlocked.
#include <cstdint>
#include <exception>
#include <optional>
#include <string>

class AFCException : public std::exception {
public:
  AFCException() = default;
  explicit AFCException(std::string message) : message_(std::move(message)) {}

  // Appends this exception's text to out.
  virtual void print(std::string& out) const;
  // The text as a fresh string.
  std::string toString() const;
  const char* what() const noexcept override;
  const std::string& getMessage() const noexcept { return message_; }

protected:
  std::string message_;

private:
  mutable std::optional<std::string> rendered_;  // what()'s text, made on its first call
};

// An exception family whose text is its message, with the constructors of its base.
#define AFC_DECLARE_EXCEPTION(Name, Base) \
  class Name : public Base {              \
  public:                                 \
    using Base::Base;                     \
  }

// Structured-exception (signal) translation: "Runtime exception " and the code's name.
class AFCRunTimeException : public AFCException {
public:
  explicit AFCRunTimeException(uint32_t code, uint64_t codeAddress = 0, uint64_t dataAddress = 0)
      : code_(code), codeAddress_(codeAddress), dataAddress_(dataAddress) {}
  void print(std::string& out) const override;
  uint32_t getCode() const noexcept { return code_; }
  // The name of a Windows structured-exception code, or nullptr when it has none.
  static const char* codeName(uint32_t code);

private:
  uint32_t code_;
  uint64_t codeAddress_;
  uint64_t dataAddress_;
};

class AFCIllegalArgumentException : public AFCException {
public:
  using AFCException::AFCException;
  void print(std::string& out) const override;
};

// Shares its words with AFCIllegalArgumentException: callers match on them.
class AFCIllegalStateException : public AFCException {
public:
  using AFCException::AFCException;
  void print(std::string& out) const override;
};

// "Null pointer", then " to " and the name of what was null.
class AFCNullPointerException : public AFCException {
public:
  using AFCException::AFCException;
  void print(std::string& out) const override;
};

class AFCRangeException : public AFCException {
public:
  AFCRangeException(int64_t index, int64_t minimum, int64_t maximum)
      : index_(index), min_(minimum), max_(maximum) {}
  void print(std::string& out) const override;

private:
  int64_t index_, min_, max_;
};

AFC_DECLARE_EXCEPTION(AFCAccessViolation, AFCException);

class AFCInvalidArgumentCountException : public AFCException {
public:
  AFCInvalidArgumentCountException() : AFCException("Invalid argument count") {}
};

// "Invalid argument type", then the expected and received type names when known.
class AFCInvalidArgumentTypeException : public AFCException {
public:
  AFCInvalidArgumentTypeException(std::string expected = {}, std::string received = {})
      : expected_(std::move(expected)), received_(std::move(received)) {}
  void print(std::string& out) const override;

private:
  std::string expected_, received_;
};

class AFCCloneNotImplementedException : public AFCException {
public:
  AFCCloneNotImplementedException() : AFCException("Clone not implemented") {}
};
