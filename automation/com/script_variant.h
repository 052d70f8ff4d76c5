#pragma once
// VARIANT, the value a script host passes, onto the core's ScriptValue and back.
//
// scriptValueFromVariant first copies the VARIANT (VariantCopy, as the value may belong to the
// caller's frame), converts the copy by its type and clears it. A dispatch object becomes an
// Object whose members are read through GetIDsOfNames and Invoke (the script array protocol) and
// which hands out the core object behind this module's own animation and options objects;
// by-reference values, arrays, errors and nested VARIANTs become Other, which the core rejects
// where it needs a value. variantFromScriptValue makes what a script gets back.
//
// Objects inside a value are used only on the thread of the call that passed them. A failing
// copy throws CFailedCall with its HRESULT; std::bad_alloc for memory; nothing else throws.
// asAnimation throws CFailedCall when the animation's own getNative fails.
#include <windows.h>
// The rest of the platform headers need windows.h first.
#include <oaidl.h>

#include "automation/com/com_handles.h"
#include "automation/script_value.h"

ScriptValue scriptValueFromVariant(const VARIANT& value);
// For a name or an object a member takes (a zone or transaction name, a node prefix, an
// animation and its options): a script variable arrives by reference, as VBScript passes every
// variable, and stands for the value it refers to (VariantCopyInd). Without this a variable
// would silently count as no name at all. set's value, which refuses references, does not come
// here. Throws as scriptValueFromVariant.
ScriptValue scriptArgumentFromVariant(const VARIANT& value);
// Empty, Integer (VT_I4, VT_I8 for 64 bits), Float, Double, Bool (the word as given, so an
// attribute's true stays 1), Text; any other kind gives VT_EMPTY.
CUniqueVariant variantFromScriptValue(const ScriptValue& value);
