#include "virtual-bmc/pef/pef_alerts.h"

#include <algorithm>
#include <platform/sel_record.h>

namespace vbmc {
namespace {

namespace pef = ipmi::pef;

using Record = std::span<const std::uint8_t, 16>;

constexpr std::uint8_t any = 0xFF;

// Mask, compare 1 (the bits that have to be equal), compare 2 (what they have to be). One equal bit among the
// mask's other bits is enough.
bool matchesData(std::span<const std::uint8_t, 3> test, std::uint8_t value) {
    const unsigned mask = test[0], exact = test[1];
    const unsigned equal = ~(value ^ test[2]) & mask;
    const unsigned loose = mask & ~exact;
    return (mask & exact & ~equal) == 0 && (loose == 0 || (loose & equal) != 0);
}

// Clients that set a filter's sensor and nothing else leave zeros in the other fields. Zeros mean "any"
// there, because no event has them.
bool matches(std::span<const std::uint8_t> filter, Record record) {
    const auto matchesByte = [&](std::size_t field, std::size_t place) {
        return filter[field] == any || filter[field] == record[place];
    };
    const bool isOfAnybody = filter[4] == 0 && filter[5] == 0;
    const bool isAnyTrigger = filter[8] == 0;
    const unsigned offsets = filter[9] | unsigned{filter[10]} << 8;
    const unsigned offset = PH_SelEventOffset(record.data());
    return (isOfAnybody || (matchesByte(4, 7) && matchesByte(5, 8))) && matchesByte(6, 10) &&
           matchesByte(7, 11) && (isAnyTrigger || matchesByte(8, 12)) &&
           (offsets == 0 || (offsets >> offset & 1) != 0) &&
           matchesData(filter.subspan<11, 3>(), record[13]) &&
           matchesData(filter.subspan<14, 3>(), record[14]) &&
           matchesData(filter.subspan<17, 3>(), record[15]);
}

bool isSameDestination(const Alert& left, const Alert& right) {
    return left.channel == right.channel && left.selector == right.selector;
}

// It is not known here whether an alert arrives; sending it counts.
void addAlerts(const State& state, std::uint8_t policy, std::vector<Alert>& alerts) {
    bool isSent = false;
    Alert skipped; // the latest entry, if it was not sent
    std::uint8_t skippedBy = pef::sendAlways;
    for (const AlertPolicy& entry : state.get<Pef>().policies) {
        if (entry.bytes[0] >> 4 != policy || (entry.bytes[0] & pef::policyEnabled) == 0)
            continue;
        const auto channel = static_cast<std::uint8_t>(entry.bytes[1] >> 4);
        const auto selector = static_cast<std::uint8_t>(entry.bytes[1] & 0x0F);
        if (state.get<Lans>().find(channel) == nullptr)
            continue;
        const Alert alert{policy, channel, selector,
                          state.get<AlertDestinations>().get(channel, selector).kind};
        if ((skippedBy == pef::goOnWithAnotherChannel && channel == skipped.channel) ||
            (skippedBy == pef::goOnWithAnotherType && alert.type == skipped.type))
            continue;
        const std::uint8_t rule = entry.bytes[0] & pef::policyRuleMask;
        if (isSent && rule == pef::stop)
            return;
        if (isSent && rule != pef::sendAlways) {
            skipped = alert;
            skippedBy = rule;
            continue;
        }
        isSent = true;
        skippedBy = pef::sendAlways;
        if (std::ranges::none_of(alerts, [&](const Alert& sent) { return isSameDestination(sent, alert); }))
            alerts.push_back(alert);
    }
}

} // namespace

EventMatch filterEvent(const State& state, Record record) {
    const Pef& machine = state.get<Pef>();
    EventMatch match;
    if (!PH_IsSelSystemEvent(record.data()) || (machine.control & pef::enabled) == 0)
        return match;
    for (const PefFilter& filter : machine.filters) {
        if ((filter.bytes[0] & pef::filterEnabled) == 0 || !matches(filter.bytes, record))
            continue;
        match.filters.push_back(filter.number);
        if ((filter.bytes[1] & machine.actionControl & pef::alertAction) != 0)
            addAlerts(state, filter.bytes[2] & pef::policyNumberMask, match.alerts);
    }
    return match;
}

} // namespace vbmc
