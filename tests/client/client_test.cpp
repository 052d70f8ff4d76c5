#include "client/client.h"

#include <gtest/gtest.h>

#include <sstream>

#include "client/object_attribute.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "tests/client/scripted_session.h"
#include "tests/foundation/errlog_capture.h"
#include "tests/support/failure_text.h"

TEST(Client, AddsSlavesInOrderAndRefusesChains) {
  CapturedErrLog log;
  ScriptedSession master, other, a, b;
  master.addSlave(&a);
  master.addSlave(&b);
  EXPECT_EQ(master.getSlaves(), (std::vector<VXClient*>{&a, &b}));
  EXPECT_TRUE(a.isSlave());

  a.addSlave(&other);
  other.addSlave(&b);
  EXPECT_TRUE(a.getSlaves().empty());
  EXPECT_TRUE(other.getSlaves().empty());
  EXPECT_FALSE(other.isSlave());
  EXPECT_EQ(log.messages(), (std::vector<std::string>{"Slave cannot have other slaves",
                                                      "Slave already belongs to other master"}));
}

TEST(Client, RemovesOneSlaveOrAll) {
  ScriptedSession master, a, b, lonely;
  lonely.removeSlave(nullptr);
  master.addSlave(&a);
  master.addSlave(&b);
  master.removeSlave(&a);
  EXPECT_EQ(master.getSlaves(), std::vector<VXClient*>{&b});
  EXPECT_FALSE(a.isSlave());
  master.removeSlave(nullptr);
  EXPECT_TRUE(master.getSlaves().empty());
  EXPECT_FALSE(b.isSlave());
}

TEST(Client, RemovingAnotherMastersSlaveClearsItsFlag) {
  ScriptedSession master, other, s;
  master.addSlave(&s);
  other.removeSlave(&s);
  EXPECT_FALSE(s.isSlave());
  EXPECT_EQ(master.getSlaves(), std::vector<VXClient*>{&s});
  other.addSlave(&s);  // leaves the old master's list for the new one
  EXPECT_TRUE(master.getSlaves().empty());
  EXPECT_EQ(other.getSlaves(), std::vector<VXClient*>{&s});
}

TEST(Client, RegistersEveryScriptCallableName) {
  const AFCClass* record = AFCClass::forName("VXClient");
  ASSERT_NE(record, nullptr);
  std::istringstream names(
      "setSilentErrors beginImmediate stopAnimation transactionBegin setServerAddress "
      "getServerAddress connect close isOpen setProject getProject setHead getHead "
      "rollback flush createNode copyNode deleteNode deleteEffect renameTarget "
      "setAttribute activateAnimation activateAnimationObj accelerateAnimation "
      "storeAnimation removeAnimation createEffect activateEffect loadScene transactionEnd "
      "transactionRoll transactionStop setZoneState1 getZoneState1 commandCallback "
      "sendMessage preview addErrLogListener removeErrLogListener addConnectListener "
      "removeConnectListener addDisconnectListener removeDisconnectListener "
      "addCommandCallbackListener removeCommandCallbackListener addServerMessageListener "
      "removeServerMessageListener getServerVersion getServerVersionMajor "
      "getServerVersionMinor getServerVersionBuild remoteSetAttr remoteSetAttrAsync "
      "remoteGetAttr remoteInvoke fetchGet preload");
  std::string name;
  int count = 0;
  for (; names >> name; ++count) {
    EXPECT_NE(record->findMethod(name), nullptr) << name;
  }
  EXPECT_EQ(count, 57);
  EXPECT_EQ(record->getMethods().size(), 57u);
}

TEST(Client, MethodsByNameForwardToTheOperations) {
  ScriptedSession session;
  session.serverSends(versionReply(2296, 4, 99) + packetBytes(18));
  const AFCClass& record = *session.getClass();
  EXPECT_EQ(record.invoke(&session, "connect", {})->toString(), "True");
  EXPECT_EQ(record.invoke(&session, "getServerVersion", {})->toString(), "2296.4");
  EXPECT_EQ(record.invoke(&session, "getServerVersionBuild", {})->toString(), "99");

  AFCAttributeString address("deleted"), name("Proj");
  AFCAttribute* const one[] = {&address};
  EXPECT_EQ(record.invoke(&session, "deleteNode", one), nullptr);
  AFCAttribute* const project[] = {&name};
  record.invoke(&session, "setProject", project);
  EXPECT_EQ(record.invoke(&session, "getProject", {})->toString(), "Proj");
  EXPECT_EQ(session.writtenTypes(), (std::vector<uint32_t>{5, 17, 0, 0}));

  std::vector<std::string> calls;
  RecordingListener listener(&calls);
  VXObjectAttribute listenerArg(static_cast<VXServerMessageListener*>(&listener));
  AFCAttribute* const listenerArgs[] = {&listenerArg};
  record.invoke(&session, "addServerMessageListener", listenerArgs);
  session.callServerMessageListeners("hi");
  EXPECT_EQ(calls, std::vector<std::string>{"l: message hi"});
}

TEST(Client, SetHeadMakesTheSessionASlaveOfTheGivenOne) {
  ScriptedSession master, slave;
  VXObjectAttribute head(&master);
  AFCAttribute* const args[] = {&head};
  slave.getClass()->invoke(&slave, "setHead", args);
  EXPECT_EQ(master.getSlaves(), std::vector<VXClient*>{&slave});
  EXPECT_EQ(slave.getClass()->invoke(&slave, "getHead", {})->toString(), "True");
}

TEST(Client, AMissingObjectArgumentIsNamed) {
  ScriptedSession session;
  VXObjectAttribute nothing;
  AFCAttribute* const args[] = {&nothing};
  EXPECT_EQ(failureOf<AFCNullPointerException>(
                [&] { session.getClass()->invoke(&session, "addConnectListener", args); }),
            "Null pointer to VXConnectListener");
  AFCAttributeInt32 number(1);
  AFCAttribute* const wrongKind[] = {&number};
  EXPECT_THROW(session.getClass()->invoke(&session, "addConnectListener", wrongKind),
               AFCInvalidArgumentTypeException);
}

TEST(Client, ASlaveThatDiesLeavesItsMastersList) {
  ScriptedSession master;
  auto slave = std::make_unique<ScriptedSession>();
  master.addSlave(slave.get());
  slave.reset();
  EXPECT_TRUE(master.getSlaves().empty());
}
