#include "tools/vxsim/sim_control.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "foundation/socket.h"
#include "tests/vxsim/running_server.h"

namespace {

VXSimOptions withControlPort() {
  VXSimOptions options;
  options.controlPort = 0;
  return options;
}

// A control client: writes text, reads lines back, waiting at most a few seconds for each.
class ControlClient {
 public:
  explicit ControlClient(const RunningServer& server) {
    socket_.setTimeLimit(3000);
    socket_.connect("127.0.0.1", server.controlPort());
    socket_.setBlocking(false);
  }
  void write(const std::string& text) { socket_.writeAll(text.data(), text.size()); }
  std::string readLine() {
    std::string line;
    char byte = 0;
    while (byte != '\n') {
      socket_.readExact(&byte, 1);
      line += byte;
    }
    return line;
  }
  std::string ask(const std::string& line) {
    write(line + "\n");
    return readLine();
  }
  // True when the server closes the connection within a few seconds.
  bool closedByServer() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
    char byte = 0;
    while (std::chrono::steady_clock::now() < deadline) {
      try {
        if (socket_.readAvailable(&byte, 1) == 0)
          std::this_thread::sleep_for(std::chrono::milliseconds(5));
      } catch (const AFCSocketException&) {
        return true;
      }
    }
    return false;
  }

 private:
  AFCClientSocket socket_;
};

}  // namespace

TEST(SimControl, EachClientGetsTheOutputOfItsOwnLines) {
  RunningServer server(withControlPort());
  ASSERT_GT(server.controlPort(), 0);
  ControlClient first(server);
  ControlClient second(server);
  EXPECT_EQ(first.ask("fault delay 5"), "faults: delay 5 ms\n");
  EXPECT_EQ(second.ask("fault"), "faults: delay 5 ms\n");  // one hub behind both
  // A command that prints nothing answers "ok"; a line may come in pieces and end in "\r\n".
  second.write("zone L3 ");
  EXPECT_EQ(first.ask("tree --json").substr(0, 17), "{\"name\":\"Root\",\"t");
  second.write("on\r\n");
  EXPECT_EQ(second.readLine(), "ok\n");
  EXPECT_EQ(first.ask("tree"), "Root\n");
  EXPECT_EQ(first.ask("wobble").rfind("unknown command: wobble (", 0), 0u);
  server.stop();
  EXPECT_TRUE(server.hub().getScene().getZones().get("L3"));
}

TEST(SimControl, SeveralLinesInOneWriteAreAnsweredInOrder) {
  RunningServer server(withControlPort());
  ControlClient client(server);
  client.write("fault magic\nfault length\n\nfault off\n");
  EXPECT_EQ(client.readLine(), "faults: bad magic\n");
  EXPECT_EQ(client.readLine(), "faults: bad magic, bad length\n");
  EXPECT_EQ(client.readLine(), "ok\n");  // an empty line is a command that prints nothing
  EXPECT_EQ(client.readLine(), "faults: none\n");
}

TEST(SimControl, ALineLongerThanTheLimitClosesOnlyThatClient) {
  RunningServer server(withControlPort());
  ControlClient flooder(server);
  ControlClient other(server);
  flooder.write(std::string(VXSimControl::kMaxLineLength + 1, 'x'));
  EXPECT_TRUE(flooder.closedByServer());
  EXPECT_EQ(other.ask("fault"), "faults: none\n");
}

TEST(SimControl, QuitStopsTheServer) {
  RunningServer server(withControlPort());
  ControlClient client(server);
  EXPECT_EQ(client.ask("quit"), "ok\n");
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(3);
  while (!server.finished() && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  EXPECT_TRUE(server.finished());
}
