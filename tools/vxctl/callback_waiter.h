#pragma once
// Waits for the server's confirmations of command callbacks (`vxctl send --wait`). Registered
// as a listener before the commands go out, since a confirmation may come before the sender
// knows which ids to wait for; the ids are named afterwards with expect().
//
// Not owned by the session it listens to; used on the thread that pumps the handler. Nothing
// here throws except allocation and what the handler's loop throws.
#include <chrono>
#include <cstdint>
#include <set>
#include <vector>

#include "client/listeners.h"
#include "foundation/fd_handler.h"

class VXCtlCallbackWaiter : public VXCallbackCommandListener {
 public:
  void onCommandCallback(int32_t callbackId) override { confirmed_.insert(callbackId); }

  void expect(const std::vector<int32_t>& ids) { expected_.insert(ids.begin(), ids.end()); }
  // The expected ids not confirmed yet, in increasing order.
  std::vector<int32_t> pending() const;
  // Pumps the handler until every expected id is confirmed, the limit has passed, or stop()
  // says so; true when all came.
  bool wait(
      AFCFDHandler& handler, std::chrono::milliseconds limit,
      bool (*stop)() = [] { return false; });

 private:
  std::set<int32_t> expected_;
  std::set<int32_t> confirmed_;
};
