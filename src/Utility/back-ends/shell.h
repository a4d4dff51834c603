// The fixed shell commands with which the library manages daemons and the controller itself.
#pragma once

#include <functional>
#include <string_view>

namespace ph {

// Runs a command with the shell and returns its exit status, or -1 when it cannot be run. Under PH_SYSROOT,
// words that begin with '/' are taken below that folder, and commands are searched in its usr/sbin, usr/bin,
// sbin and bin first, then in /usr/bin and /bin only: a test that forgot its stand-in for reboot must not
// reach the machine's own.
int runCommand(const char* command);

// Visits the lines that a command prints. A line that does not fit into `lineSize` characters, its end
// included, comes in pieces. `visit` returns false to stop. Returns -1 when the command cannot be run.
int readCommand(const char* command, std::size_t lineSize,
                const std::function<bool(std::string_view)>& visit);

} // namespace ph
