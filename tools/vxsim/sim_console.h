#pragma once
// The operator's commands, one line each, from standard input or the control port:
//   tree [--json]       the scene, as indented lines or as one line of JSON
//   zone NAME on|off    switches a zone
//   message TEXT        a server message to every client
//   message-burst COUNT PREFIX
//                       COUNT messages "PREFIX0", "PREFIX1", ... at once (COUNT up to 100000)
//   pick XML            a pick result to every client
//   errlog LEVEL TEXT   an error-log entry (LEVEL a name such as ERROR or a number 0-4)
//   fault [close N|magic|length|delay MS|off]
//                       injects a fault (see sim_faults.h), then prints the standing ones
//   drop                closes every connection
//   quit                ends the simulator
// The JSON tree is one object per node: "name", "type", "kind" ("node" or "effect"), "active"
// (effects only), "scene" (the scene loaded into it, or ""), "attributes" (name to text form)
// and "children" (objects in the scene's order).
// Runs on the hub's thread; never throws for a bad line: it prints what is wrong.
#include <ostream>
#include <string>

#include "tools/vxsim/sim_hub.h"

enum class VXSimConsoleResult { Continue, Quit };

VXSimConsoleResult vxSimConsoleCommand(VXSimHub& hub, const std::string& line, std::ostream& out);
