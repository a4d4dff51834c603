// Shows how far the reading of a long event log is, whoever in this process reads it.
#pragma once

#include "progress.h"

#include <cstdint>
#include <span>

namespace phctl {

class LogProgress {
public:
    using Bytes = std::span<const std::uint8_t>;

    explicit LogProgress(StatusLine& line) : progress_(line) {}

    // An exchange with the BMC. What Get SEL Info counts is then read with Get SEL Entry.
    void exchanged(std::uint8_t netFn, std::uint8_t command, Bytes request, Bytes answer);

private:
    Progress progress_;
    std::size_t total_ = 0;
    std::size_t read_ = 0;
};

} // namespace phctl
