#include "foundation/class.h"
#include "foundation/persistent_stream.h"

void registerFoundationClasses() {
  AFCGlobalClassEx::instance();
  AFCObject::staticClass();
  AFCPersistent::staticClass();
}
