// The platform's functions as the library calls them: recorded, and failing where a test wants it; else they
// are the platform's own. Link with ph_test_platform_calls.
#pragma once

#include <platform/cim_hooks.h>
#include <platform/smash_db.h>

#include <any>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

struct PlatformCalls {
    std::vector<std::string> made;  // names, in order
    std::vector<std::string> texts; // with their arguments: "CIM_GetChannelNum(1, *, 30)"
    bool records = true;            // the two above; off where memory is to fail
    unsigned count = 0;
    unsigned failing = 0; // the nth call, from 1, fails; a closing function closes all the same
    bool hasFailed = false;
    std::set<std::string, std::less<>> broken;             // functions that fail whenever they are called
    std::map<std::string, std::any, std::less<>> standIns; // functions that answer in the platform's place

    // Hooks that came back later than their argument `timeout` allows, with a second for the last message.
    std::vector<std::string> overdue;

    int openHandles = 0;                // of databases
    int openSessions = 0;               // of IPMI
    std::vector<unsigned> pauses;       // seconds of sleep(), which returns at once
    std::function<void()> duringPauses; // called for each

    void clear() { *this = {}; } // with nothing open
    // The texts of the calls that speak to the BMC, without those that open and close its session.
    std::vector<std::string> hooks() const;
    // Closes sessions that the library has left open. Returns how many.
    int closeSessions();
};
extern PlatformCalls platformCalls;

// PH_STAND_IN(CIM_GetUser, [](auto*, uint8_t slot, char* name, int) { … });
#define PH_STAND_IN(name, ...) (platformCalls.standIns[#name] = std::function<decltype(name)>(__VA_ARGS__))
