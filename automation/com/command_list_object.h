#pragma once
// IVXCommandList over the core's CCommandList, the creatable class VXBr5.CommandList (threading
// model "Both"; also made by the title manager's createCommandList). A title's execute takes the
// recorded list back through commandListOf.
//
// One thread records at a time (the core holds no lock). Members report through the error
// boundary with IVXCommandList's id; animate with an object that is not an animation answers
// E_NOINTERFACE without an error object.
#include "automation/com/dispatch_object.h"
#include "automation/command_list.h"
#include "vxbr5.h"

// This module's own way to the core list behind an IVXCommandList; not in the type library, so
// only objects of this module answer it.
class ICoreCommandList : public IUnknown {
 public:
  virtual CCommandList& STDMETHODCALLTYPE core() = 0;
};
__CRT_UUID_DECL(ICoreCommandList, 0xa25bd17a, 0x4098, 0x4263, 0x8e, 0x83, 0x1b, 0x09, 0x8a, 0x08,
                0x22, 0x62)

class CCommandListObject final : public CDispatchObject<IVXCommandList, ICoreCommandList> {
 public:
  HRESULT STDMETHODCALLTYPE animate(VARIANT animNameOrObject, BSTR address,
                                    VARIANT options) override;
  HRESULT STDMETHODCALLTYPE stopAnimation(BSTR animName, BSTR address) override;
  HRESULT STDMETHODCALLTYPE set(BSTR address, BSTR attrName, VARIANT value) override;
  HRESULT STDMETHODCALLTYPE createNode(BSTR nodeType, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE createEffect(BSTR effectType, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE copyNode(BSTR srcAddress, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE renameNode(BSTR address, BSTR newName) override;
  HRESULT STDMETHODCALLTYPE deleteNode(BSTR address) override;
  HRESULT STDMETHODCALLTYPE deleteEffect(BSTR address) override;
  HRESULT STDMETHODCALLTYPE loadScene(BSTR sceneName, BSTR newAddress) override;
  HRESULT STDMETHODCALLTYPE doAction(BSTR actionName) override;
  HRESULT STDMETHODCALLTYPE beginTransaction(VARIANT transactionName) override;
  HRESULT STDMETHODCALLTYPE endTransaction() override;
  HRESULT STDMETHODCALLTYPE rollTransaction(VARIANT transactionName) override;
  HRESULT STDMETHODCALLTYPE callback(LONG* id) override;
  HRESULT STDMETHODCALLTYPE preload(BSTR address) override;
  HRESULT STDMETHODCALLTYPE beginSequencePreview(int previewID) override;
  HRESULT STDMETHODCALLTYPE endSequencePreview(int previewID) override;
  HRESULT STDMETHODCALLTYPE captureStillPreview(int previewID) override;
  HRESULT STDMETHODCALLTYPE setZoneState(LONG state) override;

  CCommandList& STDMETHODCALLTYPE core() override { return list_; }

 private:
  // Runs record(list_) inside the error boundary; S_OK when it returns.
  template <class Record>
  HRESULT record(Record&& record) noexcept;

  CCommandList list_;
};

// The core list behind list when it is an object of this module; else (null included) throws
// AFCNullPointerException "CCommandList".
CCommandList& commandListOf(IUnknown* list);
