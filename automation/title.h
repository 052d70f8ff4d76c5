#pragma once
// A title: one graphic on the render server, a Group node of its own under "Root", visible and
// tagged with the zone it plays in. Each call turns into command records on the builder of the
// manager's session, on the title's channel; script addresses are relative to the title node.
// The node is made on first use (set-up, "_Br5_Title_%d" from a process-wide counter) and made
// anew under the next number after a destroy.
//
// Made by the title manager, which sets zone and channel. Called on the script's thread only;
// the node counter is the one piece shared between titles and is atomic. Methods throw the
// builder's and the value conversion's exceptions, AFCNullPointerException "CCommandList" for a
// missing command list and VX2Br5TitleException when no transaction name can be found. Results
// that are not errors come back as values (setProject's set-up flag, animate's CCallResult).
// The destructor is the final release: it destroys the node once more and leaves the manager's
// list, swallowing every error.
#include <cstdint>
#include <memory>
#include <string>

#include "automation/call_result.h"
#include "automation/script_value.h"
#include "foundation/exception.h"

class CCommandList;
class CTitleHost;
class VXCommandListBuilder;
class VXCommandListBeginEndBuilder;

// A transaction was asked for, but neither the argument nor the title's zone names one.
class VX2Br5TitleException : public AFCException {
 public:
  VX2Br5TitleException() : AFCException("BadArg: No transaction name") {}
};

class CTitle {
 public:
  // Throws AFCNullPointerException "CTitleHost" without a host.
  explicit CTitle(std::shared_ptr<CTitleHost> host);
  ~CTitle();
  CTitle(const CTitle&) = delete;
  CTitle& operator=(const CTitle&) = delete;

  // The number of the node set up last in this process (0 before the first set-up); the next
  // set-up takes this plus one.
  static int32_t lastNodeNumber();

  // Set by the manager. A zone change is sent to the node when the title is set up.
  void setChannel(int32_t channel) { channel_ = channel; }
  int32_t getChannel() const { return channel_; }
  void setZone(const std::string& zoneName);
  const std::string& getTitleName() const { return titleName_; }
  // The node on the server; empty until the title is set up.
  const std::string& getNodeName() const { return nodeName_; }
  bool isDestroyed() const { return destroyed_; }

  // The script's methods.
  void setTitleName(const std::string& name) { titleName_ = name; }
  void destroy();
  void begin();
  void end();
  void loadScene(const std::string& sceneName, const std::string& newAddress);
  void createNode(const std::string& nodeType, const std::string& newAddress);
  void createEffect(const std::string& effectType, const std::string& newAddress);
  void copyNode(const std::string& srcAddress, const std::string& newAddress);
  void deleteNode(const std::string& nodeName);
  void deleteEffect(const std::string& effectName);
  void set(const std::string& address, const std::string& attrName, const ScriptValue& value);
  // By name (Text) or with the animation object behind an object value; options from an options
  // object, the defaults for anything else. NoInterface when an object is not of the kind asked
  // for; any other animation value sends nothing.
  CCallResult animate(const ScriptValue& animNameOrObject, const std::string& address,
                      const ScriptValue& options);
  void stopAnimation(const std::string& animName, const std::string& address);
  void callSceneAction(const std::string& actionName);
  // The name is the value's text, else the zone; VX2Br5TitleException when both are empty.
  void transactionBegin(const ScriptValue& transactionName);
  void transactionEnd();
  void transactionRoll(const ScriptValue& transactionName);
  // The id the server's callback will carry.
  int32_t commandCallback();
  const std::string& getZone() const { return zoneName_; }
  // True when the title is set up and the project went out now; false when it only waits for
  // the set-up.
  bool setProject(const std::u16string& name);
  void setDestroyTransactionName(const std::string& name) { destroyTransactionName_ = name; }
  void previewSchedule(int32_t previewID);
  void previewScheduleBegin(int32_t previewID);
  void previewScheduleEnd(int32_t previewID);
  void destroyInTransaction(const ScriptValue& transactionName);
  void preload(const std::string& nodeName);
  // The address is taken as it is, not under the title node.
  void renameNode(const std::string& nodeAddress, const std::string& newNodeName);
  void enableZoneNotification();
  // Replays the list as one action of this title: every command under the title node (and the
  // prefix, when nodePrefix is a text) and in its zone.
  void execute(const CCommandList* cmdList, const ScriptValue& nodePrefix);

 private:
  // The manager's builder, set to this title's channel.
  VXCommandListBeginEndBuilder& builder();
  // The title node's path followed by the address, setting the title up first when needed.
  std::string resolve(const std::string& address);
  void setUp(VXCommandListBeginEndBuilder& builder);
  // Names the node and writes the set-up commands.
  void writeSetUp(VXCommandListBuilder& out);
  void writeProject(VXCommandListBuilder& out);
  std::string transactionName(const ScriptValue& value) const;
  void destroyIn(const std::string& transactionName);
  void deleteNodeIn(VXCommandListBeginEndBuilder& builder, const std::string& transactionName);

  std::shared_ptr<CTitleHost> host_;
  std::string zoneName_;
  std::string titleName_;
  std::string nodeName_;
  std::u16string projectName_;
  std::string destroyTransactionName_;
  int32_t channel_ = 0;
  int32_t beginDepth_ = 0;
  bool foreignProjectCreated_ = false;
  bool destroyed_ = false;
};
