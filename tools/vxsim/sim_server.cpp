#include "tools/vxsim/sim_server.h"

#include <algorithm>

#include "client/client_exceptions.h"

VXSimServer::VXSimServer(VXSimHub& hub, AFCFDHandler& handler) : hub_(hub), handler_(handler) {}

VXSimServer::~VXSimServer() {
  for (const auto& client : clients_) client->close();
  listener_.close();
}

int VXSimServer::listen(const std::string& host, int port) {
  listener_.bind(port, host);
  listener_.listen();
  listener_.enableEvents(AFC_FD_ACCEPT);
  return getPort();
}

int VXSimServer::listenControl(const std::string& host, int port) {
  control_ = std::make_unique<VXSimControl>(hub_, handler_, [this] { stop(); });
  return control_->listen(host, port);
}

void VXSimServer::acceptClient() {
  auto client = std::make_unique<Client>(*this, nextClientId_++);
  listener_.accept(*client);
  client->setBlocking(false);  // reads take what is there; writes wait within the time limit
  client->setTimeLimit(kWriteTimeLimitMs);
  client->setNagleBuffer(false);
  client->enableEvents(AFC_FD_READ | AFC_FD_CLOSE);
  hub_.log("client " + std::to_string(client->connection().getId()) + " connected from " +
           client->getHost() + ":" + std::to_string(client->getPort()));
  clients_.push_back(std::move(client));
}

void VXSimServer::Client::onReadable() {
  uint8_t bytes[64 * 1024];
  try {
    for (;;) {
      const std::size_t count = readAvailable(bytes, sizeof bytes);
      if (count == 0) break;
      connection_.feed(bytes, count);
      // A short read took all there was: asking again would only cost a call that finds
      // nothing, and the handler reports what comes later.
      if (connection_.isClosed() || count < sizeof bytes) break;
    }
  } catch (const AFCSocketDisconnectedException&) {
    connection_.markClosed();
  } catch (const AFCException& e) {
    // Framing broke or the socket failed: the stream cannot be trusted any more.
    server_.hub_.log("client " + std::to_string(connection_.getId()) + ": " + e.what());
    connection_.markClosed();
  }
  server_.flush();
}

void VXSimServer::Client::onPeerClosed() {
  connection_.markClosed();
  server_.flush();
}

void VXSimServer::sendOutput(Client& client) {
  const std::vector<uint8_t> bytes = client.connection().takeOutput();
  if (bytes.empty() || !client.isOpen()) return;
  try {
    client.writeAll(bytes.data(), bytes.size());
  } catch (const AFCException& e) {
    hub_.log("client " + std::to_string(client.connection().getId()) + ": " + e.what());
    client.connection().markClosed();
  }
}

void VXSimServer::closeClient(Client& client, const std::string& why) {
  if (!client.isOpen()) return;
  client.close();
  hub_.log("client " + std::to_string(client.connection().getId()) + " " + why);
}

void VXSimServer::flush() {
  for (const auto& client : clients_) {
    if (!client->connection().isClosed()) sendOutput(*client);
    if (client->connection().isClosed()) closeClient(*client, "disconnected");
  }
}

void VXSimServer::reap() {
  flush();
  std::erase_if(clients_, [](const auto& client) { return !client->isOpen(); });
  if (control_) control_->reap();
}

int VXSimServer::passTimeMs() const {
  using namespace std::chrono;
  const auto now = VXSimConnection::Clock::now();
  int64_t wait = kPassMs;
  for (const auto& client : clients_) {
    if (const auto due = client->connection().nextDue()) {
      // At least 1: a wait of 0 would only poll, and the loop would spin until the reply is due.
      wait = std::clamp<int64_t>(ceil<milliseconds>(*due - now).count(), 1, wait);
    }
  }
  return static_cast<int>(wait);
}

void VXSimServer::run(const std::function<void()>& idle) {
  while (!stopping_.load()) {
    handler_.mainLoop(passTimeMs());
    reap();
    if (idle) idle();
    reap();
  }
}

void VXSimServer::stop() {
  stopping_.store(true);
  handler_.wakeUp();
}
