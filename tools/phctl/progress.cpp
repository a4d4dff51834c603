#include "progress.h"

#include <utility>

namespace phctl {
namespace {

std::string_view title(std::string_view phase) {
    constexpr std::pair<std::string_view, std::string_view> titles[] = {
        {"device", "Identification"}, {"SDR", "Sensor data records"}, {"FRU", "Inventory (FRU)"},
        {"SMBIOS", "SMBIOS table"},   {"database", "Database"},       {"SEL", "Event log"},
    };
    for (const auto& [name, text] : titles)
        if (name == phase)
            return text;
    return phase;
}

} // namespace

void Progress::show(std::string_view phase, std::size_t step, std::size_t total) {
    const std::string text =
        std::string(title(phase)) + ": " + std::to_string(step) + " of " + std::to_string(total);
    if (line_.isTerminal)
        return line_.show(text);
    const std::size_t quarter = total > 0 ? 4 * step / total : 4;
    if (phase == phase_ && quarter == quarter_)
        return;
    const bool isNew = phase != phase_;
    phase_ = phase;
    quarter_ = quarter;
    if (quarter > 0 || (isNew && total > 1))
        line_.show(text);
}

} // namespace phctl
