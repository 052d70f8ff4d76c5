#pragma once
// What the simulator is started with: the address it listens on, the password it asks for, and
// the version it reports. Parsed from the command line; bad arguments throw
// VXSimUsageException with a text for the user.
#include <cstdint>
#include <string>
#include <vector>

#include "foundation/exception.h"

AFC_DECLARE_EXCEPTION(VXSimUsageException, AFCException);

// The five words of the version reply. major holds the debug-build bit (bit 30); minor is a
// release number when 1-100 and a beta number plus 100 above.
struct VXSimVersion {
  uint32_t word0 = 0;
  uint32_t word1 = 0;
  uint32_t word2 = 0;
  uint32_t major = 2295;
  uint32_t minor = 7;

  // major * 1000 plus the minor ordered betas first: what payload streams are made for.
  uint32_t combined() const;
};

// "2295.7", "2295beta3", "2295" (minor 0), each optionally followed by " debug"; or the raw
// words "WORD1,WORD2,MAJOR,MINOR" (four numbers) or "WORD0,WORD1,WORD2,MAJOR,MINOR".
VXSimVersion vxSimParseVersion(const std::string& text);

struct VXSimOptions {
  std::string host = "127.0.0.1";
  int port = 6260;       // 0 picks a free port
  std::string password;  // empty: no login
  VXSimVersion version;
  int controlPort = -1;             // -1: no control port; 0 picks a free port
  std::vector<std::string> faults;  // fault orders to inject at start (see sim_faults.h)
  bool help = false;
};

// --port N, --host H, --password P, --version V, --control-port N, --fault ORDER (repeatable),
// --help; "--name=value" works as well.
VXSimOptions vxSimParseArguments(const std::vector<std::string>& arguments);
extern const char* const kVXSimUsage;
