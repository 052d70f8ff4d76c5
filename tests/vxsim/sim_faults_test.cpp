#include "tools/vxsim/sim_faults.h"

#include <gtest/gtest.h>

#include "tools/vxsim/sim_options.h"

TEST(SimFaults, StandingOrdersAreDescribedUntilOffEndsThemAll) {
  VXSimFaults faults;
  EXPECT_EQ(faults.describe(), "faults: none");
  faults.apply("close 3");
  faults.apply("magic");
  faults.apply("length");
  faults.apply(" delay   250 ");
  EXPECT_EQ(faults.describe(),
            "faults: close after 3 packets, bad magic, bad length, delay 250 ms");
  faults.apply("delay 0");
  EXPECT_EQ(faults.describe(), "faults: close after 3 packets, bad magic, bad length");
  faults.apply("off");
  EXPECT_EQ(faults.describe(), "faults: none");
  EXPECT_EQ(faults.closeOrder, 0u);
  EXPECT_EQ(faults.magicOrder, 0u);
  EXPECT_EQ(faults.lengthOrder, 0u);
}

TEST(SimFaults, EveryOrderGetsANewNumberEvenAfterOff) {
  // A connection remembers the numbers it has carried out: a number used again would be skipped.
  VXSimFaults faults;
  faults.apply("magic");
  const uint64_t first = faults.magicOrder;
  faults.apply("magic");
  EXPECT_GT(faults.magicOrder, first);
  const uint64_t second = faults.magicOrder;
  faults.apply("off");
  faults.apply("magic");
  EXPECT_GT(faults.magicOrder, second);
  faults.apply("close 1");
  EXPECT_GT(faults.closeOrder, faults.magicOrder);
}

TEST(SimFaults, RefusesAnOrderItCannotReadAndKeepsTheOrders) {
  VXSimFaults faults;
  faults.apply("close 2");
  const std::string before = faults.describe();
  const uint64_t last = faults.lastOrder;
  for (const char* order :
       {"", "close", "close 0", "close -1", "close 2x", "close 99999999999", "delay",
        "delay 600001", "delay 1 2", "magic now", "off please", "nap 3"}) {
    try {
      faults.apply(order);
      ADD_FAILURE() << "accepted \"" << order << "\"";
    } catch (const VXSimUsageException& e) {
      EXPECT_EQ(std::string(e.what()), "Bad fault: \"" + std::string(order) + "\"");
    }
  }
  EXPECT_EQ(faults.describe(), before);
  EXPECT_EQ(faults.lastOrder, last);
  faults.apply("delay 600000");  // the largest delay allowed
  EXPECT_EQ(faults.delayMs, 600000u);
}
