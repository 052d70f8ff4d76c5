#include "client/listeners.h"

#include "client/object_attribute.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"

void vxCallListener(AFCObject& listener, std::string_view method, AFCAttribute& argument) {
  AFCAttribute* const args[] = {&argument};
  listener.getClass()->invoke(&listener, method, args);
}

namespace {

// The record of an abstract listener class with its one callback. Text and numbers are taken
// from any attribute kind, objects only from an object attribute.
template <class Listener>
const AFCClass& listenerClass(const char* name, const char* method, const AFCClass* param,
                              void (*call)(Listener&, const AFCAttribute&)) {
  return (new AFCClassEx(name, &AFCObject::staticClass()))
      ->method(method, {param}, nullptr,
               [call](AFCObject* self, AFCArguments args) -> AFCResult {
                 call(dynamic_cast<Listener&>(*self), *args[0]);
                 return nullptr;
               })
      .registerClass();
}

template <class T>
const T& objectArgument(const AFCAttribute& argument) {
  const T* object = static_cast<const VXObjectAttribute&>(argument).getAs<T>();
  if (object == nullptr) throw AFCNullPointerException(T::staticClass().getName());
  return *object;
}

}  // namespace

const AFCClass& VXConnectListener::staticClass() {
  static const AFCClass& record = listenerClass<VXConnectListener>(
      "VXConnectListener", "onServerConnect", nullptr,
      [](VXConnectListener& l, const AFCAttribute& a) { l.onServerConnect(a.getInt()); });
  return record;
}

const AFCClass& VXDisconnectListener::staticClass() {
  static const AFCClass& record = listenerClass<VXDisconnectListener>(
      "VXDisconnectListener", "onServerDisconnect", nullptr,
      [](VXDisconnectListener& l, const AFCAttribute& a) { l.onServerDisconnect(a.getInt()); });
  return record;
}

const AFCClass& VXErrLogListener::staticClass() {
  static const AFCClass& record = listenerClass<VXErrLogListener>(
      "VXErrLogListener", "onNewErrLog", &VXObjectAttribute::staticClass(),
      [](VXErrLogListener& l, const AFCAttribute& a) {
        l.onNewErrLog(objectArgument<AFCErrLogEvent>(a));
      });
  return record;
}

const AFCClass& VXPickResultListener::staticClass() {
  static const AFCClass& record = listenerClass<VXPickResultListener>(
      "VXPickResultListener", "onPickResult", nullptr,
      [](VXPickResultListener& l, const AFCAttribute& a) { l.onPickResult(a.toString()); });
  return record;
}

const AFCClass& VXServerMessageListener::staticClass() {
  static const AFCClass& record = listenerClass<VXServerMessageListener>(
      "VXServerMessageListener", "onMessage", nullptr,
      [](VXServerMessageListener& l, const AFCAttribute& a) { l.onMessage(a.toString()); });
  return record;
}

const AFCClass& VXCallbackCommandListener::staticClass() {
  static const AFCClass& record = listenerClass<VXCallbackCommandListener>(
      "VXCallbackCommandListener", "onCommandCallback", nullptr,
      [](VXCallbackCommandListener& l, const AFCAttribute& a) { l.onCommandCallback(a.getInt()); });
  return record;
}

const AFCClass& VXZoneStateListener::staticClass() {
  static const AFCClass& record = listenerClass<VXZoneStateListener>(
      "VXZoneStateListener", "onZoneStateChange", &VXObjectAttribute::staticClass(),
      [](VXZoneStateListener& l, const AFCAttribute& a) {
        l.onZoneStateChange(objectArgument<VXZonesStateObject>(a).getZones());
      });
  return record;
}
