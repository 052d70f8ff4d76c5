// Waitable handles of the event variant are descriptors on POSIX.
#include <gtest/gtest.h>
#include <unistd.h>

#include <vector>

#include "foundation/fd_handler.h"
#include "tests/foundation/loopback.h"

TEST(FDHandlerEventPosix, ReportsASignalledDescriptorAsRead) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  AFCFDHandlerEvent handler;
  std::vector<uint32_t> events;
  AFCFDRequestCallback request(AFCFDRequest::KIND_HANDLE, ends[0], 0,
                               [&](AFCFDRequest&, uint32_t e) {
                                 events.push_back(e);
                                 char byte;
                                 EXPECT_EQ(read(ends[0], &byte, 1), 1);
                               });
  handler.addRequest(request);
  handler.mainLoop(0);
  EXPECT_TRUE(events.empty());
  ASSERT_EQ(write(ends[1], "s", 1), 1);
  handler.mainLoop(-2);
  EXPECT_EQ(events, std::vector<uint32_t>{AFC_FD_READ});
  handler.removeRequest(request);
  close(ends[0]);
  close(ends[1]);
}

// WinSock reports write readiness again when write is selected anew; poll() is made to as well.
TEST(FDHandlerEventPosix, ReportsWritableAgainWhenWriteIsAskedForAnew) {
  AFCFDHandlerEvent handler;
  LoopbackPair pair;
  std::vector<uint32_t> events;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, pair.client.getDescriptor(), AFC_FD_WRITE,
                               [&](AFCFDRequest&, uint32_t e) { events.push_back(e); });
  handler.addRequest(request);
  handler.mainLoop(0);
  request.setEventMask(0);
  handler.mainLoop(0);
  request.setEventMask(AFC_FD_WRITE);
  handler.mainLoop(0);
  EXPECT_EQ(events, (std::vector<uint32_t>{AFC_FD_WRITE, AFC_FD_WRITE}));
}
