#include "foundation/socket.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/foundation/errlog_capture.h"
#include "tests/foundation/loopback.h"
#include "tests/support/failure_text.h"

namespace {
using Clock = std::chrono::steady_clock;

std::string connectFailure(AFCClientSocket& socket, int port) {
  try {
    socket.connect("127.0.0.1", port);
  } catch (const AFCSocketConnectFailedException& e) {
    EXPECT_FALSE(socket.isOpen());
    EXPECT_EQ(e.getPort(), port);
    if (e.getErrorCode() != AFC_WSAECONNREFUSED) return "error " + std::to_string(e.getErrorCode());
    return e.toString();
  }
  return "connected";
}

std::string readAll(AFCSocket& socket, std::size_t size) {
  std::string bytes(size, '\0');
  socket.readExact(bytes.data(), size);
  return bytes;
}
}  // namespace

TEST(SocketErrorText, GivesTheTableRowsAndAFallbackForUnknownCodes) {
  EXPECT_EQ(afcSocketErrorText(10061), "Connection refused");
  EXPECT_EQ(afcSocketErrorText(10035), "Operation would block");
  EXPECT_EQ(afcSocketErrorText(10004), "Interrupted function call");
  EXPECT_EQ(afcSocketErrorText(10071), "The object is remote");
  EXPECT_EQ(afcSocketErrorText(10112), "REFUSED");
  EXPECT_EQ(afcSocketErrorText(11013),
            "problem with some part of the filterspec or providerspecif");
  EXPECT_EQ(afcSocketErrorText(11015), "general error");
  EXPECT_EQ(afcSocketErrorText(99999), "Unknown error 0x0001869f");
}

TEST(SocketExceptions, RenderTheirTexts) {
  EXPECT_EQ(AFCSocketConnectFailedException("srv", 6260, 10060).toString(),
            "Can't connect to srv, Connection timed out.");
  EXPECT_EQ(AFCSocketIOErrorException("read() failed", 10054).toString(),
            "IO error, read() failed, Connection reset by peer.");
  EXPECT_EQ(AFCUnknownHostException("no-such", 6260).toString(), "Unknown host \"no-such\"");
  EXPECT_EQ(AFCSocketWrongPortException().toString(), "Wrong port number");
  EXPECT_EQ(AFCSocketDisconnectedException().toString(), "Client disconnected.");
  EXPECT_EQ(afcSocketAddressText(0x7f000001), "127.0.0.1");
}

TEST(ClientSocket, PortZeroFailsBeforeTheHostIsLookedUp) {
  AFCClientSocket socket;
  EXPECT_THROW(socket.connect("host.that.would.not.resolve.invalid", 0),
               AFCSocketWrongPortException);
}

TEST(ClientSocket, ConnectToAClosedPortIsRefusedAndClosesTheSocket) {
  const int port = closedLoopbackPort();
  AFCClientSocket socket;
  EXPECT_EQ(connectFailure(socket, port), "Can't connect to 127.0.0.1, Connection refused.");
  socket.setTimeLimit(2000);
  EXPECT_EQ(connectFailure(socket, port), "Can't connect to 127.0.0.1, Connection refused.");
}

TEST(ClientSocket, ConnectWithATimeLimitEndsConnectedAndBlocking) {
  AFCServerSocket server;
  server.bind(0, "127.0.0.1");
  server.listen();
  AFCClientSocket client;
  client.setTimeLimit(2000);
  client.connect("127.0.0.1", server.getLocalPort());
  EXPECT_TRUE(client.isOpen());
  EXPECT_TRUE(client.isBlocking());
  EXPECT_EQ(client.getHost(), "127.0.0.1");
  // Once connected the socket asks for read and write events.
  EXPECT_EQ(client.getPendingEventMask(), uint32_t{AFC_FD_READ | AFC_FD_WRITE});
}

TEST(ServerSocket, AcceptsAConnectionAndNamesThePeer) {
  LoopbackPair pair;
  EXPECT_TRUE(pair.peer.isOpen());
  EXPECT_EQ(pair.peer.getHost(), "127.0.0.1");
  EXPECT_EQ(pair.peer.getPort(), pair.client.getLocalPort());
}

TEST(ServerSocket, AcceptWithATimeLimitAndNoClientTimesOut) {
  AFCServerSocket server;
  server.bind(0, "127.0.0.1");
  server.listen();
  server.setTimeLimit(20);
  AFCClientSocket client;
  EXPECT_EQ(failureOf<AFCSocketException>([&] { server.accept(client); }),
            "accept() failed, timeout");
  EXPECT_FALSE(client.isOpen());
}

TEST(ServerSocket, BindingAPortInUseFails) {
  AFCServerSocket first;
  first.bind(0, "127.0.0.1");
  first.listen();
  AFCServerSocket second;
  EXPECT_EQ(failureOf<AFCSocketException>([&] { second.bind(first.getLocalPort(), "127.0.0.1"); }),
            "Can't bind socket");
}

TEST(Socket, ReadsAHeaderThenTakesTheRestThatIsAlreadyThereInOneCall) {
  LoopbackPair pair;
  pair.send("HEADER-12345payload of twenty");
  EXPECT_EQ(readAll(pair.client, 12), "HEADER-12345");
  char rest[100];
  const std::size_t count = pair.client.readAvailable(rest, sizeof rest);
  EXPECT_EQ(std::string(rest, count), "payload of twenty");
}

TEST(Socket, ReadIntoABufferAppendsAtMostTheAskedCount) {
  LoopbackPair pair;
  pair.send("abcdef");
  AFCBuffer buffer("xy", 2);
  EXPECT_EQ(pair.client.read(buffer, 4), 4u);
  EXPECT_EQ(buffer.view(), "xyabcd");
}

TEST(Socket, APeerThatClosedIsSeenAsDisconnectOnlyAfterItsDataWasRead) {
  LoopbackPair pair;
  pair.send("last words");
  pair.peer.close();
  EXPECT_EQ(readAll(pair.client, 10), "last words");
  char byte;
  EXPECT_EQ(failureOf<AFCSocketDisconnectedException>([&] { pair.client.readAvailable(&byte, 1); }),
            "Client disconnected.");
}

TEST(Socket, ANonBlockingReadWithNothingThereReturnsNothing) {
  LoopbackPair pair;
  pair.client.setBlocking(false);
  EXPECT_FALSE(pair.client.isBlocking());
  char bytes[8];
  EXPECT_EQ(pair.client.readAvailable(bytes, sizeof bytes), 0u);
  pair.send("abc");
  // The loopback hands the bytes over at once, but give it a moment's grace.
  std::size_t count = 0;
  for (int i = 0; i < 200 && count == 0; ++i) count = pair.client.read(bytes, sizeof bytes);
  EXPECT_EQ(std::string(bytes, count), "abc");
}

TEST(Socket, ANonBlockingExactReadStopsAtTheTimeLimit) {
  LoopbackPair pair;
  pair.client.setBlocking(false);
  pair.client.setTimeLimit(30);
  char bytes[4];
  const auto start = Clock::now();
  EXPECT_EQ(
      failureOf<AFCSocketIOErrorException>([&] { pair.client.readExact(bytes, sizeof bytes); }),
      "IO error, read() failed, Connection timed out.");
  EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(25));
}

TEST(Socket, ANonBlockingWriteStopsWhenTheSocketWouldBlock) {
  LoopbackPair pair;
  pair.client.setBlocking(false);
  const std::vector<char> lots(64 << 20, 'x');
  const std::size_t sent = pair.client.write(lots.data(), lots.size());
  EXPECT_GT(sent, 0u);
  EXPECT_LT(sent, lots.size());
}

TEST(Socket, AClosedSocketRefusesOptionsAndReads) {
  AFCClientSocket socket;
  EXPECT_EQ(failureOf<AFCSocketException>([&] { socket.setBlocking(false); }),
            "Can't set blocking mode for closed socket!");
  EXPECT_EQ(failureOf<AFCSocketException>([&] { socket.setNagleBuffer(false); }),
            "Can't set NagleBuffer mode for closed socket!");
  EXPECT_EQ(failureOf<AFCSocketException>([&] { socket.setKeepAlive(true); }),
            "Can't set KeepAlive mode for closed socket!");
  char byte;
  try {
    socket.readAvailable(&byte, 1);
    ADD_FAILURE() << "read a closed socket";
  } catch (const AFCSocketIOErrorException& e) {
    EXPECT_EQ(e.getOperation(), "read() failed");
  }
}

TEST(Socket, OptionsOfAnOpenSocketAreKeptUntilItCloses) {
  LoopbackPair pair;
  pair.client.setNagleBuffer(false);
  pair.client.setKeepAlive(true);
  EXPECT_FALSE(pair.client.isNagleBuffer());
  EXPECT_TRUE(pair.client.isKeepAlive());
  pair.client.close();
  EXPECT_FALSE(pair.client.isOpen());
  EXPECT_TRUE(pair.client.isNagleBuffer());
  EXPECT_FALSE(pair.client.isKeepAlive());
  pair.client.close();
}

namespace {
// A client socket that uses a registry of the test's choosing, as a session's socket does, and
// records its notifications.
class RecordingSocket : public AFCClientSocket {
 public:
  explicit RecordingSocket(AFCFDAsyncRegistry& registry) : registry_(registry) {}
  AFCFDAsyncRegistry* getAsyncRegistry() override { return &registry_; }

  std::string seen;
  std::string data;
  std::string throwOnRead;

 protected:
  void onReadable() override {
    seen += 'R';
    char bytes[64];
    data.append(bytes, readAvailable(bytes, sizeof bytes));
    if (!throwOnRead.empty()) throw AFCException(throwOnRead);
  }
  void onWritable() override { seen += 'W'; }
  void onPeerClosed() override { seen += 'C'; }
  void onConnected() override { seen += '+'; }

 private:
  AFCFDAsyncRegistry& registry_;
};

template <class Done>
void pumpUntil(AFCFDHandler& handler, Done done) {
  for (int pass = 0; pass < 50 && !done(); ++pass) handler.mainLoop(-2);
}

// A handler, a listening server and a client connected to it; the server's side of the
// connection, once accepted, reports to the handler.
struct NotifiedConnection {
  NotifiedConnection() {
    server.bind(0, "127.0.0.1");
    server.listen();
    client.connect("127.0.0.1", server.getLocalPort());
  }
  void accept() {
    server.accept(accepted);
    accepted.enableEvents(AFC_FD_READ);
  }
  AFCFDHandlerEvent handler;
  AFCServerSocket server;
  AFCClientSocket client;
  RecordingSocket accepted{handler};
};
}  // namespace

TEST(SocketNotifications, ReachTheOverriddenHooksWithTheCloseLast) {
  NotifiedConnection c;
  c.accept();
  EXPECT_EQ(c.accepted.getRegistry(), &c.handler);
  c.client.writeAll("hello", 5);
  c.client.close();
  pumpUntil(c.handler, [&] { return c.accepted.seen.find('C') != std::string::npos; });
  EXPECT_EQ(c.accepted.data, "hello");
  EXPECT_EQ(c.accepted.seen.back(), 'C');
  c.accepted.close();
  EXPECT_EQ(c.handler.getRequestCount(), 0u);
}

TEST(SocketNotifications, AnExceptionFromAHookIsLoggedWithTheSocketPrefix) {
  CapturedErrLog log;
  NotifiedConnection c;
  c.accepted.throwOnRead = "bad packet " + std::to_string(c.client.getLocalPort());
  c.accept();
  c.client.writeAll("x", 1);
  pumpUntil(c.handler, [&] { return !c.accepted.data.empty(); });
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"AFCSocket: client exception: " + c.accepted.throwOnRead});
}

TEST(ClientSocket, ANonBlockingConnectIsFinishedByTheHandler) {
  AFCFDHandlerEvent handler;
  AFCServerSocket server;
  server.bind(0, "127.0.0.1");
  server.listen();
  RecordingSocket client(handler);
  client.create();
  client.setBlocking(false);
  client.connect("127.0.0.1", server.getLocalPort());
  pumpUntil(handler, [&] { return client.seen.find('+') != std::string::npos; });
  EXPECT_FALSE(client.isConnecting());
  EXPECT_EQ(client.seen.substr(0, 1), "+");
  EXPECT_EQ(client.getEventMask(), uint32_t{AFC_FD_READ | AFC_FD_WRITE});
}

TEST(ClientSocket, ANonBlockingConnectThatIsRefusedIsLoggedAndClosesTheSocket) {
  CapturedErrLog log;
  AFCFDHandlerEvent handler;
  const int port = closedLoopbackPort();
  RecordingSocket client(handler);
  client.create();
  client.setBlocking(false);
  try {
    client.connect("127.0.0.1", port);
  } catch (const AFCSocketConnectFailedException&) {
    // Some systems refuse a loopback connect at once; the socket must be closed all the same.
    EXPECT_FALSE(client.isOpen());
    return;
  }
  pumpUntil(handler, [&] { return !client.isOpen(); });
  EXPECT_FALSE(client.isOpen());
  EXPECT_EQ(log.messages(),
            std::vector<std::string>{"AFCSocket: client exception: Can't connect to 127.0.0.1, "
                                     "Connection refused."});
}
