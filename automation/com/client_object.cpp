#include "automation/com/client_object.h"

#include <vector>

#include "automation/com/async_processor_object.h"
#include "automation/com/bstr_text.h"
#include "automation/com/error_boundary.h"
#include "automation/com/script_variant.h"
#include "client/client_exceptions.h"
#include "foundation/exception.h"

namespace {
// The members of a one-dimensional array of VARIANTs, in index order; null gives none.
std::vector<ScriptValue> scriptValuesFromArray(SAFEARRAY* array) {
  std::vector<ScriptValue> values;
  if (array == nullptr) return values;
  VARTYPE type = VT_EMPTY;
  throwIfFailed(SafeArrayGetVartype(array, &type));
  if (type != VT_VARIANT || SafeArrayGetDim(array) != 1) {
    throw AFCIllegalArgumentException("unsupported value type");
  }
  LONG lower = 0;
  LONG upper = -1;
  throwIfFailed(SafeArrayGetLBound(array, 1, &lower));
  throwIfFailed(SafeArrayGetUBound(array, 1, &upper));
  for (LONG index = lower; index <= upper; ++index) {
    CUniqueVariant member;
    throwIfFailed(SafeArrayGetElement(array, &index, member.put()));
    values.push_back(scriptValueFromVariant(member.get()));
  }
  return values;
}

void putText(BSTR* out, const std::string& text) { *out = bstrFromString(text).release(); }
}  // namespace

template <class Call>
HRESULT CClientObject::call(Call&& call) noexcept {
  return comBoundary(IID_IVXClient, [&] {
    call(*client_);
    return S_OK;
  });
}

HRESULT CClientObject::setServerAddress(BSTR hostname) {
  return call([&](CClient& client) { client.setServerAddress(stringFromBstr(hostname)); });
}

HRESULT CClientObject::connect() {
  return call([](CClient& client) {
    if (!client.connect()) throw VXClientException(client.getConnectFailure());
  });
}

HRESULT CClientObject::disconnect() {
  return call([](CClient& client) { client.disconnect(); });
}

HRESULT CClientObject::setZoneState(BSTR zoneName, LONG state) {
  return call([&](CClient& client) { client.setZoneState(stringFromBstr(zoneName), state); });
}

HRESULT CClientObject::getZoneState(BSTR zoneName, LONG* state) {
  if (state == nullptr) return E_POINTER;
  return call([&](CClient& client) { *state = client.getZoneState(stringFromBstr(zoneName)); });
}

HRESULT CClientObject::getServerVersion(BSTR* pVal) {
  if (pVal == nullptr) return E_POINTER;
  return call([&](CClient& client) { putText(pVal, client.getServerVersion()); });
}

HRESULT CClientObject::switchCamera(BSTR cameraName) {
  return call([&](CClient& client) { client.switchCamera(stringFromBstr(cameraName)); });
}

HRESULT CClientObject::previewGenerateID(int* previewID) {
  if (previewID == nullptr) return E_POINTER;
  return call([&](CClient& client) { *previewID = client.previewGenerateID(); });
}

HRESULT CClientObject::previewSchedule(int previewID) {
  return call([&](CClient& client) { client.previewSchedule(previewID); });
}

HRESULT CClientObject::previewGetStillImageFile(int previewID, BSTR fileName) {
  return call([&](CClient& client) {
    client.previewGetStillImageFile(previewID, stringFromBstr(fileName));
  });
}

HRESULT CClientObject::writeRenderPicture() {
  return call([](CClient& client) { client.writeRenderPicture(); });
}

HRESULT CClientObject::put_onDisconnectListener(IDispatch* handler) {
  return call([&](CClient& client) { client.setOnDisconnectListener(handlerOf(handler)); });
}

HRESULT CClientObject::previewGetSequenceImageFiles(int previewID, BSTR fileName,
                                                    int* numberOfImages) {
  if (numberOfImages == nullptr) return E_POINTER;
  return call([&](CClient& client) {
    *numberOfImages = client.previewGetSequenceImageFiles(previewID, stringFromBstr(fileName));
  });
}

HRESULT CClientObject::put_onPickResultListener(IDispatch* handler) {
  return call([&](CClient& client) { client.setOnPickResultListener(handlerOf(handler)); });
}

HRESULT CClientObject::sendPickRequest(float x, float y) {
  return call([&](CClient& client) { client.sendPickRequest(x, y); });
}

HRESULT CClientObject::getServerAddress(BSTR* hostname) {
  if (hostname == nullptr) return E_POINTER;
  return call([&](CClient& client) { putText(hostname, client.getServerAddress()); });
}

HRESULT CClientObject::sendPickRequestTag(BSTR tagName) {
  return call([&](CClient& client) { client.sendPickRequestTag(stringFromBstr(tagName)); });
}

HRESULT CClientObject::writeScene() {
  return call([](CClient& client) { client.writeScene(); });
}

HRESULT CClientObject::put_onMessageListener(IDispatch* handler) {
  return call([&](CClient& client) { client.setOnMessageListener(handlerOf(handler)); });
}

HRESULT CClientObject::roaSet(BSTR object, BSTR field, VARIANT value) {
  return call([&](CClient& client) {
    client.roaSet(stringFromBstr(object), stringFromBstr(field), scriptValueFromVariant(value));
  });
}

HRESULT CClientObject::roaGet(BSTR object, BSTR field, VARIANT* value) {
  if (value == nullptr) return E_POINTER;
  return call([&](CClient& client) {
    *value = variantFromScriptValue(client.roaGet(stringFromBstr(object), stringFromBstr(field)))
                 .release();
  });
}

HRESULT CClientObject::roaCall(BSTR object, BSTR funcName, SAFEARRAY* args, VARIANT* result) {
  if (result == nullptr) return E_POINTER;
  return call([&](CClient& client) {
    const ScriptValue reply = client.roaCall(stringFromBstr(object), stringFromBstr(funcName),
                                             scriptValuesFromArray(args));
    *result = variantFromScriptValue(reply).release();
  });
}

HRESULT CClientObject::setPassword(BSTR password) {
  return call([&](CClient& client) { client.setPassword(stringFromBstr(password)); });
}

HRESULT CClientObject::createAsyncProcessor(IVXAsyncProcessor** processor) {
  if (processor == nullptr) return E_POINTER;
  *processor = nullptr;
  return comBoundary(IID_IVXClient, [&] {
    return makeObject<CAsyncProcessorObject>(IID_IVXAsyncProcessor,
                                             reinterpret_cast<void**>(processor),
                                             client_->createAsyncProcessor());
  });
}
