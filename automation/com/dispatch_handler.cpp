#include "automation/com/dispatch_handler.h"

#include <vector>

#include "automation/com/com_handles.h"
#include "automation/com/script_variant.h"

namespace {
// The locale a script function is called with: the system default.
constexpr LCID kHandlerLocale = 2048;

// IVXCmdEvents' dispatch ids.
enum : DISPID { kOnCommand = 1, kOnDisconnect, kOnPickResult, kOnZoneChange, kOnMessage };

class CDispatchHandler final : public ScriptHandler {
 public:
  explicit CDispatchHandler(IDispatch* function) : function_(addRef(function)) {}

  bool invoke(std::span<const ScriptValue> args) override {
    // Invoke takes the arguments last to first.
    std::vector<CUniqueVariant> owned;
    owned.reserve(args.size());
    for (auto arg = args.rbegin(); arg != args.rend(); ++arg) {
      owned.push_back(variantFromScriptValue(*arg));
      // A script function gets a 32-bit number as a plain int (the callback id is one).
      if (owned.back().get().vt == VT_I4) owned.back().get().vt = VT_INT;
    }
    std::vector<VARIANT> values;
    values.reserve(owned.size());
    for (const CUniqueVariant& value : owned) values.push_back(value.get());
    DISPPARAMS parameters{values.data(), nullptr, static_cast<UINT>(values.size()), 0};
    CUniqueVariant result;
    return function_.get()->Invoke(0, IID_NULL, kHandlerLocale, DISPATCH_METHOD, &parameters,
                                   result.put(), nullptr, nullptr) == S_OK;
  }

 private:
  CUniqueRef<IDispatch> function_;
};
}  // namespace

std::shared_ptr<ScriptHandler> handlerOf(IDispatch* function) {
  if (function == nullptr) return nullptr;
  return std::make_shared<CDispatchHandler>(function);
}

void CEventSourceSink::onCommand(int32_t cmd) { source_.fire(kOnCommand, {long{cmd}}); }

void CEventSourceSink::onDisconnect() { source_.fire(kOnDisconnect, {}); }

void CEventSourceSink::onPickResult(const std::u16string& xmlResult) {
  source_.fire(kOnPickResult, {xmlResult});
}

void CEventSourceSink::onZoneChange(const std::u16string& zoneName, int32_t zoneState) {
  source_.fire(kOnZoneChange, {zoneName, long{zoneState}});
}

void CEventSourceSink::onMessage(const std::u16string& message) {
  source_.fire(kOnMessage, {message});
}
