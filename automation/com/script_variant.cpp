#include "automation/com/script_variant.h"

#include <memory>
#include <string>
#include <utility>

#include "automation/com/bstr_text.h"
#include "automation/com/error_boundary.h"
#include "vxbr5.h"

namespace {
// LCID of the lookups of array members: LOCALE_USER_DEFAULT.
constexpr LCID kMemberLocale = 1024;

ScriptValue fromOwnedVariant(const VARIANT& value);

// A script's object: an IDispatch (members readable) or a bare IUnknown (no members).
class CComScriptObject final : public ScriptObject {
 public:
  CComScriptObject(CUniqueRef<IUnknown> object, CUniqueRef<IDispatch> dispatch)
      : object_(std::move(object)), dispatch_(std::move(dispatch)) {}

  Lookup getMember(std::string_view name, ScriptValue& value) override {
    if (!dispatch_.valid()) return Lookup::NoSuchMember;
    std::wstring wide(name.begin(), name.end());
    LPOLESTR names[] = {wide.data()};
    DISPID id = DISPID_UNKNOWN;
    if (FAILED(dispatch_.get()->GetIDsOfNames(IID_NULL, names, 1, kMemberLocale, &id))) {
      return Lookup::NoSuchMember;
    }
    DISPPARAMS none{};
    CUniqueVariant read;
    if (FAILED(dispatch_.get()->Invoke(id, IID_NULL, kMemberLocale, DISPATCH_PROPERTYGET, &none,
                                       read.put(), nullptr, nullptr))) {
      return Lookup::ReadFailed;
    }
    value = fromOwnedVariant(read.get());  // already this module's own copy
    return Lookup::Found;
  }

  // A failing getNative of an animation is the call's result.
  CAnimation* asAnimation() override {
    const CUniqueRef<IVXAnimation> animation = query<IVXAnimation>();
    if (!animation.valid()) return nullptr;
    hyper native = 0;
    throwIfFailed(animation.get()->getNative(&native));
    return reinterpret_cast<CAnimation*>(native);
  }
  // Anything short of the native options says "not an options object".
  CAnimationOptions* asAnimationOptions() override {
    const CUniqueRef<IVXAnimationOptions> options = query<IVXAnimationOptions>();
    hyper native = 0;
    if (!options.valid() || FAILED(options.get()->getNative(&native))) return nullptr;
    return reinterpret_cast<CAnimationOptions*>(native);
  }

 private:
  template <class Interface>
  CUniqueRef<Interface> query() {
    Interface* found = nullptr;
    if (!object_.valid() || FAILED(object_.get()->QueryInterface(
                                __uuidof(Interface), reinterpret_cast<void**>(&found)))) {
      return CUniqueRef<Interface>();
    }
    return CUniqueRef<Interface>(found);
  }

  CUniqueRef<IUnknown> object_;
  CUniqueRef<IDispatch> dispatch_;
};

// The script object over object; nullptr for a null object.
std::shared_ptr<ScriptObject> wrap(IUnknown* object, IDispatch* dispatch) {
  if (object == nullptr) return nullptr;
  return std::make_shared<CComScriptObject>(addRef(object), addRef(dispatch));
}

double doubleFromDecimal(const DECIMAL& decimal) {
  double number = 0.0;
  // The runtime's signature lacks const; it only reads the value.
  throwIfFailed(VarR8FromDec(const_cast<DECIMAL*>(&decimal), &number));
  return number;
}

// The value of a copy that this module owns.
ScriptValue fromOwnedVariant(const VARIANT& value) {
  switch (value.vt) {
    case VT_EMPTY:
    case VT_VOID:
      return {};
    case VT_NULL:
      return ScriptValue::null();
    case VT_I1:
      return ScriptValue::integer(value.cVal, 8);
    case VT_I2:
      return ScriptValue::integer(value.iVal, 16);
    case VT_I4:
      return ScriptValue::integer(value.lVal);
    case VT_INT:
      return ScriptValue::integer(value.intVal);
    case VT_I8:
      return ScriptValue::integer(value.llVal, 64);
    case VT_UI1:
      return ScriptValue::unsignedInteger(value.bVal, 8);
    case VT_UI2:
      return ScriptValue::unsignedInteger(value.uiVal, 16);
    case VT_UI4:
      return ScriptValue::unsignedInteger(value.ulVal);
    case VT_UINT:
      return ScriptValue::unsignedInteger(value.uintVal);
    case VT_UI8:
      return ScriptValue::unsignedInteger(value.ullVal, 64);
    case VT_R4:
      return ScriptValue::float32(value.fltVal);
    case VT_R8:
      return ScriptValue::float64(value.dblVal);
    case VT_CY:
      return ScriptValue::float64(static_cast<double>(value.cyVal.int64) / 10000.0);
    case VT_DECIMAL:
      return ScriptValue::float64(doubleFromDecimal(value.decVal));
    case VT_BOOL:
      return ScriptValue::boolWord(value.boolVal);
    case VT_BSTR:
      return ScriptValue::text(u16FromBstr(value.bstrVal));
    case VT_LPSTR:
      return ScriptValue::text(ScriptValue::fromBytes(static_cast<const char*>(value.byref)));
    case VT_LPWSTR:
      return ScriptValue::text(reinterpret_cast<const char16_t*>(value.byref));
    case VT_DATE:
      return ScriptValue::date(value.date);
    case VT_DISPATCH:
      return ScriptValue::object(wrap(value.pdispVal, value.pdispVal));
    case VT_UNKNOWN:
      return ScriptValue::unknown(wrap(value.punkVal, nullptr));
    default:
      return ScriptValue::other();
  }
}
}  // namespace

ScriptValue scriptValueFromVariant(const VARIANT& value) {
  CUniqueVariant copy;
  // The runtime's signature lacks const; it only reads the source.
  throwIfFailed(VariantCopy(copy.put(), const_cast<VARIANT*>(&value)));
  return fromOwnedVariant(copy.get());
}

ScriptValue scriptArgumentFromVariant(const VARIANT& value) {
  CUniqueVariant copy;
  throwIfFailed(VariantCopyInd(copy.put(), const_cast<VARIANT*>(&value)));
  return fromOwnedVariant(copy.get());
}

CUniqueVariant variantFromScriptValue(const ScriptValue& value) {
  CUniqueVariant out;
  VARIANT& made = out.get();
  switch (value.getKind()) {
    case ScriptValue::Kind::Integer:
      if (value.getIntegerBits() == 64) {
        made.vt = VT_I8;
        made.llVal = static_cast<LONGLONG>(value.getNumber());
      } else {
        made.vt = VT_I4;
        made.lVal = value.getInt32();
      }
      break;
    case ScriptValue::Kind::Float:
      made.vt = VT_R4;
      made.fltVal = static_cast<float>(value.getNumber());
      break;
    case ScriptValue::Kind::Double:
      made.vt = VT_R8;
      made.dblVal = value.getNumber();
      break;
    case ScriptValue::Kind::Bool:
      made.vt = VT_BOOL;
      made.boolVal = value.getBoolWord();
      break;
    case ScriptValue::Kind::Text:
      made.bstrVal = bstrFromU16(value.getText()).release();
      made.vt = VT_BSTR;
      break;
    default:
      break;
  }
  return out;
}
