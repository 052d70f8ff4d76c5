// A lower-third on air the way a script does it, through the title objects:
//   1. a title manager, its client pointed at the server, handlers and event sinks attached,
//   2. a title in zone "LowerThirds": background scene and two texts in one begin/end,
//   3. a keyframed fade-in inside a transaction, with a callback behind it,
//   4. the callback received (the script handler first, then the onCommand event),
//   5. the zone switched on and its change received (after enableZoneNotification),
//   6. a remote attribute read back, then the title destroyed.
// A script host's adapter hands these objects to scripts; here C++ calls them directly.
// Usage: title_lower_third [HOST[:PORT]]   (else VX2HOST, else localhost:6260)
#include <chrono>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "automation/animation_objects.h"
#include "automation/client_object.h"
#include "automation/title.h"
#include "automation/title_manager.h"
#include "client/register.h"
#include "foundation/fd_handler.h"

namespace {

std::string text(const std::u16string& value) { return ScriptValue::toBytes(value); }

// Prints every event of the manager and of its client, and remembers what came.
class PrintedEvents : public CmdEventSink {
 public:
  std::vector<int32_t> commands;
  int zoneChanges = 0;

  void onCommand(int32_t cmd) override {
    std::printf("event: onCommand %d\n", cmd);
    commands.push_back(cmd);
  }
  void onDisconnect() override { std::printf("event: onDisconnect\n"); }
  void onPickResult(const std::u16string& xml) override {
    std::printf("event: onPickResult %s\n", text(xml).c_str());
  }
  void onZoneChange(const std::u16string& zone, int32_t state) override {
    std::printf("event: onZoneChange %s %d\n", text(zone).c_str(), state);
    ++zoneChanges;
  }
  void onMessage(const std::u16string& message) override {
    std::printf("event: onMessage %s\n", text(message).c_str());
  }
};

// A script function: called with the id of each confirmed callback.
class PrintedCallback : public ScriptHandler {
 public:
  bool invoke(std::span<const ScriptValue> args) override {
    std::printf("handler: callback %d\n", args.empty() ? 0 : args.front().getInt32());
    return true;
  }
};

// What a host's adapter does for our own objects: a script value that carries the core object.
template <class Core>
class ModuleObject : public ScriptObject {
 public:
  explicit ModuleObject(std::shared_ptr<Core> core) : core_(std::move(core)) {}
  Lookup getMember(std::string_view, ScriptValue&) override { return Lookup::NoSuchMember; }
  CAnimation* asAnimation() override { return as<CAnimation>(); }
  CAnimationOptions* asAnimationOptions() override { return as<CAnimationOptions>(); }

 private:
  template <class Wanted>
  Wanted* as() {
    if constexpr (std::is_same_v<Wanted, Core>) return core_.get();
    return nullptr;
  }
  std::shared_ptr<Core> core_;
};

template <class Core>
ScriptValue objectValue(std::shared_ptr<Core> core) {
  return ScriptValue::object(std::make_shared<ModuleObject<Core>>(std::move(core)));
}

// Pumps the thread's descriptor handler, where the server's events arrive, until done() holds
// or five seconds have passed.
bool pumpUntil(const std::function<bool()>& done) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  while (!done() && std::chrono::steady_clock::now() < deadline) {
    AFCFDHandler::getDefault().mainLoop(20);
  }
  return done();
}

void buildLowerThird(CTitle& title) {
  title.begin();  // everything until end() travels as one action
  title.loadScene("LowerThirdBackground", "bg");
  title.createNode("Text", "name");
  title.createNode("Text", "role");
  title.set("name", "Text", ScriptValue::text(u"Jane Doe"));
  title.set("role", "Text", ScriptValue::text(u"Reporter, \u00C5lesund"));
  title.end();
}

int32_t fadeIn(CTitleManager& manager, CTitle& title) {
  const std::shared_ptr<CAnimation> animation = manager.createAnimation();
  const std::shared_ptr<CAnimationOptions> options = manager.createAnimationOptions();
  if (!animation || !options) throw AFCException("no animation objects");
  CAnimationChannel alpha = animation->createChannel();
  alpha.setDestination(title.getNodeName() + ":Material.Alpha");
  alpha.addKeyframe(0.0f, 0.0f, "LINEAR", "LINEAR");
  alpha.addKeyframe(0.5f, 1.0f, "LINEAR", "LINEAR");
  options->setName("fadeIn");
  title.begin();
  title.transactionBegin(ScriptValue::text(u"LT_IN"));
  title.animate(objectValue(animation), "", objectValue(options));
  title.transactionEnd();
  const int32_t id = title.commandCallback();
  title.end();
  return id;
}

int run(const std::shared_ptr<CTitleManager>& manager, PrintedEvents& events) {
  CClient& client = *manager->getClient();
  manager->setProject(u"Evening News");
  auto title = manager->createTitle(ScriptValue::text(u"LowerThirds"));  // connects
  std::printf("connected to %s, server version %s, bridge %s\n", client.getServerAddress().c_str(),
              client.getServerVersion().c_str(), CTitleManager::getBridgeVersion().c_str());
  title->setTitleName("lower third");
  buildLowerThird(*title);
  title->enableZoneNotification();

  const int32_t id = fadeIn(*manager, *title);
  if (!pumpUntil([&] { return !events.commands.empty() && events.commands.back() == id; })) {
    std::fprintf(stderr, "title_lower_third: callback %d did not come within 5 s\n", id);
    return 1;
  }
  client.setZoneState("LowerThirds", 1);
  std::printf("zone LowerThirds reads back as %d\n", client.getZoneState("LowerThirds"));
  if (!pumpUntil([&] { return events.zoneChanges > 0; })) {
    std::fprintf(stderr, "title_lower_third: no zone change within 5 s\n");
    return 1;
  }
  // Remote objects are found by their full path.
  const std::string node = "Root/" + title->getNodeName() + "/name";
  const ScriptValue name = client.roaGet(node, "Text");
  std::printf("remote %s.Text = %s\n", node.c_str(), text(name.getText()).c_str());
  std::printf("found by name: %s\n", manager->findTitleByName("lower third") ? "yes" : "no");
  title->destroy();
  std::printf("destroyed; found by name: %s\n",
              manager->findTitleByName("lower third") ? "yes" : "no");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  registerClientClasses();
  auto manager = std::make_shared<CTitleManager>();
  if (argc > 1) manager->getClient()->setServerAddress(argv[1]);
  auto events = std::make_shared<PrintedEvents>();
  manager->getEvents().connect(events);
  manager->getClient()->getEvents().connect(events);
  manager->addCommandCallbackListener(std::make_shared<PrintedCallback>());
  try {
    return run(manager, *events);
  } catch (const AFCException& e) {
    std::fprintf(stderr, "title_lower_third: %s\n", e.what());
    return 1;
  }
}
