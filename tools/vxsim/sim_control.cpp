#include "tools/vxsim/sim_control.h"

#include <sstream>

#include "tools/vxsim/sim_console.h"
#include "tools/vxsim/sim_server.h"

VXSimControl::VXSimControl(VXSimHub& hub, AFCFDHandler& handler, std::function<void()> quit)
    : hub_(hub), handler_(handler), quit_(std::move(quit)) {}

VXSimControl::~VXSimControl() {
  for (const auto& client : clients_) client->close();
  listener_.close();
}

int VXSimControl::listen(const std::string& host, int port) {
  listener_.bind(port, host);
  listener_.listen();
  listener_.enableEvents(AFC_FD_ACCEPT);
  return listener_.getLocalPort();
}

void VXSimControl::acceptClient() {
  auto client = std::make_unique<Client>(*this);
  listener_.accept(*client);
  client->setBlocking(false);  // reads take what is there; writes wait within the time limit
  client->setTimeLimit(VXSimServer::kWriteTimeLimitMs);
  client->enableEvents(AFC_FD_READ | AFC_FD_CLOSE);
  hub_.log("control client connected from " + client->getHost() + ":" +
           std::to_string(client->getPort()));
  clients_.push_back(std::move(client));
}

void VXSimControl::reap() {
  std::erase_if(clients_, [](const auto& client) { return !client->isOpen(); });
}

std::string VXSimControl::run(const std::string& line) {
  std::ostringstream out;
  if (vxSimConsoleCommand(hub_, line, out) == VXSimConsoleResult::Quit) quit_();
  const std::string text = out.str();
  return text.empty() ? "ok\n" : text;
}

void VXSimControl::Client::onReadable() {
  char bytes[4096];
  try {
    for (;;) {
      const std::size_t count = readAvailable(bytes, sizeof bytes);
      if (count == 0) return;
      pending_.append(bytes, count);
      if (!runLines()) break;
    }
  } catch (const AFCSocketDisconnectedException&) {
  } catch (const AFCException& e) {
    control_.hub_.log(std::string("control client: ") + e.what());
  }
  close();
}

bool VXSimControl::Client::runLines() {
  for (std::size_t end = pending_.find('\n'); end != std::string::npos; end = pending_.find('\n')) {
    std::string line = pending_.substr(0, end);
    pending_.erase(0, end + 1);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const std::string output = control_.run(line);
    writeAll(output.data(), output.size());
  }
  if (pending_.size() <= kMaxLineLength) return true;
  control_.hub_.log("control client: line too long, closed");
  return false;
}
