#include "foundation/pointer_map.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// Keys are addresses only; these are never dereferenced.
std::vector<int> keys(std::size_t count) { return std::vector<int>(count); }

TEST(PointerNumberMap, FindsTheNumberOfEveryKeyAdded) {
  AFCPointerNumberMap map;
  std::vector<int> objects = keys(1000);
  for (std::size_t i = 0; i < objects.size(); ++i) {
    const AFCPointerNumberMap::Lookup absent = map.find(&objects[i]);
    ASSERT_EQ(absent.number, 0u);
    map.insert(&objects[i], static_cast<uint32_t>(i + 1), absent);
  }
  EXPECT_EQ(map.size(), objects.size());
  for (std::size_t i = 0; i < objects.size(); ++i) {
    EXPECT_EQ(map.find(&objects[i]).number, i + 1);
  }
}

// A writer looks an object up, writes what it contains (numbering those first) and numbers the
// object last: the lookup's slot may be taken, or the table may have grown, in between.
TEST(PointerNumberMap, InsertsCorrectlyAfterKeysAddedSinceTheLookup) {
  AFCPointerNumberMap map;
  std::vector<int> outer = keys(300);
  std::vector<int> inner = keys(300);
  for (std::size_t i = 0; i < outer.size(); ++i) {
    const AFCPointerNumberMap::Lookup absent = map.find(&outer[i]);
    map.insert(&inner[i], static_cast<uint32_t>(2 * i + 1), map.find(&inner[i]));
    map.insert(&outer[i], static_cast<uint32_t>(2 * i + 2), absent);
  }
  for (std::size_t i = 0; i < outer.size(); ++i) {
    EXPECT_EQ(map.find(&inner[i]).number, 2 * i + 1);
    EXPECT_EQ(map.find(&outer[i]).number, 2 * i + 2);
  }
}

TEST(PointerNumberMap, ANewMapForgetsTheKeysOfTheLastOne) {
  std::vector<int> objects = keys(10);
  {
    AFCPointerNumberMap first;
    for (int& object : objects) first.insert(&object, 7, first.find(&object));
  }
  AFCPointerNumberMap second;  // reuses the first map's table on this thread
  for (int& object : objects) EXPECT_EQ(second.find(&object).number, 0u);
  EXPECT_EQ(second.size(), 0u);
}

}  // namespace
