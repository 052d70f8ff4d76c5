#pragma once
// IVXAsyncProcessor over the core's CAsyncProcessor, which the client object makes once: a
// script without a message loop waits and processes the session's events on its own thread.
//
// waitEvent and process on the script's thread; close from any thread (it only signals).
// Members report through the error boundary with IVXAsyncProcessor's id.
#include <memory>

#include "automation/async_processor.h"
#include "automation/com/dispatch_object.h"
#include "vxbr5.h"

class CAsyncProcessorObject final : public CDispatchObject<IVXAsyncProcessor> {
 public:
  explicit CAsyncProcessorObject(std::shared_ptr<CAsyncProcessor> processor) noexcept
      : processor_(std::move(processor)) {}

  HRESULT STDMETHODCALLTYPE waitEvent(VARIANT_BOOL* retval) override;
  HRESULT STDMETHODCALLTYPE process() override;
  HRESULT STDMETHODCALLTYPE close() override;

 private:
  std::shared_ptr<CAsyncProcessor> processor_;
};
