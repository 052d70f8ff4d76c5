#pragma once
// The bytes with which a simulator connection becomes a listener in the harnesses: packet 11
// (subscribe to the error log), then packet 7 registering the zone "Z", so that broadcasts of
// every kind are framed for it.
#include <cstdint>

inline constexpr uint8_t kSimListenerSetup[] = {0x56, 0x58, 0x50, 0x01, 0,    0, 0, 11, 0,  0, 0,
                                                0,    0x56, 0x58, 0x50, 0x01, 0, 0, 0,  7,  0, 0,
                                                0,    7,    0xDA, 0x0B, 0,    0, 0, 1,  'Z'};
