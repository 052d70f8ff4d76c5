#pragma once
// What the operator has asked to go wrong, so that a client's failure handling can be tested
// against a live server: close each connection after it has received a number of packets, frame
// the next packet to each client with a bad magic or with a declared length over the reader's
// limit, hold replies to requests back for a while.
//
// An order stands until "off": every connection, one that connects later included, carries out
// each close, magic and length order once; the delay applies to every reply while it is set.
// A close is abrupt, as when a server goes away: what was framed for the client and not yet
// sent, held replies included, is dropped with the connection.
// Orders carry a number (0: none) so that a connection can tell a new order from one it has
// already carried out. A plain value kept by the hub and read by the connections; not thread
// safe. apply() throws VXSimUsageException for an order it cannot read, leaving the value as it
// was.
#include <cstdint>
#include <string>

struct VXSimFaults {
  // Bounds on what the operator may ask for.
  static constexpr uint32_t kMaxDelayMs = 600000;

  uint64_t closeOrder = 0;
  uint32_t closeAfter = 0;  // packets a connection still receives once it has the order
  uint64_t magicOrder = 0;
  uint64_t lengthOrder = 0;
  uint32_t delayMs = 0;  // 0: replies go out at once
  uint64_t lastOrder = 0;

  // "close N" (N at least 1), "magic", "length", "delay MS" (0 ends the delay) or "off".
  void apply(const std::string& order);
  // "faults: none", or the standing orders, e.g. "faults: close after 3 packets, delay 200 ms".
  std::string describe() const;
};

extern const char* const kVXSimFaultUsage;
