// Encoding and decoding one stream of 1,000 attribute objects (Float, Vec3f, Int32 and
// 16-character String values), against a plain loop that writes the same bytes big-endian into
// a preallocated buffer.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "bench/plain_writer.h"
#include "foundation/attribute_scalar.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/persistent_stream.h"

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

}  // namespace

BENCHMARK(BM_encode_attributes);
BENCHMARK(plainLoop)->Name("BM_encode_attributes_baseline");
BENCHMARK(BM_decode_attributes);
BENCHMARK(plainLoop)->Name("BM_decode_attributes_baseline");
BENCHMARK_MAIN();
