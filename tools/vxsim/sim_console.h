#pragma once
// The operator's commands, one line each: "tree" prints the scene, "zone NAME on|off" switches
// a zone, "message TEXT" sends a server message to every client, "errlog LEVEL TEXT" sends an
// error-log entry (LEVEL a name such as ERROR or a number 0-4), "drop" closes every connection
// and "quit" ends the simulator. Runs on the hub's thread; never throws for a bad line: it
// prints what is wrong.
// "message-burst COUNT PREFIX" sends COUNT numbered messages ("PREFIX0", "PREFIX1", ...) at once,
// to see how a client copes with a flood of events.
#include <ostream>
#include <string>

#include "tools/vxsim/sim_hub.h"

enum class VXSimConsoleResult { Continue, Quit };

VXSimConsoleResult vxSimConsoleCommand(VXSimHub& hub, const std::string& line, std::ostream& out);
