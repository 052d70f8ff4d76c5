#include "animation/register.h"

#include "animation/animation.h"
#include "animation/animation_channel.h"
#include "animation/animation_options.h"
#include "foundation/class.h"

void registerAnimationClasses() {
  registerFoundationClasses();
  VXAnimation::staticClass();
  VXAnimationChannel::staticClass();
  VXActivateAnimationOptionsObject::staticClass();
}
