#include "tools/vxctl/callback_waiter.h"

#include <algorithm>

namespace {

// Short slices, so that the limit and stop() are checked often.
constexpr int kSliceMs = 50;

}  // namespace

std::vector<int32_t> VXCtlCallbackWaiter::pending() const {
  std::vector<int32_t> ids;
  std::set_difference(expected_.begin(), expected_.end(), confirmed_.begin(), confirmed_.end(),
                      std::back_inserter(ids));
  return ids;
}

bool VXCtlCallbackWaiter::wait(AFCFDHandler& handler, std::chrono::milliseconds limit,
                               bool (*stop)()) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (!pending().empty() && !stop() && std::chrono::steady_clock::now() < deadline) {
    handler.mainLoop(kSliceMs);
  }
  return pending().empty();
}
