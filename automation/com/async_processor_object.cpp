#include "automation/com/async_processor_object.h"

#include "automation/com/error_boundary.h"

HRESULT CAsyncProcessorObject::waitEvent(VARIANT_BOOL* retval) {
  if (retval == nullptr) return E_POINTER;
  return comBoundary(IID_IVXAsyncProcessor, [&] {
    *retval = processor_->waitEvent() ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  });
}

HRESULT CAsyncProcessorObject::process() {
  return comBoundary(IID_IVXAsyncProcessor, [&] {
    processor_->process();
    return S_OK;
  });
}

HRESULT CAsyncProcessorObject::close() {
  return comBoundary(IID_IVXAsyncProcessor, [&] {
    processor_->close();
    return S_OK;
  });
}
