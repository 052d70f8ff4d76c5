#pragma once
// The root of the domain classes: destroy notification (AFCDieBase), the reflective root
// (AFCObject), shared reference-counted objects (AFCShareBase with AFCRef) and listeners that
// watch other objects' lifetimes (AFCListener).
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class AFCClass;

// Calls every registered destroy handler when the object dies. Adding and removing handlers
// runs under one process-wide lock shared by all objects.
class AFCDieBase {
public:
  using DestroyHandler = void (*)(AFCDieBase* dying, void* cookie);

  AFCDieBase() = default;
  AFCDieBase(const AFCDieBase&) {}  // handlers watch an identity, they are never copied
  AFCDieBase& operator=(const AFCDieBase&) { return *this; }

  void addDestroyHandler(DestroyHandler handler, void* cookie);
  // Unlinks the first matching entry (every one with all); logs when nothing matched.
  void removeDestroyHandler(DestroyHandler handler, void* cookie, bool all = false);
  std::size_t destroyHandlerCount() const;

protected:
  virtual ~AFCDieBase();

private:
  struct Entry {
    DestroyHandler handler;
    void* cookie;
  };
  std::unique_ptr<std::vector<Entry>> handlers_;  // created on first add
};

class AFCObject : public virtual AFCDieBase {
public:
  ~AFCObject() override = default;
  // A new copy owned by the caller; throws AFCCloneNotImplementedException by default.
  virtual AFCObject* clone() const;
  virtual const AFCClass* getClass() const;
  virtual uint32_t getHashValue() const;
  virtual std::string toString() const;

  static const AFCClass& staticClass();
};

// A shared object freed by its last holder. The count is atomic; a new object starts at 0 and
// is usually held through AFCRef.
class AFCShareBase {
public:
  void addRef() const noexcept { refs_.fetch_add(1, std::memory_order_relaxed); }
  void release() const noexcept {
    if (refs_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
  }
  int32_t refCount() const noexcept { return refs_.load(std::memory_order_relaxed); }

protected:
  AFCShareBase() = default;
  AFCShareBase(const AFCShareBase&) {}
  AFCShareBase& operator=(const AFCShareBase&) { return *this; }
  virtual ~AFCShareBase() = default;

private:
  mutable std::atomic<int32_t> refs_{0};
};

// Marks objects with a single owner.
class AFCUniqueBase {
protected:
  AFCUniqueBase() = default;
  ~AFCUniqueBase() = default;
};

// Intrusive holder of an AFCShareBase object.
template <class T>
class AFCRef {
public:
  AFCRef() = default;
  AFCRef(T* object) : p_(object) { if (p_) p_->addRef(); }  // NOLINT: implicit by design
  AFCRef(const AFCRef& other) : AFCRef(other.p_) {}
  AFCRef(AFCRef&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  template <class U>
  AFCRef(const AFCRef<U>& other) : AFCRef(other.get()) {}
  ~AFCRef() { if (p_) p_->release(); }
  AFCRef& operator=(AFCRef other) noexcept {
    std::swap(p_, other.p_);
    return *this;
  }
  T* get() const noexcept { return p_; }
  T* operator->() const noexcept { return p_; }
  T& operator*() const noexcept { return *p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }
  void reset() { AFCRef().swap(*this); }
  void swap(AFCRef& other) noexcept { std::swap(p_, other.p_); }

private:
  T* p_ = nullptr;
};

// Keeps two watched-object pointers; each is cleared when its object dies, so a listener never
// calls a dead object.
class AFCListener {
public:
  AFCListener() = default;
  AFCListener(const AFCListener&) = delete;
  AFCListener& operator=(const AFCListener&) = delete;
  virtual ~AFCListener();

  void setWatched(int slot, AFCDieBase* object);
  AFCDieBase* getWatched(int slot) const { return watched_[slot]; }

private:
  static void onWatchedDestroyed(AFCDieBase* dying, void* cookie);
  AFCDieBase* watched_[2] = {nullptr, nullptr};
};
