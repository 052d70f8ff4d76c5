#include "automation/com/command_list_object.h"

#include "automation/com/bstr_text.h"
#include "automation/com/call_result_code.h"
#include "automation/com/error_boundary.h"
#include "automation/com/script_variant.h"

template <class Record>
HRESULT CCommandListObject::record(Record&& record) noexcept {
  return comBoundary(IID_IVXCommandList, [&] {
    record(list_);
    return S_OK;
  });
}

HRESULT CCommandListObject::animate(VARIANT animNameOrObject, BSTR address, VARIANT options) {
  return comBoundary(IID_IVXCommandList, [&] {
    return hresultOf(list_.animate(scriptArgumentFromVariant(animNameOrObject),
                                   stringFromBstr(address), scriptArgumentFromVariant(options)));
  });
}

HRESULT CCommandListObject::stopAnimation(BSTR animName, BSTR address) {
  return record([&](CCommandList& list) {
    list.stopAnimation(stringFromBstr(animName), stringFromBstr(address));
  });
}

HRESULT CCommandListObject::set(BSTR address, BSTR attrName, VARIANT value) {
  return record([&](CCommandList& list) {
    list.set(stringFromBstr(address), stringFromBstr(attrName), scriptValueFromVariant(value));
  });
}

HRESULT CCommandListObject::createNode(BSTR nodeType, BSTR newAddress) {
  return record([&](CCommandList& list) {
    list.createNode(stringFromBstr(nodeType), stringFromBstr(newAddress));
  });
}

HRESULT CCommandListObject::createEffect(BSTR effectType, BSTR newAddress) {
  return record([&](CCommandList& list) {
    list.createEffect(stringFromBstr(effectType), stringFromBstr(newAddress));
  });
}

HRESULT CCommandListObject::copyNode(BSTR srcAddress, BSTR newAddress) {
  return record([&](CCommandList& list) {
    list.copyNode(stringFromBstr(srcAddress), stringFromBstr(newAddress));
  });
}

HRESULT CCommandListObject::renameNode(BSTR address, BSTR newName) {
  return record([&](CCommandList& list) {
    list.renameNode(stringFromBstr(address), stringFromBstr(newName));
  });
}

HRESULT CCommandListObject::deleteNode(BSTR address) {
  return record([&](CCommandList& list) { list.deleteNode(stringFromBstr(address)); });
}

HRESULT CCommandListObject::deleteEffect(BSTR address) {
  return record([&](CCommandList& list) { list.deleteEffect(stringFromBstr(address)); });
}

HRESULT CCommandListObject::loadScene(BSTR sceneName, BSTR newAddress) {
  return record([&](CCommandList& list) {
    list.loadScene(stringFromBstr(sceneName), stringFromBstr(newAddress));
  });
}

HRESULT CCommandListObject::doAction(BSTR actionName) {
  return record([&](CCommandList& list) { list.doAction(stringFromBstr(actionName)); });
}

HRESULT CCommandListObject::beginTransaction(VARIANT transactionName) {
  return record([&](CCommandList& list) {
    list.beginTransaction(scriptArgumentFromVariant(transactionName));
  });
}

HRESULT CCommandListObject::endTransaction() {
  return record([](CCommandList& list) { list.endTransaction(); });
}

HRESULT CCommandListObject::rollTransaction(VARIANT transactionName) {
  return record([&](CCommandList& list) {
    list.rollTransaction(scriptArgumentFromVariant(transactionName));
  });
}

HRESULT CCommandListObject::callback(LONG* id) {
  if (id == nullptr) return E_POINTER;
  return record([&](CCommandList& list) { *id = list.callback(); });
}

HRESULT CCommandListObject::preload(BSTR address) {
  return record([&](CCommandList& list) { list.preload(stringFromBstr(address)); });
}

HRESULT CCommandListObject::beginSequencePreview(int previewID) {
  return record([&](CCommandList& list) { list.beginSequencePreview(previewID); });
}

HRESULT CCommandListObject::endSequencePreview(int previewID) {
  return record([&](CCommandList& list) { list.endSequencePreview(previewID); });
}

HRESULT CCommandListObject::captureStillPreview(int previewID) {
  return record([&](CCommandList& list) { list.captureStillPreview(previewID); });
}

HRESULT CCommandListObject::setZoneState(LONG state) {
  return record([&](CCommandList& list) { list.setZoneState(state); });
}

CCommandList& commandListOf(IUnknown* list) {
  ICoreCommandList* ours = nullptr;
  if (list == nullptr ||
      FAILED(list->QueryInterface(__uuidof(ICoreCommandList), reinterpret_cast<void**>(&ours)))) {
    throw AFCNullPointerException("CCommandList");
  }
  // The caller holds list, which keeps the object alive while it uses the core list.
  const CUniqueRef<ICoreCommandList> owned(ours);
  return ours->core();
}
