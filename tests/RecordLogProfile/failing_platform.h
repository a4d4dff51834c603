// Platform functions that do their work on the virtual BMC, or fail when a test says so.
#pragma once

#include <set>
#include <string>

struct FailingPlatform {
    std::set<std::string> failing; // names of functions
    int openSessions = 0;
    int openHandles = 0;
};

extern FailingPlatform platform;
