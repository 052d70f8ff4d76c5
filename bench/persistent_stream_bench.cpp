// Encoding and decoding one stream of 1,000 attribute objects (Float, Vec3f, Int32 and
// 16-character String values), against a plain loop that writes the same bytes big-endian into
// a preallocated buffer.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "bench/plain_reader.h"
#include "bench/plain_writer.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/persistent_stream.h"
#include "foundation/pointer_map.h"

namespace {

constexpr int kCount = 1000;

std::string titleText(int i) {
  std::string text = "Lower third 0000";
  std::string digits = std::to_string(i % 10000);
  text.replace(text.size() - digits.size(), digits.size(), digits);
  return text;  // 16 ASCII characters
}

std::vector<std::unique_ptr<AFCAttribute>> sampleAttributes() {
  std::vector<std::unique_ptr<AFCAttribute>> values;
  for (int i = 0; i < kCount; ++i) {
    switch (i % 4) {
      case 0:
        values.push_back(std::make_unique<AFCAttributeFloat>(0.5f * i));
        break;
      case 1: {
        auto v = std::make_unique<AFCAttributeVec3f>();
        for (int c = 0; c < 3; ++c) v->setChannelValue(c, i + c);
        values.push_back(std::move(v));
        break;
      }
      case 2:
        values.push_back(std::make_unique<AFCAttributeInt32>(i));
        break;
      default: {
        auto s = std::make_unique<AFCAttributeString>();
        s->fromString(titleText(i));
        values.push_back(std::move(s));
      }
    }
  }
  return values;
}

std::size_t plainWrite(uint8_t* out, const std::vector<std::string>& texts) {
  PlainWriter w{out};
  for (int i = 0; i < kCount; ++i) {
    switch (i % 4) {
      case 0:
        w.object("AFCAttributeFloat");
        w.header(0x02), w.byte(1);
        w.f32(0.5f * i);
        break;
      case 1:
        w.object("AFCAttributeVec3f");
        w.header(0x06), w.be32(7);
        for (int c = 0; c < 3; ++c) w.f32(static_cast<float>(i + c));
        break;
      case 2:
        w.object("AFCAttributeInt32");
        w.header(0x02), w.byte(1);
        w.header(0x05), w.be32(static_cast<uint32_t>(i));
        break;
      default: {
        const std::string& text = texts[i];
        w.object("AFCAttributeString");
        w.header(0x02), w.byte(1);
        w.header(0x0B), w.be32(static_cast<uint32_t>(text.size()));
        for (char c : text) w.byte(0), w.byte(static_cast<uint8_t>(c));
      }
    }
  }
  return static_cast<std::size_t>(w.p - out);
}

template <class T>
void keep(T value) {
  std::unique_ptr<FloorValue> object(new FloorValueOf<T>(std::move(value)));
  benchmark::DoNotOptimize(object.get());
}

// The least a reader that hands out one object per value can do (see plain_reader.h); returns
// where it stopped.
const uint8_t* plainRead(const uint8_t* in) {
  PlainReader r{in};
  for (int i = 0; i < kCount; ++i) {
    r.object();
    switch (i % 4) {
      case 0:
        r.p += 3;  // defined
        keep(r.f32());
        break;
      case 1:
        r.p += 6;  // defined channels
        keep(r.vec3());
        break;
      case 2:
        r.p += 3 + 2;  // defined, the number's header
        keep(static_cast<int32_t>(r.be32()));
        break;
      default:
        r.p += 3;  // defined
        keep(r.ascii());
    }
  }
  return r.p;
}

// The least a writer of this format does per object beyond the plain loop: ask the value for
// its class (one virtual call) and look the object up in the back-reference numbers, then
// number it.
std::size_t floorWrite(uint8_t* out, const std::vector<std::unique_ptr<AFCAttribute>>& values,
                       const std::vector<std::string>& texts) {
  AFCPointerNumberMap numbers;
  uint32_t next = 1;
  std::size_t checksum = 0;
  for (const auto& value : values) {
    checksum += value->getClass()->getName().size();
    const AFCPointerNumberMap::Lookup known = numbers.find(value.get());
    checksum += known.number;
    numbers.insert(value.get(), next++, known);
  }
  benchmark::DoNotOptimize(checksum);
  return plainWrite(out, texts);
}

struct Fixture {
  Fixture() {
    registerFoundationClasses();
    for (int i = 0; i < kCount; ++i) texts.push_back(titleText(i));
    AFCPersistentOutputStreamBuffer out;
    for (const auto& value : values) out.writeObject(value.get());
    encoded = AFCRef<AFCBuffer>(new AFCBuffer(out.getBuffer()));
  }
  std::vector<std::unique_ptr<AFCAttribute>> values = sampleAttributes();
  std::vector<std::string> texts;
  AFCRef<AFCBuffer> encoded;
};

Fixture& fixture() {
  static Fixture f;
  return f;
}

void plainLoop(benchmark::State& state) {
  Fixture& f = fixture();
  runPlainLoop(state, *f.encoded, [&](uint8_t* out) { return plainWrite(out, f.texts); });
}

void BM_encode_attributes(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) {
    AFCPersistentOutputStreamBuffer out(AFCPersistentStream::kCurrentVersion, f.encoded->size());
    for (const auto& value : f.values) out.writeObject(value.get());
    benchmark::DoNotOptimize(out.getBuffer().data());
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

void BM_decode_attributes(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) {
    AFCPersistentInputStreamBuffer in(f.encoded);
    for (int i = 0; i < kCount; ++i) {
      std::unique_ptr<AFCAttribute> value = in.readOwnedObject<AFCAttribute>();
      benchmark::DoNotOptimize(value.get());
    }
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

void BM_encode_attributes_floor(benchmark::State& state) {
  Fixture& f = fixture();
  runPlainLoop(state, *f.encoded, [&](uint8_t* out) { return floorWrite(out, f.values, f.texts); });
}

void BM_decode_attributes_floor(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) plainRead(f.encoded->data());
  if (plainRead(f.encoded->data()) != f.encoded->data() + f.encoded->size()) {
    state.SkipWithError("the floor reader does not read the encoder's bytes");
  }
  state.SetItemsProcessed(state.iterations() * kCount);
}

}  // namespace

BENCHMARK(BM_encode_attributes);
BENCHMARK(plainLoop)->Name("BM_encode_attributes_baseline");
BENCHMARK(BM_decode_attributes);
BENCHMARK(plainLoop)->Name("BM_decode_attributes_baseline");
BENCHMARK(BM_encode_attributes_floor);
BENCHMARK(plainLoop)->Name("BM_encode_attributes_floor_baseline");
BENCHMARK(BM_decode_attributes_floor);
BENCHMARK(plainLoop)->Name("BM_decode_attributes_floor_baseline");
BENCHMARK_MAIN();
