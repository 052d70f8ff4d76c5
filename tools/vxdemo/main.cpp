// Encodes a small action-like object graph (a lower-third: a set-up step and its text lines,
// sharing one style), prints the bytes as hex and as text, reads them back through the class
// registry and prints what came back.
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "foundation/persistent_dump.h"
#include "foundation/persistent_stream.h"

namespace {

// A style shared by several lines.
class DemoStyle : public AFCPersistent, public AFCShareBase {
  AFC_DECLARE_CLASS()
public:
  std::string font = "Sans Bold";
  float size = 42.0f;
  void write(AFCPersistentOutputStream& out) const override {
    AFCPersistent::write(out);
    out << font << size;
  }
  void read(AFCPersistentInputStream& in) override {
    AFCPersistent::read(in);
    in >> font >> size;
  }
};
AFC_IMPLEMENT_CLASS(DemoStyle, AFCPersistent)

// One text line of the title.
class DemoLine : public AFCPersistent {
  AFC_DECLARE_CLASS()
public:
  std::string target;
  std::u16string text;
  AFCRef<DemoStyle> style;
  void write(AFCPersistentOutputStream& out) const override {
    AFCPersistent::write(out);
    out << target << std::u16string_view(text);
    out.writeObject(style.get());
  }
  void read(AFCPersistentInputStream& in) override {
    AFCPersistent::read(in);
    in >> target >> text;
    style = in.readSharedObject<DemoStyle>();
  }
};
AFC_IMPLEMENT_CLASS(DemoLine, AFCPersistent)

// The step: a channel, a node to set up and its lines.
class DemoStep : public AFCPersistent {
  AFC_DECLARE_CLASS()
public:
  int32_t channel = 0;
  std::string node;
  std::vector<std::unique_ptr<DemoLine>> lines;
  void write(AFCPersistentOutputStream& out) const override {
    AFCPersistent::write(out);
    out << channel << node << static_cast<uint32_t>(lines.size());
    for (const auto& line : lines) out.writeObject(line.get());
  }
  void read(AFCPersistentInputStream& in) override {
    AFCPersistent::read(in);
    uint32_t count = 0;
    in >> channel >> node >> count;
    lines.clear();
    for (uint32_t i = 0; i < count; ++i) lines.push_back(in.readOwnedObject<DemoLine>());
  }
};
AFC_IMPLEMENT_CLASS(DemoStep, AFCPersistent)

DemoStep sampleStep() {
  AFCRef<DemoStyle> style(new DemoStyle());
  DemoStep step;
  step.channel = 1;
  step.node = "Root/_Br5_Title_1";
  const std::pair<const char*, const char16_t*> texts[] = {
      {"name.Text", u"Jane Doe"}, {"role.Text", u"Reporter, \u00C5lesund"}};
  for (const auto& [target, text] : texts) {
    auto line = std::make_unique<DemoLine>();
    line->target = target;
    line->text = text;
    line->style = style;
    step.lines.push_back(std::move(line));
  }
  return step;
}

}  // namespace

int main() {
  registerFoundationClasses();
  DemoStep::staticClass();
  DemoLine::staticClass();
  DemoStyle::staticClass();

  AFCPersistentOutputStreamBuffer out;
  const DemoStep step = sampleStep();
  out.writeObject(&step);
  const AFCBuffer& bytes = out.getBuffer();
  std::printf("== %zu bytes\n%s\n== as values\n%s\n", bytes.size(),
              afcHexDump(bytes.data(), bytes.size()).c_str(),
              afcDumpPersistent(bytes.data(), bytes.size()).c_str());

  try {
    AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
    auto back = in.readOwnedObject<DemoStep>();
    std::printf("== read back\nchannel %d, node %s, %zu lines\n", back->channel,
                back->node.c_str(), back->lines.size());
    for (const auto& line : back->lines) {
      std::printf("  %s (%u UTF-16 units), style %s %.0f, shared: %s\n", line->target.c_str(),
                  static_cast<unsigned>(line->text.size()), line->style->font.c_str(),
                  line->style->size, line->style.get() == back->lines[0]->style.get() ? "yes" : "no");
    }
  } catch (const AFCException& e) {
    std::fprintf(stderr, "vxdemo: %s\n", e.what());
    return 1;
  }
  return 0;
}
