// A lower-third on air, the way an automation application does it:
//   1. connect and follow what the server reports (error log, zone changes, callbacks),
//   2. set up the title's node, its background scene and its two texts in one action,
//   3. fade it in with a keyframed animation inside a transaction, with a callback behind it,
//   4. wait for that callback: the server has run everything before it,
//   5. switch the title's zone on and read the zone state back,
//   6. read a remote attribute and call a remote method.
// Usage: lower_third [HOST[:PORT]]   (else VX2HOST, else localhost:6260)
#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "client/client_tcp.h"
#include "client/listeners.h"
#include "client/register.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/errlog_event.h"
#include "foundation/fd_handler.h"

namespace {

const std::string kTitle = "Root/_Br5_Title_1";
const std::string kZone = "LowerThirds";

// Everything the server tells us, printed as it comes.
class Events : public VXErrLogListener,
               public VXZoneStateListener,
               public VXCallbackCommandListener {
 public:
  std::vector<int32_t> callbacks;

  void onNewErrLog(const AFCErrLogEvent& entry) override {
    std::printf("event: server error log: %s\n", entry.getMessage().c_str());
  }
  void onZoneStateChange(const VXZonesState& zones) override {
    for (const auto& [zone, on] : zones.getZones()) {
      std::printf("event: zone %s is %s\n", zone.c_str(), on ? "on" : "off");
    }
  }
  void onCommandCallback(int32_t id) override {
    std::printf("event: callback %d\n", id);
    callbacks.push_back(id);
  }
};

AFCRef<VXAnimation> fadeIn() {
  AFCRef<VXAnimation> animation(new VXAnimation);
  VXAnimationChannel& alpha = animation->createChannel();
  alpha.setDestination(kTitle + ":Material.Alpha");
  alpha.addKeyframe(0, 0.0f, VX_INTERPOLATION_LINEAR, VX_INTERPOLATION_LINEAR);
  alpha.addKeyframe(500000, 1.0f, VX_INTERPOLATION_LINEAR, VX_INTERPOLATION_LINEAR);  // 0.5 s
  return animation;
}

void setUpTitle(VXClientTcp& session) {
  session.beginImmediate(false);  // everything until end() travels as one action
  session.createNode("Group", "_Br5_Title_1", "Root");
  session.loadScene("LowerThirdBackground", kTitle, "bg");
  session.createNode("Text", "name", kTitle);
  session.createNode("Text", "role", kTitle);
  session.setAttribute(kTitle + "/name", "Text",
                       std::make_unique<AFCAttributeWString>(u"Jane Doe"));
  session.setAttribute(kTitle + "/role", "Text",
                       std::make_unique<AFCAttributeWString>(u"Reporter, \u00C5lesund"));
  auto position = std::make_unique<AFCAttributeVec3f>();
  position->fromString("[-0.6, -0.7, 0]");
  session.setAttribute(kTitle, "Position", std::move(position));
  session.end();
}

int32_t fadeInWithCallback(VXClientTcp& session) {
  session.beginImmediate(false);
  session.transactionBegin("LT_IN", false);
  VXActivateAnimationOptions options;
  options.name = "fadeIn";
  session.activateAnimationObj(fadeIn(), kTitle, options);
  session.transactionEnd();
  const int32_t id = session.commandCallback();
  session.end();
  return id;
}

// Pumps the thread's descriptor handler, where the server's events arrive, until the callback
// came or the time is up.
bool waitForCallback(AFCFDHandler& handler, const Events& events, int32_t id,
                     std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
  while (std::chrono::steady_clock::now() < deadline) {
    for (int32_t seen : events.callbacks) {
      if (seen == id) return true;
    }
    handler.mainLoop(20);
  }
  return false;
}

void switchZoneOn(VXClientTcp& session) {
  VXZonesState on;
  on.set(kZone, true);
  session.setZoneState1(on);
  VXZonesState asked;
  asked.set(kZone, false);
  session.getZoneState1(asked);
  std::printf("zone %s reads back as %s\n", kZone.c_str(), asked.get(kZone) ? "on" : "off");
}

void queryRemoteObjects(VXClientTcp& session) {
  const std::unique_ptr<AFCAttribute> text = session.remoteGetAttr(kTitle + "/name.Text");
  std::printf("remote %s/name.Text = %s\n", kTitle.c_str(),
              text ? text->toString().c_str() : "<none>");
  const std::unique_ptr<AFCAttribute> id = session.remoteInvoke("::Preview.generateID", {});
  std::printf("remote ::Preview.generateID = %s\n", id ? id->toString().c_str() : "<none>");
}

int run(AFCFDHandler& handler, VXClientTcp& session, Events& events) {
  session.addErrLogListener(&events);
  session.addZoneNotifyListener(kZone, &events);
  session.addCommandCallbackListener(&events);
  if (!session.connect()) {
    std::fprintf(stderr, "lower_third: %s\n", session.getConnectFailure().c_str());
    return 1;
  }
  std::printf("connected to %s, server version %s\n", session.getServerAddress().c_str(),
              session.getServerVersion().c_str());

  setUpTitle(session);
  const int32_t id = fadeInWithCallback(session);
  if (!waitForCallback(handler, events, id, std::chrono::seconds(5))) {
    std::fprintf(stderr, "lower_third: callback %d did not come within 5 s\n", id);
    return 1;
  }
  switchZoneOn(session);
  queryRemoteObjects(session);
  handler.mainLoop(100);  // late events, such as the zone notification
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  registerClientClasses();
  Events events;
  int status = 1;
  AFCDefaultFDHandler handler;  // the server's events arrive where this thread pumps it
  VXClientTcp session;
  if (argc > 1) session.setServerAddress(argv[1]);
  try {
    status = run(handler.get(), session, events);
  } catch (const AFCException& e) {
    std::fprintf(stderr, "lower_third: %s\n", e.what());
  }
  session.close();
  return status;
}
