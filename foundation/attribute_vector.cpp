#include "foundation/attribute_vector.h"

#include <algorithm>

#include "foundation/attribute_support.h"

AFC_IMPLEMENT_CLASS(AFCAttributeVec2f, AFCMultiChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeVec3f, AFCMultiChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeVec4f, AFCMultiChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeColor, AFCMultiChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeVec2s, AFCMultiChannelAttribute)
AFC_IMPLEMENT_CLASS(AFCAttributeVecNf, AFCMultiChannelAttribute)

namespace {
// The mask with channels 0 .. count-1 defined.
uint32_t fullMask(std::size_t count) {
  if (count >= 32) return 0xFFFFFFFFu;
  return static_cast<uint32_t>((uint64_t{1} << count) - 1);
}
}  // namespace

// --- fixed float vectors ---

template <class Derived, int N>
auto AFCFloatVectorAttribute<Derived, N>::get() const -> const Value& {
  if (!isDefined()) afcThrowUndefined(*this);
  return values_;
}

template <class Derived, int N>
void AFCFloatVectorAttribute<Derived, N>::set(const Value& value) {
  values_ = value;
  definedMask_ = fullMask(N);
}

template <class Derived, int N>
double AFCFloatVectorAttribute<Derived, N>::getChannelValue(int channel) const {
  return inRange(channel) ? values_[static_cast<std::size_t>(channel)] : 0.0;
}

template <class Derived, int N>
void AFCFloatVectorAttribute<Derived, N>::setChannelValue(int channel, double value) {
  if (!inRange(channel)) return;
  values_[static_cast<std::size_t>(channel)] = static_cast<float>(value);
  markDefined(channel);
}

template <class Derived, int N>
bool AFCFloatVectorAttribute<Derived, N>::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const Derived*>(&source);
  if (typed == nullptr) return false;
  values_ = typed->values_;
  definedMask_ = typed->definedMask_;
  return true;
}

template <class Derived, int N>
std::string AFCFloatVectorAttribute<Derived, N>::getKey() const {
  std::string key = Derived::kKeyTag;
  for (float v : values_) afcAppendRaw(key, v);
  return key;
}

template <class Derived, int N>
void AFCFloatVectorAttribute<Derived, N>::write(AFCPersistentOutputStream& out) const {
  AFCMultiChannelAttribute::write(out);
  for (float v : values_) out.writeFloat(v);
}

template <class Derived, int N>
void AFCFloatVectorAttribute<Derived, N>::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(definedMask_, [&] {
    AFCMultiChannelAttribute::read(in);
    Value values;
    for (float& v : values) v = in.readFloat();
    values_ = values;
  });
}

template class AFCFloatVectorAttribute<AFCAttributeVec2f, 2>;
template class AFCFloatVectorAttribute<AFCAttributeVec3f, 3>;
template class AFCFloatVectorAttribute<AFCAttributeVec4f, 4>;
template class AFCFloatVectorAttribute<AFCAttributeColor, 4>;

// --- Vec2s ---

auto AFCAttributeVec2s::get() const -> const Value& {
  if (!isDefined()) afcThrowUndefined(*this);
  return values_;
}

void AFCAttributeVec2s::set(const Value& value) {
  values_ = value;
  definedMask_ = fullMask(2);
}

double AFCAttributeVec2s::getChannelValue(int channel) const {
  return channel == 0 || channel == 1 ? values_[static_cast<std::size_t>(channel)] : 0.0;
}

void AFCAttributeVec2s::setChannelValue(int channel, double value) {
  if (channel != 0 && channel != 1) return;
  values_[static_cast<std::size_t>(channel)] = afcBiasedInt32(value);
  markDefined(channel);
}

bool AFCAttributeVec2s::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const AFCAttributeVec2s*>(&source);
  if (typed == nullptr) return false;
  values_ = typed->values_;
  definedMask_ = typed->definedMask_;
  return true;
}

std::string AFCAttributeVec2s::getKey() const {
  std::string key = "2s";
  for (int32_t v : values_) afcAppendRaw(key, v);
  return key;
}

void AFCAttributeVec2s::write(AFCPersistentOutputStream& out) const {
  AFCMultiChannelAttribute::write(out);
  for (int32_t v : values_) out.writeInt32(v);
}

void AFCAttributeVec2s::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(definedMask_, [&] {
    AFCMultiChannelAttribute::read(in);
    Value values;
    for (int32_t& v : values) v = in.readInt32();
    values_ = values;
  });
}

// --- VecNf ---

const std::vector<float>& AFCAttributeVecNf::get() const {
  if (!isDefined()) afcThrowUndefined(*this);
  return values_;
}

void AFCAttributeVecNf::set(std::vector<float> values) {
  values_ = std::move(values);
  definedMask_ = fullMask(values_.size());
}

double AFCAttributeVecNf::getChannelValue(int channel) const {
  return inRange(channel) ? values_[static_cast<std::size_t>(channel)] : 0.0;
}

void AFCAttributeVecNf::setChannelValue(int channel, double value) {
  if (!inRange(channel)) return;
  values_[static_cast<std::size_t>(channel)] = static_cast<float>(value);
  markDefined(channel);
}

bool AFCAttributeVecNf::assignTyped(const AFCAttribute& source) {
  const auto* typed = dynamic_cast<const AFCAttributeVecNf*>(&source);
  if (typed == nullptr) return false;
  values_ = typed->values_;
  definedMask_ = typed->definedMask_;
  return true;
}

std::string AFCAttributeVecNf::getKey() const {
  std::string key = "Nf";
  afcAppendRaw(key, static_cast<uint32_t>(values_.size()));
  for (float v : values_) afcAppendRaw(key, v);
  return key;
}

namespace {
// The places of a bracketed list up to its "]": one more than its commas, none when only
// blanks stand between the brackets.
std::size_t countPlaces(std::string_view list) {
  const std::string_view body = list.substr(0, list.find(']'));
  if (body.find_first_not_of(" \t") == std::string_view::npos) return 0;
  return 1 + static_cast<std::size_t>(std::count(body.begin(), body.end(), ','));
}
}  // namespace

void AFCAttributeVecNf::parseValue(std::string_view text) {
  const std::size_t open = text.find('[');
  if (open != std::string_view::npos) {
    values_.assign(countPlaces(text.substr(open + 1)), 0.0f);
  } else if (values_.empty() && afcLeadingNumber(text)) {
    values_.resize(1);
  }
  AFCMultiChannelAttribute::parseValue(text);
}

void AFCAttributeVecNf::write(AFCPersistentOutputStream& out) const {
  AFCMultiChannelAttribute::write(out);
  out.writeUInt32(static_cast<uint32_t>(values_.size()));
  for (float v : values_) out.writeFloat(v);
}

void AFCAttributeVecNf::read(AFCPersistentInputStream& in) {
  afcReadOrRestore(definedMask_, [&] {
    AFCMultiChannelAttribute::read(in);
    const uint32_t count = in.readUInt32();
    std::vector<float> values;
    values.reserve(std::min<uint32_t>(count, 1024));
    for (uint32_t i = 0; i < count; ++i) values.push_back(in.readFloat());
    values_ = std::move(values);
  });
}
