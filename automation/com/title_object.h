#pragma once
// IVXTitle over the core's CTitle: not creatable, made by the title manager's createTitle and
// createTitleInChannel and handed back by its find calls. One object per core title while a
// script holds it: the title manager object keeps a map from each core title to its live
// object, and this object leaves the map when it goes (it holds its manager object, so the map
// outlives it).
//
// The script's thread. Members report through the error boundary with IVXTitle's id; setProject
// answers S_FALSE while the title is not set up, animate E_NOINTERFACE without an error object
// for an object of the wrong kind.
#include <memory>

#include "automation/com/com_handles.h"
#include "automation/com/dispatch_object.h"
#include "automation/title.h"
#include "vxbr5.h"

class CTitleManagerObject;

class CTitleObject final : public CDispatchObject<IVXTitle> {
 public:
  CTitleObject(std::shared_ptr<CTitle> title, CTitleManagerObject& manager) noexcept;
  ~CTitleObject() override;

  HRESULT STDMETHODCALLTYPE setTitleName(BSTR name) override;
  HRESULT STDMETHODCALLTYPE destroy() override;
  HRESULT STDMETHODCALLTYPE begin() override;
  HRESULT STDMETHODCALLTYPE end() override;
  HRESULT STDMETHODCALLTYPE loadScene(BSTR sceneName, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE createNode(BSTR nodeType, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE createEffect(BSTR effectType, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE copyNode(BSTR srcAddress, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE deleteNode(BSTR nodeName) override;
  HRESULT STDMETHODCALLTYPE deleteEffect(BSTR effectName) override;
  HRESULT STDMETHODCALLTYPE set(BSTR address, BSTR attrName, VARIANT value) override;
  HRESULT STDMETHODCALLTYPE animate(VARIANT animNameOrObject, BSTR address,
                                    VARIANT options) override;
  HRESULT STDMETHODCALLTYPE stopAnimation(BSTR animName, BSTR address) override;
  HRESULT STDMETHODCALLTYPE callSceneAction(BSTR actionName) override;
  HRESULT STDMETHODCALLTYPE transactionBegin(VARIANT transactionName) override;
  HRESULT STDMETHODCALLTYPE transactionEnd() override;
  HRESULT STDMETHODCALLTYPE transactionRoll(VARIANT transactionName) override;
  HRESULT STDMETHODCALLTYPE commandCallback(LONG* id) override;
  HRESULT STDMETHODCALLTYPE getZone(BSTR* name) override;
  HRESULT STDMETHODCALLTYPE setProject(BSTR name) override;
  HRESULT STDMETHODCALLTYPE setDestroyTransactionName(BSTR name) override;
  HRESULT STDMETHODCALLTYPE previewSchedule(int previewID) override;
  HRESULT STDMETHODCALLTYPE destroyInTransaction(VARIANT transactionName) override;
  HRESULT STDMETHODCALLTYPE preload(BSTR nodeName) override;
  HRESULT STDMETHODCALLTYPE previewScheduleBegin(int previewID) override;
  HRESULT STDMETHODCALLTYPE previewScheduleEnd(int previewID) override;
  HRESULT STDMETHODCALLTYPE renameNode(BSTR nodeAddress, BSTR newNodeName) override;
  HRESULT STDMETHODCALLTYPE enableZoneNotification() override;
  HRESULT STDMETHODCALLTYPE execute(IVXCommandList* cmdList, VARIANT nodePrefix) override;

 private:
  // Runs call(*title_) inside the error boundary; S_OK when it returns.
  template <class Call>
  HRESULT call(Call&& call) noexcept;

  std::shared_ptr<CTitle> title_;
  CTitleManagerObject& manager_;
  CUniqueRef<IVXTitleManager> managerReference_;
};
