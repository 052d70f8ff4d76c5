#pragma once
// A move-only owner of one platform handle (socket, descriptor, kernel handle, window). The
// traits name the handle type, its invalid value and how it is closed:
//   struct SocketTraits {
//     using Type = AFCSocketHandle;
//     static Type invalid() noexcept;
//     static void close(Type handle) noexcept;
//   };
// Not thread safe; closing never throws.
#include <utility>

template <class Traits>
class AFCUniqueHandle {
 public:
  using Type = typename Traits::Type;

  AFCUniqueHandle() noexcept = default;
  explicit AFCUniqueHandle(Type handle) noexcept : handle_(handle) {}
  ~AFCUniqueHandle() { reset(); }
  AFCUniqueHandle(AFCUniqueHandle&& other) noexcept : handle_(other.release()) {}
  AFCUniqueHandle& operator=(AFCUniqueHandle&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  AFCUniqueHandle(const AFCUniqueHandle&) = delete;
  AFCUniqueHandle& operator=(const AFCUniqueHandle&) = delete;

  Type get() const noexcept { return handle_; }
  bool valid() const noexcept { return handle_ != Traits::invalid(); }
  // Gives up ownership without closing.
  Type release() noexcept { return std::exchange(handle_, Traits::invalid()); }
  void reset(Type handle = Traits::invalid()) noexcept {
    const Type old = std::exchange(handle_, handle);
    if (old != Traits::invalid()) Traits::close(old);
  }

 private:
  Type handle_ = Traits::invalid();
};
