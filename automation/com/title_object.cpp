#include "automation/com/title_object.h"

#include "automation/com/bstr_text.h"
#include "automation/com/call_result_code.h"
#include "automation/com/command_list_object.h"
#include "automation/com/error_boundary.h"
#include "automation/com/script_variant.h"
#include "automation/com/title_manager_object.h"

CTitleObject::CTitleObject(std::shared_ptr<CTitle> title, CTitleManagerObject& manager) noexcept
    : title_(std::move(title)),
      manager_(manager),
      managerReference_(addRef<IVXTitleManager>(&manager)) {}

CTitleObject::~CTitleObject() { manager_.forgetTitleObject(*title_); }

template <class Call>
HRESULT CTitleObject::call(Call&& call) noexcept {
  return comBoundary(IID_IVXTitle, [&] {
    call(*title_);
    return S_OK;
  });
}

HRESULT CTitleObject::setTitleName(BSTR name) {
  return call([&](CTitle& title) { title.setTitleName(stringFromBstr(name)); });
}

HRESULT CTitleObject::destroy() {
  return call([](CTitle& title) { title.destroy(); });
}

HRESULT CTitleObject::begin() {
  return call([](CTitle& title) { title.begin(); });
}

HRESULT CTitleObject::end() {
  return call([](CTitle& title) { title.end(); });
}

HRESULT CTitleObject::loadScene(BSTR sceneName, BSTR newAddress) {
  return call([&](CTitle& title) {
    title.loadScene(stringFromBstr(sceneName), stringFromBstr(newAddress));
  });
}

HRESULT CTitleObject::createNode(BSTR nodeType, BSTR newAddress) {
  return call([&](CTitle& title) {
    title.createNode(stringFromBstr(nodeType), stringFromBstr(newAddress));
  });
}

HRESULT CTitleObject::createEffect(BSTR effectType, BSTR newAddress) {
  return call([&](CTitle& title) {
    title.createEffect(stringFromBstr(effectType), stringFromBstr(newAddress));
  });
}

HRESULT CTitleObject::copyNode(BSTR srcAddress, BSTR newAddress) {
  return call([&](CTitle& title) {
    title.copyNode(stringFromBstr(srcAddress), stringFromBstr(newAddress));
  });
}

HRESULT CTitleObject::deleteNode(BSTR nodeName) {
  return call([&](CTitle& title) { title.deleteNode(stringFromBstr(nodeName)); });
}

HRESULT CTitleObject::deleteEffect(BSTR effectName) {
  return call([&](CTitle& title) { title.deleteEffect(stringFromBstr(effectName)); });
}

HRESULT CTitleObject::set(BSTR address, BSTR attrName, VARIANT value) {
  return call([&](CTitle& title) {
    title.set(stringFromBstr(address), stringFromBstr(attrName), scriptValueFromVariant(value));
  });
}

HRESULT CTitleObject::animate(VARIANT animNameOrObject, BSTR address, VARIANT options) {
  return comBoundary(IID_IVXTitle, [&] {
    return hresultOf(title_->animate(scriptArgumentFromVariant(animNameOrObject),
                                     stringFromBstr(address), scriptArgumentFromVariant(options)));
  });
}

HRESULT CTitleObject::stopAnimation(BSTR animName, BSTR address) {
  return call([&](CTitle& title) {
    title.stopAnimation(stringFromBstr(animName), stringFromBstr(address));
  });
}

HRESULT CTitleObject::callSceneAction(BSTR actionName) {
  return call([&](CTitle& title) { title.callSceneAction(stringFromBstr(actionName)); });
}

HRESULT CTitleObject::transactionBegin(VARIANT transactionName) {
  return call(
      [&](CTitle& title) { title.transactionBegin(scriptArgumentFromVariant(transactionName)); });
}

HRESULT CTitleObject::transactionEnd() {
  return call([](CTitle& title) { title.transactionEnd(); });
}

HRESULT CTitleObject::transactionRoll(VARIANT transactionName) {
  return call(
      [&](CTitle& title) { title.transactionRoll(scriptArgumentFromVariant(transactionName)); });
}

HRESULT CTitleObject::commandCallback(LONG* id) {
  if (id == nullptr) return E_POINTER;
  return call([&](CTitle& title) { *id = title.commandCallback(); });
}

HRESULT CTitleObject::getZone(BSTR* name) {
  if (name == nullptr) return E_POINTER;
  return call([&](CTitle& title) { *name = bstrFromString(title.getZone()).release(); });
}

HRESULT CTitleObject::setProject(BSTR name) {
  return comBoundary(IID_IVXTitle,
                     [&] { return title_->setProject(u16FromBstr(name)) ? S_OK : S_FALSE; });
}

HRESULT CTitleObject::setDestroyTransactionName(BSTR name) {
  return call([&](CTitle& title) { title.setDestroyTransactionName(stringFromBstr(name)); });
}

HRESULT CTitleObject::previewSchedule(int previewID) {
  return call([&](CTitle& title) { title.previewSchedule(previewID); });
}

HRESULT CTitleObject::destroyInTransaction(VARIANT transactionName) {
  return call([&](CTitle& title) {
    title.destroyInTransaction(scriptArgumentFromVariant(transactionName));
  });
}

HRESULT CTitleObject::preload(BSTR nodeName) {
  return call([&](CTitle& title) { title.preload(stringFromBstr(nodeName)); });
}

HRESULT CTitleObject::previewScheduleBegin(int previewID) {
  return call([&](CTitle& title) { title.previewScheduleBegin(previewID); });
}

HRESULT CTitleObject::previewScheduleEnd(int previewID) {
  return call([&](CTitle& title) { title.previewScheduleEnd(previewID); });
}

HRESULT CTitleObject::renameNode(BSTR nodeAddress, BSTR newNodeName) {
  return call([&](CTitle& title) {
    title.renameNode(stringFromBstr(nodeAddress), stringFromBstr(newNodeName));
  });
}

HRESULT CTitleObject::enableZoneNotification() {
  return call([](CTitle& title) { title.enableZoneNotification(); });
}

HRESULT CTitleObject::execute(IVXCommandList* cmdList, VARIANT nodePrefix) {
  return call([&](CTitle& title) {
    title.execute(&commandListOf(cmdList), scriptArgumentFromVariant(nodePrefix));
  });
}
