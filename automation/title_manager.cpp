#include "automation/title_manager.h"

#include <atomic>
#include <mutex>
#include <new>

#include "automation/animation_objects.h"
#include "automation/client_object.h"
#include "automation/command_list.h"
#include "automation/title.h"
#include "client/client_exceptions.h"
#include "foundation/errlog.h"
#include "foundation/errlog_backend_file.h"
#include "foundation/fd_handler.h"

namespace {

// What the live managers of the process share: their count, the "Bridge5" error-log file (made
// by the first manager, kept for the rest of the run) and the default descriptor handler of the
// script's thread, held from the first live manager to the last.
class ProcessServices {
 public:
  static void join() {
    const std::lock_guard lock(mutex_);
    static std::once_flag logMade;
    std::call_once(logMade, [] {
      AFCErrLog::instance().addBackend(std::make_shared<AFCErrLogBackendFile>(
          AFCErrLogBackendFile::defaultDirectory(), "Bridge5"));
    });
    if (live_.fetch_add(1) == 0) handler_ = std::make_unique<AFCDefaultFDHandler>();
  }
  static void leave() {
    const std::lock_guard lock(mutex_);
    if (live_.fetch_sub(1) == 1) handler_.reset();
  }
  static int live() { return live_.load(); }

 private:
  static inline std::mutex mutex_;
  static inline std::atomic<int> live_{0};
  static inline std::unique_ptr<AFCDefaultFDHandler> handler_;
};

template <class T>
std::shared_ptr<T> makeOrNull() noexcept {
  try {
    return std::make_shared<T>();
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

CTitleManager::CTitleManager() : client_(std::make_shared<CClient>()) {
  client_->getSession().addCommandCallbackListener(this);
  ProcessServices::join();
}

CTitleManager::~CTitleManager() {
  client_->getSession().removeCommandCallbackListener(this);
  callbackHandlers_.replace(nullptr);
  client_.reset();
  ProcessServices::leave();
}

int CTitleManager::liveManagers() { return ProcessServices::live(); }

void CTitleManager::setProject(const std::u16string& name) {
  projectName_ = name;
  sendProject(0);
}

std::shared_ptr<CTitle> CTitleManager::createTitle(const ScriptValue& zoneName) {
  const bool isText = zoneName.getKind() == ScriptValue::Kind::Text;
  return createTitleImpl(isText ? ScriptValue::toBytes(zoneName.getText()) : std::string(), 0);
}

std::shared_ptr<CTitle> CTitleManager::createTitleInChannel(const std::string& zoneName,
                                                            int32_t channelID) {
  if (!projectChannels_.contains(channelID)) sendProject(channelID);
  return createTitleImpl(zoneName, channelID);
}

std::shared_ptr<CTitle> CTitleManager::findTitleByZone(const std::string& zoneName) const {
  std::shared_ptr<CTitle> found;
  for (const Entry& entry : titles_) {
    std::shared_ptr<CTitle> title = entry.owner.lock();
    if (title && title->getZone() == zoneName) found = std::move(title);
  }
  return found;
}

std::shared_ptr<CTitle> CTitleManager::findTitleByName(const std::string& titleName) const {
  std::shared_ptr<CTitle> found;
  for (const Entry& entry : titles_) {
    std::shared_ptr<CTitle> title = entry.owner.lock();
    if (title && !title->isDestroyed() && title->getTitleName() == titleName) {
      found = std::move(title);
    }
  }
  return found;
}

void CTitleManager::addCommandCallbackListener(std::shared_ptr<ScriptHandler> handler) {
  callbackHandlers_.add(std::move(handler));
}

void CTitleManager::setOnCommandCallback(std::shared_ptr<ScriptHandler> handler) {
  callbackHandlers_.replace(std::move(handler));
}

std::shared_ptr<CAnimation> CTitleManager::createAnimation() noexcept {
  return makeOrNull<CAnimation>();
}

std::shared_ptr<CAnimationOptions> CTitleManager::createAnimationOptions() noexcept {
  return makeOrNull<CAnimationOptions>();
}

std::shared_ptr<CCommandList> CTitleManager::createCommandList() noexcept {
  return makeOrNull<CCommandList>();
}

std::string CTitleManager::getBridgeVersion() {
  // The project's version numbers, from the build.
  constexpr int kNumbers[] = {VX_PRODUCT_VERSION_NUMBERS};
  std::string text = std::to_string(kNumbers[0]);
  for (std::size_t i = 1; i < std::size(kNumbers); ++i) text += "." + std::to_string(kNumbers[i]);
  return text + " x64";
}

VXCommandListBeginEndBuilder& CTitleManager::getBuilder() {
  if (!client_) throw AFCNullPointerException("VXClient");
  return client_->getSession();
}

void CTitleManager::addZoneNotification(const std::string& zone) {
  client_->addZoneNotification(zone);
}

void CTitleManager::removeZoneNotification(const std::string& zone) {
  client_->removeZoneNotification(zone);
}

void CTitleManager::forgetTitle(const CTitle& title) {
  std::erase_if(titles_, [&title](const Entry& entry) { return entry.title == &title; });
}

void CTitleManager::onCommandCallback(int32_t callbackId) {
  const ScriptValue id[] = {ScriptValue::integer(callbackId)};
  callbackHandlers_.invokeAll(id);
  events_.fire([callbackId](CmdEventSink& sink) { sink.onCommand(callbackId); });
}

std::shared_ptr<CTitle> CTitleManager::createTitleImpl(std::string zone, int32_t channel) {
  connectIfClosed();
  if (zone.empty()) zone = "default";
  replaceTitles(zone, channel);
  auto title = std::make_shared<CTitle>(shared_from_this());
  title->setChannel(channel);
  title->setZone(zone);
  titles_.push_back({title.get(), title});
  return title;
}

void CTitleManager::connectIfClosed() {
  if (client_->getSession().isOpen()) return;
  if (!client_->connect()) throw VXClientException(client_->getConnectFailure());
}

void CTitleManager::replaceTitles(const std::string& zone, int32_t channel) {
  std::vector<std::shared_ptr<CTitle>> replaced;
  std::erase_if(titles_, [&](const Entry& entry) {
    std::shared_ptr<CTitle> title = entry.owner.lock();
    if (!title || title->getZone() != zone || title->getChannel() != channel) return false;
    replaced.push_back(std::move(title));
    return true;
  });
  for (const std::shared_ptr<CTitle>& title : replaced) title->destroy();
}

void CTitleManager::sendProject(int32_t channel) {
  VXCommandListBeginEndBuilder& builder = getBuilder();
  builder.setChannel(static_cast<uint32_t>(channel));
  client_->getSession().setProject(ScriptValue::toBytes(projectName_));
  projectChannels_.insert(channel);
}
