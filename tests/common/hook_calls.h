// Every hook that takes a session, called with arguments of its types. Their list is written from the platform's
// headers, so that a hook that is added is called too. Link with ph_test_hook_calls.
#pragma once

#include <platform/cim_hooks.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

struct HookCall {
    // Returns a number below `limit`: what arguments are made of.
    using Pick = std::function<std::uint64_t(std::uint64_t limit)>;
    struct Outcome {
        int result;
        std::vector<std::string> faults; // of what it handed out
    };

    const char* name;
    Outcome (*call)(IPMI20_SESSION_T* session, const Pick& pick);
};

// Out-arguments are just as large as the headers say, in memory of their own.
std::span<const HookCall> hookCalls();
