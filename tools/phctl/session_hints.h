// What to try when a BMC refuses a session.
#pragma once

#include <exception>
#include <string>

namespace phctl {

// Returns the text of the error and, of a session that was refused, which options may help.
std::string explain(const std::exception& error);

} // namespace phctl
