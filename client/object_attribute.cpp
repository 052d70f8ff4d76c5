#include "client/object_attribute.h"

#include <algorithm>
#include <cstdio>
#include <utility>
#include <vector>

AFC_IMPLEMENT_CLASS(VXObjectAttribute, AFCSingleChannelAttribute)
AFC_IMPLEMENT_CLASS(VXZonesStateObject, AFCObject)

void VXObjectAttribute::set(AFCObject* object) {
  object_ = object;
  defined_ = object != nullptr;
}

bool VXObjectAttribute::equals(const AFCAttribute& other) const {
  const auto* typed = dynamic_cast<const VXObjectAttribute*>(&other);
  return typed != nullptr && typed->get() == get();
}

bool VXObjectAttribute::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const VXObjectAttribute*>(&source);
  if (typed == nullptr) return false;
  set(typed->get());
  return true;
}

std::string VXObjectAttribute::getKey() const {
  char text[32];
  std::snprintf(text, sizeof text, "%p", static_cast<const void*>(get()));
  return text;
}

void VXObjectAttribute::write(AFCPersistentOutputStream&) const {
  throw AFCPersistentWriteException("Object references have no persisted form");
}

void VXObjectAttribute::read(AFCPersistentInputStream&) {
  throw AFCPersistentReadException("Object references have no persisted form");
}

std::string VXZonesStateObject::toString() const {
  std::vector<std::pair<std::string, bool>> sorted(zones_.getZones().begin(),
                                                   zones_.getZones().end());
  std::sort(sorted.begin(), sorted.end());
  std::string text;
  for (const auto& [zone, state] : sorted) {
    if (!text.empty()) text += ',';
    text += zone;
    text += state ? "=1" : "=0";
  }
  return text;
}
