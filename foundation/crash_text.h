#pragma once
// Text composed in a fixed buffer without allocating, as the crash handlers must: a fault may
// strike while the heap's lock is held. Text beyond the buffer's end is cut; the buffer always
// stays zero-terminated. Not thread safe; one per use.
#include <cstddef>
#include <cstdint>
#include <cstring>

class AFCCrashText {
 public:
  // size counts the terminating zero and is at least 1.
  AFCCrashText(char* out, std::size_t size) : begin_(out), out_(out), end_(out + size - 1) {
    *out_ = '\0';
  }
  void text(const char* from, const char* to) {
    while (from != to && out_ != end_) *out_++ = *from++;
    *out_ = '\0';
  }
  void text(const char* zeroEnded) { text(zeroEnded, zeroEnded + std::strlen(zeroEnded)); }
  // A non-negative number in decimal with at least minDigits digits (a negative one as 0).
  void number(long long value, int minDigits = 1) { digits(value < 0 ? 0 : value, 10, minDigits); }
  // "0x" and the value in lower-case hexadecimal.
  void hex(std::uintptr_t value) {
    text("0x");
    digits(value, 16, 1);
  }
  const char* data() const { return begin_; }
  std::size_t length() const { return static_cast<std::size_t>(out_ - begin_); }

 private:
  void digits(unsigned long long value, unsigned base, int minDigits) {
    char buffer[24];
    char* const last = buffer + sizeof buffer;
    char* first = last;
    do {
      *--first = "0123456789abcdef"[value % base];
      value /= base;
    } while (value != 0 || last - first < minDigits);
    text(first, last);
  }

  char* begin_;
  char* out_;
  char* end_;
};
