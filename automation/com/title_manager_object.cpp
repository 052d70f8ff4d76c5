#include "automation/com/title_manager_object.h"

#include "automation/com/animation_object.h"
#include "automation/com/animation_options_object.h"
#include "automation/com/bstr_text.h"
#include "automation/com/client_object.h"
#include "automation/com/command_list_object.h"
#include "automation/com/error_boundary.h"
#include "automation/com/module_version.h"
#include "automation/com/script_variant.h"
#include "automation/com/title_object.h"

namespace {
// A factory's answer: S_FALSE with a null object when made is null (the core could not make
// the object), else the object made by makeObject.
template <class Object, class Interface, class Core>
HRESULT factoryResult(const std::shared_ptr<Core>& made, Interface** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (!made) return S_FALSE;
  return comBoundary(__uuidof(IVXTitleManager), [&] {
    return makeObject<Object>(__uuidof(Interface), reinterpret_cast<void**>(out));
  });
}
}  // namespace

CTitleManagerObject::CTitleManagerObject()
    : manager_(std::make_shared<CTitleManager>()), connection_(manager_->getEvents(), events_) {}

template <class Get>
HRESULT CTitleManagerObject::title(IVXTitle** out, Get&& get) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return comBoundary(IID_IVXTitleManager, [&] {
    putTitle(get(*manager_), out);
    return S_OK;
  });
}

void CTitleManagerObject::putTitle(std::shared_ptr<CTitle> title, IVXTitle** out) {
  if (!title) return;
  const auto live = titles_.find(title.get());
  if (live != titles_.end()) {
    throwIfFailed(live->second->QueryInterface(IID_IVXTitle, reinterpret_cast<void**>(out)));
    return;
  }
  const CTitle* key = title.get();
  auto* made = new CTitleObject(std::move(title), *this);
  const CUniqueRef<IVXTitle> owner(made);
  titles_.emplace(key, made);
  throwIfFailed(made->QueryInterface(IID_IVXTitle, reinterpret_cast<void**>(out)));
}

HRESULT CTitleManagerObject::setProject(BSTR name) {
  return comBoundary(IID_IVXTitleManager, [&] {
    manager_->setProject(u16FromBstr(name));
    return S_OK;
  });
}

HRESULT CTitleManagerObject::createTitle(VARIANT zoneName, IVXTitle** out) {
  return title(out, [&](CTitleManager& manager) {
    return manager.createTitle(scriptArgumentFromVariant(zoneName));
  });
}

HRESULT CTitleManagerObject::getClient(IVXClient** client) {
  if (client == nullptr) return E_POINTER;
  *client = nullptr;
  return comBoundary(IID_IVXTitleManager, [&] {
    if (client_.get() == nullptr && manager_->getClient()) {
      throwIfFailed(makeObject<CClientObject>(IID_IVXClient, reinterpret_cast<void**>(client),
                                              manager_->getClient()));
      client_ = CUniqueRef<IVXClient>(*client);
    }
    *client = addRef(client_.get()).release();
    return S_OK;
  });
}

HRESULT CTitleManagerObject::addCommandCallbackListener(IDispatch* handler) {
  return comBoundary(IID_IVXTitleManager, [&] {
    manager_->addCommandCallbackListener(handlerOf(handler));
    return S_OK;
  });
}

HRESULT CTitleManagerObject::put_onCommandCallback(IDispatch* handler) {
  return comBoundary(IID_IVXTitleManager, [&] {
    manager_->setOnCommandCallback(handlerOf(handler));
    return S_OK;
  });
}

HRESULT CTitleManagerObject::createAnimation(IVXAnimation** anim) {
  return factoryResult<CAnimationObject>(CTitleManager::createAnimation(), anim);
}

HRESULT CTitleManagerObject::createAnimationOptions(IVXAnimationOptions** anim) {
  if (anim == nullptr) return E_POINTER;
  const HRESULT result = makeAnimationOptionsObject(anim);
  return SUCCEEDED(result) ? result : S_FALSE;
}

HRESULT CTitleManagerObject::findTitleByZone(BSTR zoneName, IVXTitle** out) {
  return title(out, [&](CTitleManager& manager) {
    return manager.findTitleByZone(stringFromBstr(zoneName));
  });
}

HRESULT CTitleManagerObject::findTitleByName(BSTR titleName, IVXTitle** out) {
  return title(out, [&](CTitleManager& manager) {
    return manager.findTitleByName(stringFromBstr(titleName));
  });
}

HRESULT CTitleManagerObject::createTitleInChannel(BSTR zoneName, int channelID, IVXTitle** out) {
  return title(out, [&](CTitleManager& manager) {
    return manager.createTitleInChannel(stringFromBstr(zoneName), channelID);
  });
}

HRESULT CTitleManagerObject::getBridgeVersion(BSTR* pVal) {
  if (pVal == nullptr) return E_POINTER;
  return comBoundary(IID_IVXTitleManager, [&] {
    *pVal = bstrFromString(moduleVersionText() + " x64").release();
    return S_OK;
  });
}

HRESULT CTitleManagerObject::createCommandList(IVXCommandList** cmdList) {
  return factoryResult<CCommandListObject>(CTitleManager::createCommandList(), cmdList);
}
