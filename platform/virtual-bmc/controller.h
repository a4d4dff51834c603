// The controller: what answers an IPMI message.
#pragma once

#include "virtual-bmc/state/state.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <span>

namespace vbmc {

struct Outcome {
    std::size_t size = 0; // of the answer; 0: none comes
    std::chrono::milliseconds delay{0};
};

// Runs a command of a session with this privilege level and writes its answer, completion code first.
// `answer` holds ipmi::maxMessage bytes.
Outcome execute(State& state, int privilege, std::uint8_t netFn, std::uint8_t command,
                std::span<const std::uint8_t> request, std::span<std::uint8_t> answer);

} // namespace vbmc
