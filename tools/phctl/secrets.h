// Values that must not stand on the command line, where other users see them in the list of processes.
#pragma once

#include "command_line.h"

#include <string>
#include <vector>

namespace phctl {

// Reads the first line of a file, which is standard input for "-"; on a terminal it is asked for there, as
// `name`, and not shown. Throws UsageError.
std::string readSecret(const std::string& name, const std::string& file);

// Adds --from-file Name=FILE to a command. What the option is given becomes Name=value among the command's
// other values when these are read.
class SecretValues {
public:
    void addTo(Command command);
    // Appends them. Throws UsageError.
    void appendTo(std::vector<std::string>& values) const;
    bool empty() const { return sources_.empty(); }

private:
    std::vector<std::string> sources_;
};

} // namespace phctl
