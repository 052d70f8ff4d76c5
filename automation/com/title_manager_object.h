#pragma once
// IVXTitleManager over the core's CTitleManager, the creatable class VXBr5.TitleManager. Its
// IVXCmdEvents connection point feeds the core manager's event sinks (onCommand after the
// callback handlers). It hands out one client object for its life and one title object per
// core title while a script holds it: titles_ maps each core title to its live object, which
// leaves the map when it goes.
//
// Apartment-threaded: every call on the script's thread. Members report through the error
// boundary with IVXTitleManager's id; the animation, options and command-list factories answer
// S_FALSE with a null object when the object cannot be made, the find calls S_OK with a null
// object when there is no such title.
#include <map>
#include <memory>

#include "automation/com/com_handles.h"
#include "automation/com/dispatch_handler.h"
#include "automation/com/event_source.h"
#include "automation/title_manager.h"
#include "vxbr5.h"

class CTitleObject;

class CTitleManagerObject final : public CDispatchObjectWithEvents<IVXTitleManager> {
 public:
  CTitleManagerObject();

  HRESULT STDMETHODCALLTYPE setProject(BSTR name) override;
  HRESULT STDMETHODCALLTYPE createTitle(VARIANT zoneName, IVXTitle** title) override;
  HRESULT STDMETHODCALLTYPE getClient(IVXClient** client) override;
  HRESULT STDMETHODCALLTYPE addCommandCallbackListener(IDispatch* handler) override;
  HRESULT STDMETHODCALLTYPE put_onCommandCallback(IDispatch* handler) override;
  HRESULT STDMETHODCALLTYPE createAnimation(IVXAnimation** anim) override;
  HRESULT STDMETHODCALLTYPE createAnimationOptions(IVXAnimationOptions** anim) override;
  HRESULT STDMETHODCALLTYPE findTitleByZone(BSTR zoneName, IVXTitle** title) override;
  HRESULT STDMETHODCALLTYPE findTitleByName(BSTR titleName, IVXTitle** title) override;
  HRESULT STDMETHODCALLTYPE createTitleInChannel(BSTR zoneName, int channelID,
                                                 IVXTitle** title) override;
  HRESULT STDMETHODCALLTYPE getBridgeVersion(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE createCommandList(IVXCommandList** cmdList) override;

  // Called by a title object as it goes.
  void forgetTitleObject(const CTitle& title) noexcept { titles_.erase(&title); }

 private:
  // Runs get() inside the error boundary and hands out the title object of what it returns.
  template <class Get>
  HRESULT title(IVXTitle** out, Get&& get) noexcept;
  // The live object of title (made when there is none); null for a null title.
  void putTitle(std::shared_ptr<CTitle> title, IVXTitle** out);

  std::shared_ptr<CTitleManager> manager_;
  CEventConnection connection_;
  CUniqueRef<IVXClient> client_;
  std::map<const CTitle*, CTitleObject*> titles_;
};
