// Checks a function in a process of its own: it may crash or never return.
#pragma once

#include "check_platform/outcome.h"
#include "check_platform/rows.h"

#include <vector>

namespace phctl::check {

// Without a check, a function is only looked for: there is no report of one that is there.
std::vector<Report> checkIsolated(const char* library, const char* function, Check check, int timeout);

} // namespace phctl::check
