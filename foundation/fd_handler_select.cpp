#include <algorithm>
#include <chrono>
#include <thread>

#include "foundation/fd_handler.h"
#include "foundation/socket.h"
#include "foundation/socket_ops.h"

void AFCFDHandlerSelect::mainLoop(int timeoutMs) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point deadline = Clock::now() + std::chrono::milliseconds(timeoutMs);
  int waitMs = timeoutMs;
  for (;;) {
    std::vector<Entry> waited;
    std::vector<AFCSocketWait> sockets;
    for (const Entry& entry : snapshot()) {
      const Readiness wanted = wantedReadiness(entry);
      if (entry.request->getKind() != AFCFDRequest::KIND_SOCKET || (!wanted.read && !wanted.write))
        continue;
      waited.push_back(entry);
      sockets.push_back({entry.request->getDescriptor(), wanted.read, wanted.write});
    }
    if (!sockets.empty()) {
      const int ready = afcSocketSelect(sockets, waitMs < 0 ? -1 : waitMs);
      if (ready < 0) {
        throw AFCSelectFailedException("Select() failed, " +
                                       afcSocketErrorText(afcSocketLastError()));
      }
      for (std::size_t i = 0; ready > 0 && i < waited.size(); ++i) {
        if (!isRegistered(waited[i])) continue;
        const uint32_t events =
            readinessEvents(waited[i], sockets[i].readable, sockets[i].writable, sockets[i].failed);
        if (events != 0) deliver(waited[i], events);
      }
    } else if (timeoutMs > 0) {
      // A thousandth of the asked time: long kept so, and callers rely on the short pause.
      std::this_thread::sleep_for(std::chrono::milliseconds(timeoutMs / 1000));
    }
    if (timeoutMs == -2 || timeoutMs == 0) return;
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return;
    waitMs = static_cast<int>(left);
  }
}
