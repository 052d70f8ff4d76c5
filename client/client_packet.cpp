#include "client/client_packet.h"

#include <limits>
#include <utility>

#include "client/client_exceptions.h"
#include "client/login.h"
#include "commands/misc_commands.h"
#include "foundation/errlog.h"
#include "foundation/persistent_stream.h"

namespace {

constexpr uint32_t kDebugBuildBit = 0x40000000u;
constexpr std::size_t kVersionReplySize = 20;

uint32_t wordAt(const AFCBuffer& buffer, std::size_t offset) {
  const uint8_t* p = buffer.data() + offset;
  return (uint32_t{p[0]} << 24) | (uint32_t{p[1]} << 16) | (uint32_t{p[2]} << 8) | uint32_t{p[3]};
}

}  // namespace

VXClientPacket::VXClientPacket(int32_t clientIndex) : clientIndex_(clientIndex) {}

VXClientPacket::~VXClientPacket() = default;

void VXClientPacket::setDebug(bool on, std::ostream* stream) {
  debugStream_ = stream;
  debug_ = on && stream != nullptr;
}

void VXClientPacket::writeDebugLine(const std::string& line) {
  std::lock_guard lock(debugLock_);
  *debugStream_ << line << '\n';
  debugStream_->flush();
}

std::ostream& VXClientPacket::traceStream() {
  if (debug_) return *debugStream_;
  discardedTrace_.str({});
  return discardedTrace_;
}

void VXClientPacket::setSilentErrors(bool silent) {
  silentErrors_ = silent;
  debugLine("setSilentErrors to ", silent);
}

bool VXClientPacket::connect() {
  if (isOpen()) return true;
  connectFailure_.clear();
  try {
    openTransport();
  } catch (const AFCException& e) {
    if (connectFailure_.empty()) connectFailure_ = e.what();
    throw;
  }
  if (isOpen()) return true;
  if (connectFailure_.empty()) connectFailure_ = "Vexel connection failed, " + getServerAddress();
  return false;
}

bool VXClientPacket::close() {
  debugLine("close");
  closeTransport();
  connected_ = false;
  clearOpenActions();
  setVersion(0, 0, 0, 0);
  return false;
}

void VXClientPacket::setVersion(uint32_t word1, uint32_t word2, uint32_t major, uint32_t minor) {
  versionWord1_ = word1;
  versionWord2_ = word2;
  versionMajor_ = major;
  versionMinor_ = minor;
}

uint32_t VXClientPacket::getCombinedVersion() const {
  const uint64_t minor = versionMinor_ <= 100 ? uint64_t{versionMinor_} + 100 : versionMinor_ - 100;
  const uint64_t combined = uint64_t{getServerVersionMajor()} * 1000 + minor;
  return static_cast<uint32_t>(std::min<uint64_t>(combined, std::numeric_limits<uint32_t>::max()));
}

std::string VXClientPacket::getServerVersion() const {
  std::string text = std::to_string(getServerVersionMajor());
  if (versionMinor_ > 0 && versionMinor_ <= 100) {
    text += "." + std::to_string(versionMinor_);
  } else if (versionMinor_ > 100) {
    text += "beta" + std::to_string(versionMinor_ - 100);
  }
  if ((versionMajor_ & kDebugBuildBit) != 0) text += " debug";
  return text;
}

void VXClientPacket::onConnected() {
  connected_ = true;
  queryServerVersion();
  if (getCombinedVersion() >= kLoginVersion) logIn();
  debugLine("server version ", getServerVersion());
  resendProject();
  reapplyErrLogListeners();
  reapplyZoneNotifyListeners();
  callConnectListeners();
}

void VXClientPacket::queryServerVersion() {
  try {
    AFCBuffer reply;
    request(kVersionRequest, AFCBuffer(), kVersionReply, reply);
    if (reply.size() < kVersionReplySize) {
      throw VXCommunicationErrorException("Incorrect data length");
    }
    setVersion(wordAt(reply, 4), wordAt(reply, 8), wordAt(reply, 12), wordAt(reply, 16));
  } catch (const AFCException& e) {
    connectFailure_ = std::string("Can't get server version, ") + e.what();
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX") << connectFailure_ << '\n';
    close();
    setVersion(1, 0, 0, 0);
  }
}

void VXClientPacket::logIn() {
  try {
    AFCBuffer reply;
    request(kLoginChallengeRequest, AFCBuffer(), kLoginChallenge, reply);
    if (reply.empty()) return;
    const std::vector<uint8_t> challenge(reply.data(), reply.data() + reply.size());
    const std::vector<uint8_t> response = vxLoginResponse(password_, challenge);
    AFCBuffer answer;
    request(kLoginResponse, AFCBuffer(response.data(), response.size()), kLoginAnswer, answer);
    if (answer.empty() || answer.data()[0] == 0) throw VXClientException("Incorrect password.");
  } catch (const AFCException& e) {
    connectFailure_ = std::string("Can't authenticate, ") + e.what();
    AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "libVX") << connectFailure_ << '\n';
    close();
    throw;
  }
}

void VXClientPacket::sendAction(const VXAction& action) {
  if (action.getCommands().empty()) {
    debugLine("sendAction, channel ", action.getChannel(), ", action empty!");
    return;
  }
  debugLine("sendAction, channel ", action.getChannel());
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  out.writeObject(&action);
  sendPacket(kAction, out.getBuffer());
}

void VXClientPacket::setProject(const std::string& projectName) {
  const uint32_t channel = getChannel();
  std::shared_ptr<VXAction> action;
  if (channel != 0) {
    action = std::make_shared<VXChannelAction>(channel);
  } else {
    action = std::make_shared<VXImmediateAction>();
  }
  action->addCommand(std::make_unique<VXSetProjectCommand>(projectName));
  {
    std::lock_guard lock(projectLock_);
    project_[channel] = action;
  }
  if (isOpen()) sendAction(*action);
}

std::string VXClientPacket::getProject() const {
  std::lock_guard lock(projectLock_);
  const auto found = project_.find(getChannel());
  if (found == project_.end()) return {};
  const auto* command =
      dynamic_cast<const VXSetProjectCommand*>(found->second->getCommands().front().get());
  return command != nullptr ? command->getProjectName() : std::string();
}

void VXClientPacket::resendProject() {
  std::vector<std::shared_ptr<const VXAction>> entries;
  {
    std::lock_guard lock(projectLock_);
    for (const auto& entry : project_) entries.push_back(entry.second);
  }
  debugLine("setProject for ", entries.size(), " channels");
  for (const auto& action : entries) sendAction(*action);
}

void VXClientPacket::setZoneState1(const VXZonesState& zones) {
  if (getServerVersionMajor() < 2016) {
    debugLine("setZoneStateRequest not supported by server");
    return;
  }
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  zones.write(out);
  sendPacket(kSetZoneState, out.getBuffer());
}

void VXClientPacket::getZoneState1(VXZonesState& zones) {
  if (getServerVersionMajor() < 2016) {
    debugLine("getZoneState not supported by server");
    return;
  }
  AFCPersistentOutputStreamBuffer out(getCombinedVersion());
  zones.write(out);
  AFCRef<AFCBuffer> reply(new AFCBuffer());
  request(kGetZoneState, out.getBuffer(), kZoneState, *reply);
  AFCPersistentInputStreamBuffer in(reply, getCombinedVersion());
  zones.read(in);
}
