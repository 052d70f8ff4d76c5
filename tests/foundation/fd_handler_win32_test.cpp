// Waitable handles of the event variant are kernel handles on Windows.
#include <gtest/gtest.h>
#include <windows.h>

#include <vector>

#include "foundation/fd_handler.h"

TEST(FDHandlerEventWin32, ReportsASignalledHandleAsRead) {
  const HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  ASSERT_NE(event, nullptr);
  AFCFDHandlerEvent handler;
  std::vector<uint32_t> events;
  AFCFDRequestCallback request(AFCFDRequest::KIND_HANDLE, reinterpret_cast<AFCSocketHandle>(event),
                               0, [&](AFCFDRequest&, uint32_t e) { events.push_back(e); });
  handler.addRequest(request);
  handler.mainLoop(0);
  EXPECT_TRUE(events.empty());
  SetEvent(event);
  handler.mainLoop(-2);
  EXPECT_EQ(events, std::vector<uint32_t>{AFC_FD_READ});
  handler.removeRequest(request);
  CloseHandle(event);
}
