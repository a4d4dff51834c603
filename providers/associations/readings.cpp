#include "associations/readings.h"

#include "provider_helper/computer_system.h"

namespace associations {
namespace {

Numbers readNow(Reading reading) {
    std::uint16_t state = 0;
    if (reading == Reading::HostPower && PH_GetHostPowerState(&state) == 0)
        return {state};
    return {};
}

} // namespace

const Numbers& Readings::read(Reading reading) {
    const auto [entry, isNew] = read_.try_emplace(reading);
    if (isNew)
        entry->second = readNow(reading);
    return entry->second;
}

} // namespace associations
