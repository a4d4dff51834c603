// The platform's functions as the library calls them: recorded, and failing where a test wants it; else they
// are the platform's own. Link with ph_test_platform_calls.
#pragma once

#include <string>
#include <vector>

struct PlatformCalls {
    std::vector<std::string> made;  // names, in order
    std::vector<std::string> texts; // with their arguments: "CIM_GetChannelNum(1, *, 30)"
    bool records = true;            // the two above; off where memory is to fail
    unsigned count = 0;
    unsigned failing = 0; // the nth call, from 1, fails; a closing function closes all the same
    bool hasFailed = false;
    bool leavesPefTable = false; // counts the filters without reading any

    int openHandles = 0;  // of databases
    int openSessions = 0; // of IPMI
    int pauses = 0;       // calls of sleep(), which returns at once

    void clear() { *this = {}; } // with nothing open
    // Closes sessions that the library has left open. Returns how many.
    int closeSessions();
};
extern PlatformCalls platformCalls;
