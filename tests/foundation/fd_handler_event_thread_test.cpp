#include "foundation/fd_handler_event_thread.h"

#include <gtest/gtest.h>

#include <thread>

#include "foundation/event.h"
#include "tests/foundation/loopback.h"

TEST(FDHandlerEventThread, CallsRequestsOnItsOwnThreadUntilStopped) {
  AFCFDHandlerEvent handler;
  LoopbackPair pair;
  AFCEvent called;
  std::thread::id calledOn;
  AFCFDRequestCallback request(AFCFDRequest::KIND_SOCKET, pair.client.getDescriptor(), AFC_FD_READ,
                               [&](AFCFDRequest&, uint32_t) {
                                 char byte;
                                 pair.client.readAvailable(&byte, 1);
                                 calledOn = std::this_thread::get_id();
                                 called.signal();
                               });
  handler.addRequest(request);
  AFCFDHandlerEventThread thread(handler);
  EXPECT_EQ(thread.getName(), "FD-EventThread");
  thread.start();
  pair.send("!");
  EXPECT_TRUE(called.wait(5000));
  EXPECT_EQ(calledOn, thread.getThreadId());
  thread.stop();
  EXPECT_EQ(thread.getState(), AFCThread::ENDED);
  handler.removeRequest(request);
}
