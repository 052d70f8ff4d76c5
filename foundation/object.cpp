#include "foundation/object.h"

#include <algorithm>
#include <mutex>

#include "foundation/class.h"
#include "foundation/errlog.h"
#include "foundation/exception.h"

namespace {
// The one lock of every destroy-handler list.
std::mutex& destroyHandlerLock() {
  static std::mutex lock;
  return lock;
}
}  // namespace

AFCDieBase::~AFCDieBase() {
  // Handlers are added to live objects only, so an object that never had one (most objects)
  // is left without taking the process-wide lock.
  if (!handlers_) return;
  std::vector<Entry> handlers;
  {
    std::lock_guard guard(destroyHandlerLock());
    handlers.swap(*handlers_);
  }
  for (const Entry& entry : handlers) entry.handler(this, entry.cookie);
}

void AFCDieBase::addDestroyHandler(DestroyHandler handler, void* cookie) {
  std::lock_guard guard(destroyHandlerLock());
  if (!handlers_) handlers_ = std::make_unique<std::vector<Entry>>();
  handlers_->push_back({handler, cookie});
}

void AFCDieBase::removeDestroyHandler(DestroyHandler handler, void* cookie, bool all) {
  bool removed = false;
  {
    std::lock_guard guard(destroyHandlerLock());
    if (handlers_) {
      auto& list = *handlers_;
      for (auto it = list.begin(); it != list.end();) {
        if (it->handler == handler && it->cookie == cookie) {
          it = list.erase(it);
          removed = true;
          if (!all) break;
        } else {
          ++it;
        }
      }
    }
  }
  if (!removed) {
    AFC_REPORT(AFC_ERRLOG_ERROR, "libAFC",
               "AFCDieBase::removeDestroyHandler failed, potentional corruption");
  }
}

std::size_t AFCDieBase::destroyHandlerCount() const {
  std::lock_guard guard(destroyHandlerLock());
  return handlers_ ? handlers_->size() : 0;
}

AFCObject* AFCObject::clone() const { throw AFCCloneNotImplementedException(); }

const AFCClass* AFCObject::getClass() const { return &staticClass(); }

uint32_t AFCObject::getHashValue() const {
  return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(this) >> 3);
}

std::string AFCObject::toString() const { return getClass()->getName(); }

const AFCClass& AFCObject::staticClass() {
  static const AFCClass& record = (new AFCClassEx("AFCObject", nullptr))->registerClass();
  return record;
}

AFCListener::~AFCListener() {
  for (int slot = 0; slot < 2; ++slot) setWatched(slot, nullptr);
}

void AFCListener::setWatched(int slot, AFCDieBase* object) {
  AFCDieBase*& watched = watched_[slot];
  if (watched == object) return;
  if (watched != nullptr) watched->removeDestroyHandler(&onWatchedDestroyed, &watched);
  watched = object;
  if (watched != nullptr) watched->addDestroyHandler(&onWatchedDestroyed, &watched);
}

void AFCListener::onWatchedDestroyed(AFCDieBase*, void* cookie) {
  *static_cast<AFCDieBase**>(cookie) = nullptr;
}
