#include "foundation/attribute_registry.h"

#include "foundation/animation_enums.h"
#include "foundation/attribute_buffer.h"
#include "foundation/attribute_date_time.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/enum.h"

void registerAttributeClasses() {
  AFCAttribute::staticClass();
  AFCSingleChannelAttribute::staticClass();
  AFCMultiChannelAttribute::staticClass();
  AFCAttributeBool::staticClass();
  AFCAttributeInt32::staticClass();
  AFCAttributeInt64::staticClass();
  AFCAttributeFloat::staticClass();
  AFCAttributeDouble::staticClass();
  AFCAttributeString::staticClass();
  AFCAttributeWString::staticClass();
  AFCAttributeVec2f::staticClass();
  AFCAttributeVec3f::staticClass();
  AFCAttributeVec4f::staticClass();
  AFCAttributeColor::staticClass();
  AFCAttributeVec2s::staticClass();
  AFCAttributeVecNf::staticClass();
  AFCAttributeDate::staticClass();
  AFCAttributeTime::staticClass();
  AFCAttributeTimestamp::staticClass();
  AFCAttributeBuffer::staticClass();
  AFCAttributeEnum::staticClass();
  registerAnimationEnums();
}
