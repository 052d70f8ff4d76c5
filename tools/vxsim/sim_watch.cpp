#include "tools/vxsim/sim_watch.h"

#include <algorithm>

void VXSimWatches::add(VXSimConnection& connection, const std::string& target, std::string value) {
  const auto same = std::find_if(watches_.begin(), watches_.end(), [&](const Watch& watch) {
    return watch.connection == &connection && watch.target == target;
  });
  if (same != watches_.end()) {
    same->told = std::move(value);
    return;
  }
  watches_.push_back({&connection, target, std::move(value)});
}

void VXSimWatches::remove(const VXSimConnection& connection) {
  std::erase_if(watches_, [&](const Watch& watch) { return watch.connection == &connection; });
}

std::vector<VXSimWatches::Change> VXSimWatches::takeChanges(const Reader& current) {
  std::vector<Change> changes;
  for (Watch& watch : watches_) {
    std::string value = current(watch.target);
    if (value == watch.told) continue;
    changes.emplace_back(watch.connection, watch.target + "=" + value);
    watch.told = std::move(value);
  }
  return changes;
}
