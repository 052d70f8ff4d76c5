#include "foundation/attribute_registry.h"
#include "foundation/class.h"
#include "foundation/errlog_event.h"
#include "foundation/persistent_stream.h"

namespace {
// The reflection records describe themselves too, so that remote code can name them.
void registerReflectionClasses() {
  static const bool once = [] {
    for (const char* name : {"AFCClass", "AFCConstructor", "AFCMethod"}) {
      (new AFCClassEx(name, &AFCObject::staticClass()))->registerClass();
    }
    return true;
  }();
  (void)once;
}
}  // namespace

void registerFoundationClasses() {
  AFCGlobalClassEx::instance();
  AFCObject::staticClass();
  AFCPersistent::staticClass();
  registerReflectionClasses();
  registerAttributeClasses();
  AFCErrLogEvent::staticClass();
}
