// Runs the built phctl as a person or a script does.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace ph_test {

struct Outcome {
    int status = -1; // exit status; 128 and more: ended by a signal
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

// With the environment of the test, which says where PH_SYSROOT is.
Outcome phctl(const std::vector<std::string>& arguments);

// The same on a terminal of so many columns, whose output is in `out`.
Outcome phctlOnTerminal(const std::vector<std::string>& arguments, unsigned short columns);

} // namespace ph_test
