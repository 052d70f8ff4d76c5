#pragma once
// The enum classes of the animation model: keyframe interpolation, channel behaviour beyond
// its keyframes, and the play modes of an animation start.
#include "foundation/enum.h"

// Registers VXChannelInterpolationEnum, VXChannelBeyondEnum and
// VXActivateAnimationOptionsPlayModeEnum. Runs its work once; safe to call from any thread and
// any number of times.
void registerAnimationEnums();
