#include "foundation/object.h"

#include <gtest/gtest.h>

#include "foundation/class.h"
#include "foundation/exception.h"

namespace {

class Watched : public AFCObject {};

void countDeath(AFCDieBase*, void* cookie) { ++*static_cast<int*>(cookie); }

TEST(DieBase, CallsEveryDestroyHandlerWithItsCookie) {
  int deaths = 0;
  {
    Watched w;
    w.addDestroyHandler(&countDeath, &deaths);
    w.addDestroyHandler(&countDeath, &deaths);
  }
  EXPECT_EQ(deaths, 2);
}

TEST(DieBase, RemovesTheFirstMatchOrEveryMatchAndLeavesTheListAloneForAnUnknownOne) {
  int a = 0, b = 0;
  Watched w;
  w.addDestroyHandler(&countDeath, &a);
  w.addDestroyHandler(&countDeath, &b);
  w.addDestroyHandler(&countDeath, &a);
  w.removeDestroyHandler(&countDeath, &a);
  EXPECT_EQ(w.destroyHandlerCount(), 2u);
  w.addDestroyHandler(&countDeath, &a);
  w.removeDestroyHandler(&countDeath, &a, true);
  EXPECT_EQ(w.destroyHandlerCount(), 1u);
  w.removeDestroyHandler(&countDeath, nullptr);  // unknown: logs the corruption line only
  EXPECT_EQ(w.destroyHandlerCount(), 1u);
}

TEST(DieBase, CopiesDoNotInheritHandlers) {
  int deaths = 0;
  Watched original;
  original.addDestroyHandler(&countDeath, &deaths);
  { Watched copy(original); }
  EXPECT_EQ(deaths, 0);
}

TEST(Listener, ClearsTheWatchedPointerWhenTheObjectDies) {
  AFCListener listener;
  auto* w = new Watched();
  Watched other;
  listener.setWatched(0, w);
  listener.setWatched(1, &other);
  delete w;
  EXPECT_EQ(listener.getWatched(0), nullptr);
  EXPECT_EQ(listener.getWatched(1), &other);
  listener.setWatched(1, nullptr);
  EXPECT_EQ(other.destroyHandlerCount(), 0u);
}

TEST(Listener, RemovesItsHandlersWhenItDies) {
  Watched w;
  {
    AFCListener listener;
    listener.setWatched(0, &w);
    EXPECT_EQ(w.destroyHandlerCount(), 1u);
  }
  EXPECT_EQ(w.destroyHandlerCount(), 0u);
}

TEST(Object, CloneIsNotImplementedByDefault) {
  Watched w;
  EXPECT_THROW(w.clone(), AFCCloneNotImplementedException);
  EXPECT_EQ(w.getClass()->getName(), "AFCObject");
}

class Counted : public AFCShareBase {
 public:
  explicit Counted(int* deaths) : deaths_(deaths) {}
  ~Counted() override { ++*deaths_; }

 private:
  int* deaths_;
};

TEST(ShareBase, TheLastHolderFreesTheObject) {
  int deaths = 0;
  AFCRef<Counted> first(new Counted(&deaths));
  {
    AFCRef<Counted> second = first;
    EXPECT_EQ(first->refCount(), 2);
  }
  EXPECT_EQ(deaths, 0);
  first.reset();
  EXPECT_EQ(deaths, 1);
}

}  // namespace
