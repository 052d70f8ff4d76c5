// Builds a lower-third the way an automation script does, through a command-list builder: a
// set-up node with its texts in one bracket, a keyframed fade-in started inside a transaction,
// a callback and a zone switch. Every action the builder would send is printed as the packet
// payload's bytes (hex and decoded values) and read back through the class registry, so the
// whole command flow can be seen without a render server.
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include "commands/action.h"
#include "commands/begin_end_builder.h"
#include "commands/register.h"
#include "foundation/attribute_string.h"
#include "foundation/attribute_vector.h"
#include "foundation/persistent_dump.h"

namespace {

// Prints instead of sending; builder trace lines go to standard output too.
class PrintingBuilder : public VXCommandListBeginEndBuilder {
 public:
  int failures = 0;

 protected:
  void sendAction(const VXAction& action) override {
    AFCPersistentOutputStreamBuffer out;
    out.writeObject(&action);
    const AFCBuffer& bytes = out.getBuffer();
    std::printf("\n== action %d: %s, channel %u, %zu records, %zu bytes\n", ++sent_,
                action.getClass()->getName().c_str(), action.getChannel(),
                action.getCommands().size(), bytes.size());
    for (const auto& record : action.getCommands()) {
      std::printf("   %s\n", record->toString().c_str());
    }
    std::printf("-- hex\n%s\n-- values\n%s\n", afcHexDump(bytes.data(), bytes.size()).c_str(),
                afcDumpPersistent(bytes.data(), bytes.size()).c_str());
    readBack(bytes);
  }
  bool traceEnabled() const override { return true; }
  std::ostream& traceStream() override { return std::cout << "   trace: "; }

 private:
  void readBack(const AFCBuffer& bytes) {
    try {
      AFCPersistentInputStreamBuffer in(bytes.data(), bytes.size());
      auto back = in.readOwnedObject<VXAction>();
      std::printf("-- read back: %s with %zu records\n", back->getClass()->getName().c_str(),
                  back->getCommands().size());
    } catch (const AFCException& e) {
      std::fprintf(stderr, "vxdemo: reading the action back failed: %s\n", e.what());
      ++failures;
    }
  }

  int sent_ = 0;
};

AFCRef<VXAnimation> fadeIn(const std::string& title) {
  AFCRef<VXAnimation> animation(new VXAnimation);
  VXAnimationChannel& alpha = animation->createChannel();
  alpha.setDestination(title + ":Material.Alpha");
  alpha.addKeyframe(0, 0.0f, VX_INTERPOLATION_LINEAR, VX_INTERPOLATION_LINEAR);
  alpha.addKeyframe(500000, 1.0f, VX_INTERPOLATION_LINEAR, VX_INTERPOLATION_LINEAR);
  return animation;
}

void lowerThird(PrintingBuilder& builder) {
  const std::string title = "Root/_Br5_Title_1";
  builder.setChannel(1);

  builder.beginImmediate(false);
  builder.createNode("Group", "_Br5_Title_1", "Root");
  builder.loadScene("LowerThird", title, "lt");
  builder.setAttribute(title + "/lt/name", "Text",
                       std::make_unique<AFCAttributeWString>(u"Jane Doe"));
  builder.setAttribute(title + "/lt/role", "Text",
                       std::make_unique<AFCAttributeWString>(u"Reporter, \u00C5lesund"));
  auto position = std::make_unique<AFCAttributeVec3f>();
  position->fromString("[-0.6, -0.7, 0]");
  builder.setAttribute(title, "Position", std::move(position));
  builder.end();

  builder.beginImmediate(false);
  builder.transactionBegin("LT_IN", false);
  VXActivateAnimationOptions options;
  options.name = "fadeIn";
  builder.activateAnimationObj(fadeIn(title), title, options);
  builder.transactionEnd();
  builder.commandCallback();
  builder.end();

  VXZonesState zones;
  zones.set("LowerThirds", true);
  builder.setZoneState(zones);
}

}  // namespace

int main() {
  registerCommandClasses();
  PrintingBuilder builder;
  try {
    lowerThird(builder);
  } catch (const AFCException& e) {
    std::fprintf(stderr, "vxdemo: %s\n", e.what());
    return 1;
  }
  return builder.failures == 0 ? 0 : 1;
}
