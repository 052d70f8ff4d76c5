#pragma once
// IVXAnimationOptions over the core's CAnimationOptions: not a creatable class, made by the title
// manager's createAnimationOptions through makeAnimationOptionsObject. getNative hands the
// CAnimationOptions's address to the other objects of this module.
//
// The script's thread. No member validates; only memory can fail one (E_OUTOFMEMORY), and an
// out pointer that is null gives E_POINTER.
#include "automation/animation_objects.h"
#include "automation/com/dispatch_object.h"
#include "vxbr5.h"

class CAnimationOptionsObject final : public CDispatchObject<IVXAnimationOptions> {
 public:
  HRESULT STDMETHODCALLTYPE getNative(hyper* native) override;
  HRESULT STDMETHODCALLTYPE get_offset(float* pVal) override;
  HRESULT STDMETHODCALLTYPE put_offset(float newVal) override;
  HRESULT STDMETHODCALLTYPE get_skip(float* pVal) override;
  HRESULT STDMETHODCALLTYPE put_skip(float newVal) override;
  HRESULT STDMETHODCALLTYPE get_end(float* pVal) override;
  HRESULT STDMETHODCALLTYPE put_end(float newVal) override;
  HRESULT STDMETHODCALLTYPE get_playMode(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE put_playMode(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE get_enableFinish(LONG* pVal) override;
  HRESULT STDMETHODCALLTYPE put_enableFinish(LONG newVal) override;
  HRESULT STDMETHODCALLTYPE get_name(BSTR* pVal) override;
  HRESULT STDMETHODCALLTYPE put_name(BSTR newVal) override;
  HRESULT STDMETHODCALLTYPE get_watchID(int* pVal) override;
  HRESULT STDMETHODCALLTYPE put_watchID(int newVal) override;

 private:
  // Writes what read() gives into out, inside the error boundary.
  template <class Value, class Read>
  HRESULT get(Value* out, Read read) const;
  template <class Write>
  HRESULT put(Write write);

  CAnimationOptions options_;
};

// A new options object with the defaults, as the title manager hands it out.
HRESULT makeAnimationOptionsObject(IVXAnimationOptions** options) noexcept;
