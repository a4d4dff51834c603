#include "ipmi-view/event_log.h"

#include "hooks/sel_log.h"

#include <algorithm>

namespace view {

std::vector<SelRecord> readEventLog(ipmi::Transport& bmc) {
    constexpr std::size_t latecomers = 64; // records that come in while the log is read
    constexpr std::size_t most = 0xFFFF;
    std::vector<CIM_SELEntry> entries(std::min(most, hooks::sel::readInfo(bmc).entries + latecomers));
    entries.resize(hooks::sel::readLog(bmc, entries));
    std::vector<SelRecord> records(entries.size());
    std::ranges::transform(entries, records.begin(),
                           [](const CIM_SELEntry& entry) { return std::to_array(entry.record); });
    return records;
}

void clearEventLog(ipmi::Transport& bmc) {
    constexpr auto longestErasure = std::chrono::minutes(1);
    hooks::sel::eraseLog(bmc, ipmi::Clock::now() + longestErasure);
}

void deleteRecord(ipmi::Transport& bmc, std::uint16_t id) {
    hooks::sel::eraseRecord(bmc, id);
}

} // namespace view
