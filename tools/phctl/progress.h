// How far a long command is.
#pragma once

#include "status_line.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace phctl {

// Shows each step on a terminal; otherwise each quarter of a phase.
class Progress {
public:
    explicit Progress(StatusLine& line) : line_(line) {}

    void show(std::string_view phase, std::size_t step, std::size_t total);

private:
    StatusLine& line_;
    std::string phase_;
    std::size_t quarter_ = 0;
};

} // namespace phctl
