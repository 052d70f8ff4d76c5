#pragma once
// IVXClient over the core's CClient, the hidden class "client": not creatable, handed out by the
// title manager's getClient (one object per manager). Its IVXCmdEvents connection point feeds
// the core client's event sinks (disconnections, pick results, zone changes, messages).
//
// The script's thread. Members report through the error boundary with IVXClient's id.
#include <memory>

#include "automation/client_object.h"
#include "automation/com/dispatch_handler.h"
#include "automation/com/event_source.h"
#include "vxbr5.h"

class CClientObject final : public CDispatchObjectWithEvents<IVXClient> {
 public:
  explicit CClientObject(std::shared_ptr<CClient> client)
      : client_(std::move(client)), connection_(client_->getEvents(), events_) {}

  HRESULT STDMETHODCALLTYPE setServerAddress(BSTR hostname) override;
  HRESULT STDMETHODCALLTYPE connect() override;
  HRESULT STDMETHODCALLTYPE disconnect() override;
  HRESULT STDMETHODCALLTYPE setZoneState(BSTR zoneName, LONG state) override;
  HRESULT STDMETHODCALLTYPE getZoneState(BSTR zoneName, LONG* state) override;
  HRESULT STDMETHODCALLTYPE getServerVersion(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE switchCamera(BSTR cameraName) override;
  HRESULT STDMETHODCALLTYPE previewGenerateID(int* previewID) override;
  HRESULT STDMETHODCALLTYPE previewSchedule(int previewID) override;
  HRESULT STDMETHODCALLTYPE previewGetStillImageFile(int previewID, BSTR fileName) override;
  HRESULT STDMETHODCALLTYPE writeRenderPicture() override;
  HRESULT STDMETHODCALLTYPE put_onDisconnectListener(IDispatch* handler) override;
  HRESULT STDMETHODCALLTYPE previewGetSequenceImageFiles(int previewID, BSTR fileName,
                                                         int* numberOfImages) override;
  HRESULT STDMETHODCALLTYPE put_onPickResultListener(IDispatch* handler) override;
  HRESULT STDMETHODCALLTYPE sendPickRequest(float x, float y) override;
  HRESULT STDMETHODCALLTYPE getServerAddress(BSTR* hostname) override;
  HRESULT STDMETHODCALLTYPE sendPickRequestTag(BSTR tagName) override;
  HRESULT STDMETHODCALLTYPE writeScene() override;
  HRESULT STDMETHODCALLTYPE put_onMessageListener(IDispatch* handler) override;
  HRESULT STDMETHODCALLTYPE roaSet(BSTR object, BSTR field, VARIANT value) override;
  HRESULT STDMETHODCALLTYPE roaGet(BSTR object, BSTR field, VARIANT* value) override;
  HRESULT STDMETHODCALLTYPE roaCall(BSTR object, BSTR funcName, SAFEARRAY* args,
                                    VARIANT* result) override;
  HRESULT STDMETHODCALLTYPE setPassword(BSTR password) override;
  HRESULT STDMETHODCALLTYPE createAsyncProcessor(IVXAsyncProcessor** processor) override;

 private:
  // Runs call(*client_) inside the error boundary; S_OK when it returns.
  template <class Call>
  HRESULT call(Call&& call) noexcept;

  std::shared_ptr<CClient> client_;
  CEventConnection connection_;
};
