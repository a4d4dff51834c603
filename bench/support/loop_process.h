// The yardstick of a contest as a process of its own: the contest's program again, which opens a session and
// runs its loop. What it costs to start a process and to open a session is in every contestant then.
#pragma once

#include "ipmi/transport.h"

#include <memory>
#include <string>

namespace bench {

// The command of the process, and IPMI_PASSWORD for it.
std::string loopCommand(const std::string& program, const ipmi::SessionSettings& settings);

// The session, in the process of such a command; nothing in any other.
std::unique_ptr<ipmi::Transport> openLoop(int argc, char** argv);

} // namespace bench
