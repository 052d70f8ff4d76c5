#pragma once
// What a script passes to the title-control objects and gets back from them, without any host's
// types: the adapter of a host (COM's VARIANT, later others) maps its values onto ScriptValue and
// back, and the core never sees the host's own. Also the two conversions the objects share:
// script value to attribute value (set, roaSet, roaCall) and attribute value to script value
// (roaGet, roaCall), and the text conversions between script text (UTF-16) and the byte strings
// of the command layer (through the process's default character set).
//
// Values are plain single-owner data; a script object inside one is shared with the adapter and
// used only on the thread of the call that passed it. The conversion to an attribute throws
// AFCIllegalArgumentException with the system's texts ("unsupported value type", "array does not
// have 'length' property", "failed to get array length"); the other direction never throws.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "foundation/attribute.h"

class CAnimation;
class CAnimationOptions;
class ScriptValue;

// A script object as the core sees it. Member access serves script arrays (a "length" member and
// members named "0", "1", ...): looking a member up by name and reading it are separate steps
// that can each fail. An object made by this module also hands out the core object behind it;
// any other object answers nullptr there. The adapter implements this over the host's object (in
// COM GetIDsOfNames and Invoke, and QueryInterface for the core objects).
class ScriptObject {
 public:
  enum class Lookup { Found, NoSuchMember, ReadFailed };

  ScriptObject() = default;
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;
  virtual ~ScriptObject() = default;

  // Looks the member up and reads it as a property; value is written only when Found.
  virtual Lookup getMember(std::string_view name, ScriptValue& value) = 0;
  // The core object behind this one; nullptr when the object is not one of that kind. The object
  // lives at least as long as this script object.
  virtual CAnimation* asAnimation() { return nullptr; }
  virtual CAnimationOptions* asAnimationOptions() { return nullptr; }
};

class ScriptValue {
 public:
  enum class Kind {
    Empty,    // nothing given, or no value
    Null,     // the script's null value
    Integer,  // signed or unsigned, 8 to 64 bits
    Float,    // single precision
    Double,   // double precision; currency and decimal values arrive converted to it
    Bool,     // the script's bool word: -1 (or any non-zero) true, 0 false
    Text,     // UTF-16
    Date,     // days since 30 December 1899, as scripts count dates
    Object,   // a script object with members (a script array, a function, an object of ours)
    Unknown,  // an object without member access
    Other,    // anything the core does not take: by-reference values, host arrays, errors
  };

  // Empty.
  ScriptValue() = default;

  static ScriptValue null() { return ScriptValue(Kind::Null); }
  static ScriptValue integer(int64_t value, int bits = 32);
  static ScriptValue unsignedInteger(uint64_t value, int bits = 32);
  static ScriptValue float32(float value);
  static ScriptValue float64(double value);
  // A script's true is the bool word -1.
  static ScriptValue boolean(bool value) { return boolWord(value ? -1 : 0); }
  // The bool word as given: attribute values come back as 1 for true, on purpose.
  static ScriptValue boolWord(int16_t word);
  static ScriptValue text(std::u16string value);
  // Makes this a Text value holding the bytes' text (default character set), in the storage it
  // has already: a value refilled event after event allocates once.
  void setTextFromBytes(std::string_view bytes);
  static ScriptValue date(double days);
  static ScriptValue object(std::shared_ptr<ScriptObject> object);
  static ScriptValue unknown(std::shared_ptr<ScriptObject> object);
  static ScriptValue other() { return ScriptValue(Kind::Other); }

  Kind getKind() const { return kind_; }
  bool isObjectKind() const { return kind_ == Kind::Object || kind_ == Kind::Unknown; }

  // Integer: the width in bits and whether it is signed.
  int getIntegerBits() const { return bits_; }
  bool isSigned() const { return signed_; }
  // Integer: the value clamped to the 32-bit range (a 64-bit or unsigned value beyond it gives
  // the nearest end).
  int32_t getInt32() const;
  // The number a numeric kind (Integer, Float, Double, Bool) stands for; a bool is -1 or 0 as
  // its word says.
  double getNumber() const;
  int16_t getBoolWord() const { return static_cast<int16_t>(integer_); }
  const std::u16string& getText() const { return text_; }
  double getDate() const { return real_; }
  // Object or Unknown; may be null when the script passed a null object.
  const std::shared_ptr<ScriptObject>& getObject() const { return object_; }
  // The core object behind an Object or Unknown value; nullptr for any other value, for a null
  // object and for an object of another kind.
  CAnimation* asAnimation() const { return object_ ? object_->asAnimation() : nullptr; }
  CAnimationOptions* asAnimationOptions() const {
    return object_ ? object_->asAnimationOptions() : nullptr;
  }

  // The attribute a set sends for this value:
  //   Empty, Null: AFCAttributeInt32 left unset;  Integer: AFCAttributeInt32 (getInt32);
  //   Float: AFCAttributeFloat;  Double: AFCAttributeDouble;  Bool: AFCAttributeBool;
  //   Text: AFCAttributeWString;  Object: a float vector from the script array (arrayToVector);
  //   anything else: AFCIllegalArgumentException "unsupported value type".
  std::unique_ptr<AFCAttribute> toAttribute() const;
  // A script array as the vector of its first four numbers: AFCAttributeVec2f for a length
  // below 3, AFCAttributeVec3f for 3, AFCAttributeVec4f for 4 or more, all components 0 at
  // first. A number, or a text that parses as one, fills its component; a member that cannot be
  // looked up or read, and any other value, leaves it 0. Throws AFCIllegalArgumentException
  // "array does not have 'length' property" and "failed to get array length" (also for a length
  // that is not a number).
  static std::unique_ptr<AFCAttribute> arrayToVector(ScriptObject& array);
  // The value a script gets for an attribute, the first match of:
  //   none or undefined: Empty;  AFCAttributeInt32: 32-bit Integer;  AFCAttributeInt64: 64-bit
  //   Integer;  AFCAttributeFloat: Float;  AFCAttributeDouble: Double;  AFCAttributeBool: the
  //   bool word 1 or 0 (1, not the script's usual -1);  AFCAttributeWString: its text;  any
  //   other: the attribute's text form.
  static ScriptValue fromAttribute(const AFCAttribute* attribute);

  // Script text to the byte string of the command layer and back, in the default character set.
  static std::string toBytes(std::u16string_view text);
  static std::u16string fromBytes(std::string_view bytes);

 private:
  explicit ScriptValue(Kind kind) : kind_(kind) {}

  Kind kind_ = Kind::Empty;
  int bits_ = 0;
  bool signed_ = false;
  uint64_t integer_ = 0;  // Integer (two's complement when signed) and the Bool word
  double real_ = 0.0;     // Float, Double, Date
  std::u16string text_;
  std::shared_ptr<ScriptObject> object_;
};
