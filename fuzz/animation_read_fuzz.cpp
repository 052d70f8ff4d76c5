// Feeds arbitrary bytes to the animation readers: an animation for a server below and from the
// version with extra tangent floats, the options of an animation start, and both in sequence as
// an animation command carries them. Any failure must be an AFCException.
#include <cstddef>
#include <cstdint>

#include "animation/animation.h"
#include "animation/animation_options.h"
#include "animation/register.h"

namespace {
template <class Read>
void guarded(const uint8_t* data, std::size_t size, uint32_t version, Read read) {
  AFCPersistentInputStreamBuffer in(data, size, version);
  try {
    read(in);
  } catch (const AFCException&) {
  }
}

void readAnimation(AFCPersistentInputStream& in) {
  AFCRef<VXAnimation> animation(new VXAnimation());
  animation->read(in);
  (void)animation->toString();
}

void readOptions(AFCPersistentInputStream& in) {
  VXActivateAnimationOptions options;
  options.read(in);
  (void)options.toString();
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  static const bool registered = (registerAnimationClasses(), true);
  (void)registered;
  constexpr uint32_t kExtra = VXAnimationChannel::kTangentExtraVersion;
  guarded(data, size, kExtra - 1, readAnimation);
  guarded(data, size, kExtra, readAnimation);
  guarded(data, size, kExtra, readOptions);
  guarded(data, size, kExtra, [](AFCPersistentInputStream& in) {
    readOptions(in);
    readAnimation(in);
  });
  return 0;
}
