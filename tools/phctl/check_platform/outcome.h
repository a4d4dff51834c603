// What became of a call of one of the platform's functions.
#pragma once

#include <cstdint>
#include <string>

namespace phctl::check {

enum class Outcome {
    Works,
    Refused,        // it failed, as a function may
    Missing,        // there is no such function yet
    BreaksContract, // it does what its header says that it does not
    NotCalled
};

struct Report {
    std::string library;
    std::string function;
    std::string arguments; // which of its calls, in words
    Outcome outcome = Outcome::NotCalled;
    std::string remark; // why it is that outcome
    std::int64_t milliseconds = 0;
};

const char* nameOf(Outcome outcome); // "works", "refused", …

} // namespace phctl::check
