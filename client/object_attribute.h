#pragma once
// Attribute values that stand for objects, so that reflective calls (listener callbacks, the
// session's method table) can pass an object as one attribute argument; and the zone-state
// record as an object.
//
// Plain values, not thread safe. An object attribute does not own its object: the caller keeps
// the object alive for as long as the attribute is used. It has no persisted form: writing one
// throws AFCPersistentWriteException.
#include <string>

#include "commands/zone_state.h"
#include "foundation/attribute.h"

class VXObjectAttribute : public AFCSingleChannelAttribute {
  AFC_DECLARE_CLASS()
 public:
  VXObjectAttribute() = default;
  explicit VXObjectAttribute(AFCObject* object) { set(object); }
  VXObjectAttribute* clone() const override { return new VXObjectAttribute(*this); }

  // Null when undefined.
  AFCObject* get() const { return defined_ ? object_ : nullptr; }
  // A null object makes the value undefined.
  void set(AFCObject* object);
  // The object when it is a T, else null.
  template <class T>
  T* getAs() const {
    return dynamic_cast<T*>(get());
  }

  bool equals(const AFCAttribute& other) const override;
  void setChannelValue(int, double) override {}
  bool assignTyped(const AFCAttribute& source) override;
  // The object's address: the identity of the reference.
  std::string getKey() const override;
  // The object's own text form.
  std::string valueToString() const override { return object_->toString(); }
  // Text cannot name an object: the value becomes undefined.
  void parseValue(std::string_view) override { setUndefined(); }
  void write(AFCPersistentOutputStream& out) const override;
  void read(AFCPersistentInputStream& in) override;

 private:
  AFCObject* object_ = nullptr;
};

// A zone-state record as an object, for scripts and zone-state listeners.
class VXZonesStateObject : public AFCObject {
  AFC_DECLARE_CLASS()
 public:
  VXZonesStateObject() = default;
  explicit VXZonesStateObject(VXZonesState zones) : zones_(std::move(zones)) {}
  VXZonesStateObject* clone() const override { return new VXZonesStateObject(*this); }

  VXZonesState& getZones() { return zones_; }
  const VXZonesState& getZones() const { return zones_; }
  // "name=1,name=0", zones sorted by name.
  std::string toString() const override;

 private:
  VXZonesState zones_;
};
