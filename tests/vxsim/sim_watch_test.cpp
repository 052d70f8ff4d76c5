#include "tools/vxsim/sim_watch.h"

#include <gtest/gtest.h>

#include <map>

#include "tools/vxsim/sim_connection.h"
#include "tools/vxsim/sim_hub.h"

namespace {

// Values by target, as the scene would give them.
struct Values {
  std::map<std::string, std::string> byTarget;
  VXSimWatches::Reader reader() {
    return [this](const std::string& target) { return byTarget[target]; };
  }
};

std::vector<std::string> textsOf(const std::vector<VXSimWatches::Change>& changes) {
  std::vector<std::string> texts;
  for (const auto& change : changes) texts.push_back(change.second);
  return texts;
}

TEST(SimWatches, AChangeIsToldOnceToEachWatcherInRegistrationOrder) {
  VXSimHub hub;
  VXSimConnection first(hub, 1);
  VXSimConnection second(hub, 2);
  Values values{{{"a.X", "1"}, {"b.Y", "2"}}};
  VXSimWatches watches;
  watches.add(second, "a.X", "1");
  watches.add(first, "a.X", "1");
  watches.add(first, "b.Y", "2");
  EXPECT_TRUE(watches.takeChanges(values.reader()).empty());

  values.byTarget["a.X"] = "5";
  const auto changes = watches.takeChanges(values.reader());
  ASSERT_EQ(changes.size(), 2u);
  EXPECT_EQ(changes[0].first, &second);
  EXPECT_EQ(changes[1].first, &first);
  EXPECT_EQ(textsOf(changes), (std::vector<std::string>{"a.X=5", "a.X=5"}));
  EXPECT_TRUE(watches.takeChanges(values.reader()).empty());
}

TEST(SimWatches, ASecondRegistrationOnlyUpdatesTheValueAndRemovalForgetsTheConnection) {
  VXSimHub hub;
  VXSimConnection first(hub, 1);
  VXSimConnection second(hub, 2);
  Values values{{{"a.X", "3"}}};
  VXSimWatches watches;
  watches.add(first, "a.X", "1");
  watches.add(first, "a.X", "3");
  watches.add(second, "a.X", "1");
  EXPECT_EQ(watches.size(), 2u);
  watches.remove(second);
  EXPECT_EQ(watches.size(), 1u);
  EXPECT_TRUE(watches.takeChanges(values.reader()).empty());  // first was told 3 already
}

}  // namespace
