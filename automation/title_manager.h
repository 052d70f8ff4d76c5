#pragma once
// The object a script makes first: it owns the one client object of its session, makes and
// tracks titles (one live title per zone and channel), hands out command lists and animation
// objects, keeps the foreign project name every render channel is told about, and turns the
// server's confirmation of callback commands into script calls and onCommand events (the
// handlers first, then the sinks).
//
// Made with std::make_shared (titles hold their manager by a counted reference). The first live
// manager of a process adds the "Bridge5" error-log file and holds the calling thread's default
// descriptor handler, on which the session's events arrive; the last one to go releases it.
// Managers are made, called and released on the script's thread; only the live-manager count is
// shared between threads. Methods throw the session's and the titles' exceptions; a title made
// without a connection throws VXClientException with the reason the connect failed. The
// factories of animation objects and command lists give null instead of throwing.
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "automation/script_events.h"
#include "automation/script_value.h"
#include "automation/title_host.h"
#include "client/listeners.h"

class CAnimation;
class CAnimationOptions;
class CClient;
class CCommandList;
class CTitle;

class CTitleManager : public CTitleHost,
                      public std::enable_shared_from_this<CTitleManager>,
                      private VXCallbackCommandListener {
 public:
  CTitleManager();
  ~CTitleManager() override;
  CTitleManager(const CTitleManager&) = delete;
  CTitleManager& operator=(const CTitleManager&) = delete;

  // Managers alive in the process.
  static int liveManagers();

  // Sends the project name to channel 0; titles take it up through their own setProject.
  void setProject(const std::u16string& name);
  // The zone is the value's text, else "default"; the title replaces this manager's title of
  // the same zone on channel 0. Connects the session first when it is not open.
  std::shared_ptr<CTitle> createTitle(const ScriptValue& zoneName);
  // As createTitle on the channel; a channel not told yet gets the project name first (even an
  // empty one).
  std::shared_ptr<CTitle> createTitleInChannel(const std::string& zoneName, int32_t channelID);
  // The last title of the zone, destroyed or not; null when there is none.
  std::shared_ptr<CTitle> findTitleByZone(const std::string& zoneName) const;
  // The last title of that script-given name that is not destroyed; null when there is none.
  std::shared_ptr<CTitle> findTitleByName(const std::string& titleName) const;
  const std::shared_ptr<CClient>& getClient() const { return client_; }

  // The same handler may be added twice and is then called twice.
  void addCommandCallbackListener(std::shared_ptr<ScriptHandler> handler);
  // Drops every handler, then adds handler unless it is null.
  void setOnCommandCallback(std::shared_ptr<ScriptHandler> handler);
  CmdEventSinks& getEvents() { return events_; }

  // Null when the object cannot be made.
  static std::shared_ptr<CAnimation> createAnimation() noexcept;
  static std::shared_ptr<CAnimationOptions> createAnimationOptions() noexcept;
  static std::shared_ptr<CCommandList> createCommandList() noexcept;

  // The product version ("%d.%d", then ".%d" for each further number) and " x64".
  static std::string getBridgeVersion();

  // CTitleHost
  VXCommandListBeginEndBuilder& getBuilder() override;
  void addZoneNotification(const std::string& zone) override;
  void removeZoneNotification(const std::string& zone) override;
  void forgetTitle(const CTitle& title) override;

 private:
  struct Entry {
    const CTitle* title;          // identity, for forgetTitle while the title is going
    std::weak_ptr<CTitle> owner;  // the script owns the title
  };

  void onCommandCallback(int32_t callbackId) override;
  std::shared_ptr<CTitle> createTitleImpl(std::string zone, int32_t channel);
  void connectIfClosed();
  // Destroys and drops this manager's titles of the zone and channel.
  void replaceTitles(const std::string& zone, int32_t channel);
  // Sends the project name to the channel, made the builder's current one.
  void sendProject(int32_t channel);

  std::shared_ptr<CClient> client_;
  std::vector<Entry> titles_;
  ScriptHandlers callbackHandlers_;
  std::u16string projectName_;
  std::set<int32_t> projectChannels_;
  CmdEventSinks events_;
};
