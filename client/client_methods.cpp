// The class record "VXClient": one method per script-callable operation, each unpacking its
// arguments from attribute values, forwarding to the operation of the same name and packing
// the result into one.
#include "client/client.h"

#include <optional>

#include "client/object_attribute.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"

namespace {

using Args = AFCArguments;

VXClient& self(AFCObject* object) { return dynamic_cast<VXClient&>(*object); }

std::string text(const AFCAttribute* value) {
  return value->isDefined() ? value->toString() : std::string();
}
int32_t int32(const AFCAttribute* value) { return value->getInt(); }
bool flag(const AFCAttribute* value) { return value->getChannelValue(0) != 0.0; }
float real(const AFCAttribute* value) { return static_cast<float>(value->getDoubleOrZero()); }
int64_t int64(const AFCAttribute* value) {
  if (const auto* typed = dynamic_cast<const AFCAttributeInt64*>(value)) {
    return typed->isDefined() ? typed->get() : 0;
  }
  return static_cast<int64_t>(value->getDoubleOrZero());
}
template <class T>
T& object(const AFCAttribute* value) {
  T* found = static_cast<const VXObjectAttribute*>(value)->getAs<T>();
  if (found == nullptr) throw AFCNullPointerException(T::staticClass().getName());
  return *found;
}

AFCResult textResult(std::string value) {
  return std::make_unique<AFCAttributeString>(std::move(value));
}
AFCResult intResult(int64_t value) {
  return std::make_unique<AFCAttributeInt32>(static_cast<int32_t>(value));
}
AFCResult boolResult(bool value) { return std::make_unique<AFCAttributeBool>(value); }

const AFCClass* const any = nullptr;
const AFCClass* textType() { return &AFCAttributeString::staticClass(); }
const AFCClass* intType() { return &AFCAttributeInt32::staticClass(); }
const AFCClass* boolType() { return &AFCAttributeBool::staticClass(); }
const AFCClass* objType() { return &VXObjectAttribute::staticClass(); }

// A method with no result.
AFCClassEx& action(AFCClassEx& record, std::string name, std::vector<const AFCClass*> params,
                   std::function<void(VXClient&, Args)> call) {
  return record.method(std::move(name), std::move(params), nullptr,
                       [call = std::move(call)](AFCObject* o, Args a) -> AFCResult {
                         call(self(o), a);
                         return nullptr;
                       });
}

void addConnectionMethods(AFCClassEx& c) {
  action(c, "setSilentErrors", {any}, [](VXClient& s, Args a) { s.setSilentErrors(flag(a[0])); });
  action(c, "setServerAddress", {any}, [](VXClient& s, Args a) { s.setServerAddress(text(a[0])); });
  c.method("getServerAddress", {}, textType(),
           [](AFCObject* o, Args) { return textResult(self(o).getServerAddress()); });
  c.method("connect", {}, boolType(),
           [](AFCObject* o, Args) { return boolResult(self(o).connect()); });
  c.method("close", {}, boolType(), [](AFCObject* o, Args) { return boolResult(self(o).close()); });
  c.method("isOpen", {}, boolType(),
           [](AFCObject* o, Args) { return boolResult(self(o).isOpen()); });
  action(c, "setProject", {any}, [](VXClient& s, Args a) { s.setProject(text(a[0])); });
  c.method("getProject", {}, textType(),
           [](AFCObject* o, Args) { return textResult(self(o).getProject()); });
  // The head of a session is its master: setHead makes this session a slave of the given one.
  action(c, "setHead", {objType()},
         [](VXClient& s, Args a) { object<VXClient>(a[0]).addSlave(&s); });
  c.method("getHead", {}, boolType(),
           [](AFCObject* o, Args) { return boolResult(self(o).isSlave()); });
  action(c, "setZoneState1", {objType()},
         [](VXClient& s, Args a) { s.setZoneState1(object<VXZonesStateObject>(a[0]).getZones()); });
  action(c, "getZoneState1", {objType()},
         [](VXClient& s, Args a) { s.getZoneState1(object<VXZonesStateObject>(a[0]).getZones()); });
  c.method("getServerVersion", {}, textType(),
           [](AFCObject* o, Args) { return textResult(self(o).getServerVersion()); });
  c.method("getServerVersionMajor", {}, intType(),
           [](AFCObject* o, Args) { return intResult(self(o).getServerVersionMajor()); });
  c.method("getServerVersionMinor", {}, intType(),
           [](AFCObject* o, Args) { return intResult(self(o).getServerVersionMinor()); });
  c.method("getServerVersionBuild", {}, intType(),
           [](AFCObject* o, Args) { return intResult(self(o).getServerVersionBuild()); });
}

void addListenerMethods(AFCClassEx& c) {
  const std::vector<const AFCClass*> one = {objType()};
  action(c, "addErrLogListener", one,
         [](VXClient& s, Args a) { s.addErrLogListener(&object<VXErrLogListener>(a[0])); });
  action(c, "removeErrLogListener", one,
         [](VXClient& s, Args a) { s.removeErrLogListener(&object<VXErrLogListener>(a[0])); });
  action(c, "addConnectListener", one,
         [](VXClient& s, Args a) { s.addConnectListener(&object<VXConnectListener>(a[0])); });
  action(c, "removeConnectListener", one,
         [](VXClient& s, Args a) { s.removeConnectListener(&object<VXConnectListener>(a[0])); });
  action(c, "addDisconnectListener", one,
         [](VXClient& s, Args a) { s.addDisconnectListener(&object<VXDisconnectListener>(a[0])); });
  action(c, "removeDisconnectListener", one, [](VXClient& s, Args a) {
    s.removeDisconnectListener(&object<VXDisconnectListener>(a[0]));
  });
  action(c, "addCommandCallbackListener", one, [](VXClient& s, Args a) {
    s.addCommandCallbackListener(&object<VXCallbackCommandListener>(a[0]));
  });
  action(c, "removeCommandCallbackListener", one, [](VXClient& s, Args a) {
    s.removeCommandCallbackListener(&object<VXCallbackCommandListener>(a[0]));
  });
  action(c, "addServerMessageListener", one, [](VXClient& s, Args a) {
    s.addServerMessageListener(&object<VXServerMessageListener>(a[0]));
  });
  action(c, "removeServerMessageListener", one, [](VXClient& s, Args a) {
    s.removeServerMessageListener(&object<VXServerMessageListener>(a[0]));
  });
}

void addNodeMethods(AFCClassEx& c) {
  c.method("createNode", {any, any, any}, textType(), [](AFCObject* o, Args a) {
    return textResult(self(o).createNode(text(a[0]), text(a[1]), text(a[2])));
  });
  c.method("createEffect", {any, any, any}, textType(), [](AFCObject* o, Args a) {
    return textResult(self(o).createEffect(text(a[0]), text(a[1]), text(a[2])));
  });
  action(c, "copyNode", {any, any, any},
         [](VXClient& s, Args a) { s.copyNode(text(a[0]), text(a[1]), text(a[2])); });
  action(c, "deleteNode", {any}, [](VXClient& s, Args a) { s.deleteNode(text(a[0])); });
  action(c, "deleteEffect", {any}, [](VXClient& s, Args a) { s.deleteEffect(text(a[0])); });
  action(c, "activateEffect", {any}, [](VXClient& s, Args a) { s.activateEffect(text(a[0])); });
  action(c, "renameTarget", {any, any},
         [](VXClient& s, Args a) { s.renameTarget(text(a[0]), text(a[1])); });
  action(c, "setAttribute", {any, any, any}, [](VXClient& s, Args a) {
    s.setAttribute(text(a[0]), text(a[1]), std::unique_ptr<AFCAttribute>(a[2]->clone()));
  });
  action(c, "loadScene", {any, any, any},
         [](VXClient& s, Args a) { s.loadScene(text(a[0]), text(a[1]), text(a[2])); });
}

void addAnimationMethods(AFCClassEx& c) {
  using Options = VXActivateAnimationOptionsObject;
  action(c, "activateAnimation", {any, any, objType()}, [](VXClient& s, Args a) {
    s.activateAnimation(text(a[0]), text(a[1]), object<Options>(a[2]).getOptions());
  });
  action(c, "activateAnimationObj", {objType(), any, objType()}, [](VXClient& s, Args a) {
    s.activateAnimationObj(&object<VXAnimation>(a[0]), text(a[1]),
                           object<Options>(a[2]).getOptions());
  });
  action(c, "stopAnimation", {any, any, any},
         [](VXClient& s, Args a) { s.stopAnimation(text(a[0]), text(a[1]), int64(a[2])); });
  action(c, "accelerateAnimation", {any, any, any, any}, [](VXClient& s, Args a) {
    s.accelerateAnimation(text(a[0]), text(a[1]), real(a[2]), int64(a[3]));
  });
  action(c, "storeAnimation", {any, any, objType()}, [](VXClient& s, Args a) {
    s.storeAnimation(text(a[0]), text(a[1]), &object<VXAnimation>(a[2]));
  });
  action(c, "removeAnimation", {any, any},
         [](VXClient& s, Args a) { s.removeAnimation(text(a[0]), text(a[1])); });
}

void addTransactionMethods(AFCClassEx& c) {
  c.method("beginImmediate", {any}, intType(),
           [](AFCObject* o, Args a) { return intResult(self(o).beginImmediate(flag(a[0]))); });
  c.method("rollback", {any}, boolType(),
           [](AFCObject* o, Args a) { return boolResult(self(o).rollback(int32(a[0]))); });
  c.method("flush", {any}, intType(),
           [](AFCObject* o, Args a) { return intResult(self(o).flush(int32(a[0]))); });
  action(c, "transactionBegin", {any, any},
         [](VXClient& s, Args a) { s.transactionBegin(text(a[0]), flag(a[1])); });
  action(c, "transactionEnd", {}, [](VXClient& s, Args) { s.transactionEnd(); });
  action(c, "transactionRoll", {any}, [](VXClient& s, Args a) { s.transactionRoll(text(a[0])); });
  action(c, "transactionStop", {any}, [](VXClient& s, Args a) { s.transactionStop(text(a[0])); });
  c.method("commandCallback", {}, intType(),
           [](AFCObject* o, Args) { return intResult(self(o).commandCallback()); });
  action(c, "sendMessage", {any}, [](VXClient& s, Args a) { s.sendMessage(text(a[0])); });
  action(c, "preview", {any}, [](VXClient& s, Args a) { s.preview(int32(a[0])); });
}

// The name of the local class a remote class's properties matched, or undefined.
AFCResult classResult(const std::optional<VXROAClassInfo>& matched) {
  if (!matched) return std::make_unique<AFCAttributeString>();
  return textResult(matched->localClass->getName());
}

void addRemoteMethods(AFCClassEx& c) {
  action(c, "remoteSetAttr", {any, any},
         [](VXClient& s, Args a) { s.remoteSetAttr(text(a[0]), a[1]); });
  action(c, "remoteSetAttrAsync", {any, any},
         [](VXClient& s, Args a) { s.remoteSetAttrAsync(text(a[0]), a[1]); });
  c.method("remoteGetAttr", {any}, nullptr,
           [](AFCObject* o, Args a) { return self(o).remoteGetAttr(text(a[0])); });
  // Scripts reach argument-less methods this way; calls with arguments go through the
  // operation itself.
  c.method("remoteInvoke", {any}, nullptr,
           [](AFCObject* o, Args a) { return self(o).remoteInvoke(text(a[0]), {}); });
  c.method("fetchGet", {any}, textType(), [](AFCObject* o, Args a) {
    return classResult(self(o).remoteEnumProps(text(a[0])));
  });
  c.method("preload", {any}, textType(), [](AFCObject* o, Args a) {
    return classResult(self(o).remoteEnumProps(text(a[0])));
  });
}

}  // namespace

const AFCClass& VXClient::staticClass() {
  static const AFCClass& record = []() -> const AFCClass& {
    auto* c = new AFCClassEx("VXClient", &AFCObject::staticClass());
    addConnectionMethods(*c);
    addListenerMethods(*c);
    addNodeMethods(*c);
    addAnimationMethods(*c);
    addTransactionMethods(*c);
    addRemoteMethods(*c);
    return c->registerClass();
  }();
  return record;
}
