#include "automation/client_object.h"

#include <cstdlib>

#include "automation/async_processor.h"
#include "client/register.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/errlog.h"

CClient::CClient() {
  // The session reads records by class name: every class it may meet is known before the first
  // packet, whatever the host has or has not registered.
  registerClientClasses();
  session_.addDisconnectListener(this);
  session_.addPickResultListener(this);
  session_.addServerMessageListener(&messageRelay_);
}

CClient::~CClient() {
  // Listeners first: no script is called from a closing object.
  session_.removeServerMessageListener(&messageRelay_);
  session_.removePickResultListener(this);
  session_.removeDisconnectListener(this);
  session_.close();
}

void CClient::setZoneState(const std::string& zoneName, int32_t state) {
  VXZonesState zones;
  zones.set(zoneName, state != 0);
  session_.setZoneState1(zones);
}

int32_t CClient::getZoneState(const std::string& zoneName) {
  VXZonesState zones;
  zones.set(zoneName, false);
  session_.getZoneState1(zones);
  return zones.get(zoneName) ? 1 : 0;
}

void CClient::switchCamera(const std::string& cameraName) {
  const AFCAttributeString name(cameraName);
  const AFCAttribute* const args[] = {&name};
  invoke("::CameraManager", "switchCamera", args);
}

int32_t CClient::previewGenerateID() { return replyNumber(invoke("::Preview", "generateID")); }

void CClient::previewGetStillImageFile(int32_t previewID, const std::string& fileName) {
  const AFCAttributeInt32 id(previewID);
  const AFCAttributeString file(fileName);
  const AFCAttribute* const args[] = {&id, &file};
  invoke("::Preview", "getStillImageFile", args);
}

int32_t CClient::previewGetSequenceImageFiles(int32_t previewID, const std::string& fileName) {
  const AFCAttributeInt32 id(previewID);
  const AFCAttributeString file(fileName);
  const AFCAttribute* const args[] = {&id, &file};
  return replyNumber(invoke("::Preview", "getSequenceImageFile", args));
}

void CClient::writeRenderPicture() { invoke("::Control", "writePicture"); }

void CClient::writeScene() { invoke("::Control", "writeScene"); }

void CClient::sendPickRequest(float x, float y) {
  const AFCAttributeFloat first(x);
  const AFCAttributeFloat second(y);
  const AFCAttribute* const args[] = {&first, &second};
  invoke("::Pick", "sendRequest", args);
}

void CClient::sendPickRequestTag(const std::string& tagName) {
  const AFCAttributeString tag(tagName);
  const AFCAttribute* const args[] = {&tag};
  invoke("::Pick", "sendRequest", args);
}

void CClient::roaSet(const std::string& object, const std::string& field,
                     const ScriptValue& value) {
  const std::unique_ptr<AFCAttribute> attribute = value.toAttribute();
  session_.remoteSetAttr(object + "." + field, attribute.get());
}

ScriptValue CClient::roaGet(const std::string& object, const std::string& field) {
  return ScriptValue::fromAttribute(session_.remoteGetAttr(object + "." + field).get());
}

ScriptValue CClient::roaCall(const std::string& object, const std::string& funcName,
                             const std::vector<ScriptValue>& args) {
  std::vector<std::unique_ptr<AFCAttribute>> attributes;
  std::vector<const AFCAttribute*> pointers;
  for (const ScriptValue& arg : args) {
    attributes.push_back(arg.toAttribute());
    pointers.push_back(attributes.back().get());
  }
  return ScriptValue::fromAttribute(invoke(object, funcName, pointers).get());
}

void CClient::setOnDisconnectListener(std::shared_ptr<ScriptHandler> handler) {
  disconnectHandlers_.replace(std::move(handler));
}

void CClient::setOnPickResultListener(std::shared_ptr<ScriptHandler> handler) {
  pickResultHandlers_.replace(std::move(handler));
}

void CClient::setOnMessageListener(std::shared_ptr<ScriptHandler> handler) {
  messageHandlers_.replace(std::move(handler));
}

std::shared_ptr<CAsyncProcessor> CClient::createAsyncProcessor() {
  if (asyncProcessor_) return asyncProcessor_;
  auto processor = std::make_shared<CAsyncProcessor>();
  session_.setAsyncRegistry(&processor->getRegistry());
  asyncProcessor_ = std::move(processor);
  return asyncProcessor_;
}

void CClient::onServerDisconnect(int32_t) {
  disconnectHandlers_.invokeAll({});
  events_.fire([](CmdEventSink& sink) { sink.onDisconnect(); });
}

void CClient::onPickResult(const std::string& result) {
  const ScriptValue xml[] = {ScriptValue::text(ScriptValue::fromBytes(result))};
  pickResultHandlers_.invokeAll(xml);
  events_.fire([&xml](CmdEventSink& sink) { sink.onPickResult(xml[0].getText()); });
}

void CClient::onMessage(const std::string& message) {
  // Messages come in bursts: the argument keeps its text storage from one to the next. A message
  // that comes while a handler runs (one that waited for a reply) has an argument of its own.
  ScriptValue nested;
  ScriptValue& text = messageCalls_ == 0 ? messageArgument_ : nested;
  text.setTextFromBytes(message);
  ++messageCalls_;
  if (events_.size() > 0) {
    events_.fire([&text](CmdEventSink& sink) { sink.onMessage(text.getText()); });
  }
  const bool succeeded = messageHandlers_.invokeAll({&text, 1});
  --messageCalls_;
  if (!succeeded) AFC_ERRLOG_STREAM(AFC_ERRLOG_ERROR, "Bridge5") << "onMessageListener failed\n";
}

void CClient::onZoneStateChange(const VXZonesState& zones) {
  for (const auto& [zone, state] : zones.getZones()) {
    const std::u16string name = ScriptValue::fromBytes(zone);
    const int32_t zoneState = state ? 1 : 0;
    events_.fire([&](CmdEventSink& sink) { sink.onZoneChange(name, zoneState); });
  }
}

std::unique_ptr<AFCAttribute> CClient::invoke(const std::string& object, const std::string& method,
                                              std::span<const AFCAttribute* const> args) {
  return session_.remoteInvoke(object + "." + method, args);
}

int32_t CClient::replyNumber(const std::unique_ptr<AFCAttribute>& reply) {
  if (!reply) return 0;
  if (const auto* number = dynamic_cast<const AFCAttributeInt32*>(reply.get())) {
    return number->get();
  }
  return static_cast<int32_t>(std::strtol(reply->toString().c_str(), nullptr, 10));
}
