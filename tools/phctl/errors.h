// How a command ends that does not succeed: one line on stderr, and an exit status. Warnings are lines there too.
#pragma once

#include <stdexcept>
#include <string>

namespace phctl {

enum ExitStatus { done = 0, failed = 1, wrongUsage = 2 };

// Thrown for a command that cannot be meant like this.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Thrown for a request that was refused or failed.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// From now on lines on stderr are JSON objects, for programs: {"error": "…", "status": 1}, {"warning": "…"}.
void complainInJson();

// Prints "phctl: TEXT", and returns the status.
int complain(const std::string& text, int status);
// Prints "phctl: warning: TEXT".
void warn(const std::string& text);

} // namespace phctl
