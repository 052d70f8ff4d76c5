// One action of 100 VXSetAttributeCommand records (targets of about 20 characters, Vec3f and
// WString values) encoded into a packet buffer and decoded back, against a plain loop that
// writes the same bytes big-endian into a preallocated buffer. Figures: the encode and decode
// ratios to the plain loop, and nanoseconds per command for building plus encoding, encoding
// and decoding.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "bench/plain_reader.h"
#include "bench/plain_writer.h"
#include "commands/action.h"
#include "commands/begin_end_builder.h"
#include "commands/node_commands.h"
#include "commands/register.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"

namespace {

constexpr int kCommands = 100;

std::string target(int i) {
  std::string text = "Root/_Br5_Title_1/t000";  // 22 characters
  const std::string digits = std::to_string(i);
  text.replace(text.size() - digits.size(), digits.size(), digits);
  return text;
}

std::u16string caption(int i) { return u"Headline " + std::u16string(1, u'A' + i % 26); }

std::unique_ptr<AFCAttribute> value(int i) {
  if (i % 2 == 0) {
    auto vec = std::make_unique<AFCAttributeVec3f>();
    for (int c = 0; c < 3; ++c) vec->setChannelValue(c, i + c * 0.5);
    return vec;
  }
  return std::make_unique<AFCAttributeWString>(caption(i));
}

const char* attrName(int i) { return i % 2 == 0 ? "Position" : "Text"; }

void buildAction(VXAction& action) {
  for (int i = 0; i < kCommands; ++i) {
    action.addCommand(std::make_unique<VXSetAttributeCommand>(target(i), attrName(i), value(i)));
  }
}

struct Texts {
  std::vector<std::string> targets;
  std::vector<std::u16string> captions;
};

std::size_t plainWrite(uint8_t* out, const Texts& texts) {
  PlainWriter w{out};
  w.object("VXImmediateAction");
  w.header(0x06), w.be32(kCommands);
  for (int i = 0; i < kCommands; ++i) {
    w.object("VXSetAttributeCommand");
    w.ascii(texts.targets[i]);
    w.ascii(attrName(i));
    if (i % 2 == 0) {
      w.object("AFCAttributeVec3f");
      w.header(0x06), w.be32(7);
      for (int c = 0; c < 3; ++c) w.f32(static_cast<float>(i + c * 0.5));
    } else {
      w.object("AFCAttributeWString");
      w.header(0x02), w.byte(1);
      w.wide(texts.captions[i]);
    }
  }
  return static_cast<std::size_t>(w.p - out);
}

struct Fixture {
  Fixture() {
    registerCommandClasses();
    buildAction(action);
    for (int i = 0; i < kCommands; ++i) {
      texts.targets.push_back(target(i));
      texts.captions.push_back(caption(i));
    }
    AFCPersistentOutputStreamBuffer out;
    out.writeObject(&action);
    encoded = AFCRef<AFCBuffer>(new AFCBuffer(out.getBuffer()));
  }
  VXImmediateAction action;
  Texts texts;
  AFCRef<AFCBuffer> encoded;
};

Fixture& fixture() {
  static Fixture f;
  return f;
}

// Nanoseconds per command, from the benchmark's own timing.
benchmark::Counter perCommandNs(const benchmark::State& state) {
  return benchmark::Counter(static_cast<double>(state.iterations()) * kCommands * 1e-9,
                            benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void plainLoop(benchmark::State& state) {
  Fixture& f = fixture();
  runPlainLoop(state, *f.encoded, [&](uint8_t* out) { return plainWrite(out, f.texts); });
}

void BM_encode_action(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) {
    AFCPersistentOutputStreamBuffer out(AFCPersistentStream::kCurrentVersion, f.encoded->size());
    out.writeObject(&f.action);
    benchmark::DoNotOptimize(out.getBuffer().data());
  }
  state.counters["figure_encode_per_command_ns"] = perCommandNs(state);
}

void BM_decode_action(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) {
    AFCPersistentInputStreamBuffer in(f.encoded);
    std::unique_ptr<VXAction> action = in.readOwnedObject<VXAction>();
    benchmark::DoNotOptimize(action.get());
  }
  state.counters["figure_decode_per_command_ns"] = perCommandNs(state);
}

// The least a reader that hands out the action as objects can do (see plain_reader.h): per
// command, an object with its target and attribute name and one value object; returns where it
// stopped.
struct FloorCommand {
  std::string target;
  std::string attribute;
  std::unique_ptr<FloorValue> value;
};

const uint8_t* plainRead(const uint8_t* in) {
  PlainReader r{in};
  r.object();
  r.p += 2;  // the count's header
  std::vector<std::unique_ptr<FloorCommand>> commands(r.be32());
  for (int i = 0; i < kCommands; ++i) {
    r.object();
    auto command = std::make_unique<FloorCommand>();
    command->target = r.ascii();
    command->attribute = r.ascii();
    r.object();
    if (i % 2 == 0) {
      r.p += 6;  // defined channels
      command->value = std::make_unique<FloorValueOf<FloorVec3>>(r.vec3());
    } else {
      r.p += 3;  // defined
      command->value = std::make_unique<FloorValueOf<std::u16string>>(r.wide());
    }
    commands[i] = std::move(command);
  }
  benchmark::DoNotOptimize(commands.data());
  return r.p;
}

void BM_decode_action_floor(benchmark::State& state) {
  Fixture& f = fixture();
  for (auto _ : state) plainRead(f.encoded->data());
  if (plainRead(f.encoded->data()) != f.encoded->data() + f.encoded->size()) {
    state.SkipWithError("the floor reader does not read the encoder's bytes");
  }
}

// What a script pays: the records made through a builder's bracket, then encoded.
class EncodingBuilder : public VXCommandListBeginEndBuilder {
 public:
  std::size_t bytes = 0;

 protected:
  void sendAction(const VXAction& action) override {
    AFCPersistentOutputStreamBuffer out(AFCPersistentStream::kCurrentVersion, 8192);
    out.writeObject(&action);
    bytes = out.getBuffer().size();
  }
  bool traceEnabled() const override { return false; }
  std::ostream& traceStream() override { return unused_; }

 private:
  std::ostringstream unused_;
};

void BM_build_and_encode_action(benchmark::State& state) {
  fixture();
  EncodingBuilder builder;
  for (auto _ : state) {
    builder.beginImmediate(false);
    for (int i = 0; i < kCommands; ++i) builder.setAttribute(target(i), attrName(i), value(i));
    builder.end();
    benchmark::DoNotOptimize(builder.bytes);
  }
  state.counters["figure_build_and_encode_per_command_ns"] = perCommandNs(state);
}

}  // namespace

BENCHMARK(BM_encode_action);
BENCHMARK(plainLoop)->Name("BM_encode_action_baseline");
BENCHMARK(BM_decode_action);
BENCHMARK(plainLoop)->Name("BM_decode_action_baseline");
BENCHMARK(BM_decode_action_floor);
BENCHMARK(plainLoop)->Name("BM_decode_action_floor_baseline");
BENCHMARK(BM_build_and_encode_action);
