#pragma once
// What the simulator harnesses share: the one-time preparation of the process, and the bytes
// with which a simulator connection becomes a listener: packet 11 (subscribe to the error log),
// then packet 7 registering the zone "Z", so that broadcasts of every kind are framed for it.
#include <cstdint>

#include "client/register.h"
#include "foundation/errlog.h"

// Registers the classes that actions are decoded into and silences the error log, which every
// command the scene refuses would otherwise fill. Once per process.
inline void prepareSimHarness() {
  static const bool prepared = [] {
    registerClientClasses();
    AFCErrLog::instance().removeAllBackends();
    return true;
  }();
  (void)prepared;
}

inline constexpr uint8_t kSimListenerSetup[] = {0x56, 0x58, 0x50, 0x01, 0,    0, 0, 11, 0,  0, 0,
                                                0,    0x56, 0x58, 0x50, 0x01, 0, 0, 0,  7,  0, 0,
                                                0,    7,    0xDA, 0x0B, 0,    0, 0, 1,  'Z'};
