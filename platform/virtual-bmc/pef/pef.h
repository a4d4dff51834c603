// Platform event filtering: the filters and alert policies (IPMI 2.0, 17 and 30).
#pragma once

#include "ipmi/pef_configuration.h"
#include "virtual-bmc/state/part.h"

#include <string>
#include <vector>

namespace vbmc {

// A slot of a table with what a client wrote to it. Slots that were never written hold zeros.
template <std::size_t Size>
struct PefEntry {
    std::uint8_t number = 0; // from 1
    std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(Size);

    void fields(Fields& fields);
    void check(const Place& place) const;
};
using PefFilter = PefEntry<ipmi::pef::filterSize>;
using AlertPolicy = PefEntry<ipmi::pef::policySize>;

struct Pef {
    std::uint8_t filterCount = 20;
    std::vector<PefFilter> filters;
    std::uint8_t policyCount = 20;
    std::vector<AlertPolicy> policies;
    std::uint8_t control = ipmi::pef::enabled;           // parameter 1
    std::uint8_t actionControl = ipmi::pef::alertAction; // parameter 2
    bool isSetInProgress = false;                        // parameter 0

    static constexpr const char* name = "pef";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const;

    bool setPolicy(std::uint8_t number, std::span<const std::uint8_t, ipmi::pef::policySize> bytes);
};

} // namespace vbmc
