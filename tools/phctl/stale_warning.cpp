#include "stale_warning.h"

#include "database.h"
#include "errors.h"
#include "smash-db/sync/staleness.h"

#include <utility>

namespace phctl {
namespace {

bool isFirst() {
    static bool first = true;
    return std::exchange(first, false);
}

template <class Ask>
void warnIf(Ask isStale) {
    try {
        if (isFirst() && isStale())
            warn("the BMC's sensor records are newer than the database: run `phctl sync`");
    } catch (const std::exception&) { // it is only advice
    }
}

} // namespace

void warnIfStale(ipmi::Transport& bmc) {
    warnIf([&] { return smash::isStale(bmc); });
}

void warnIfStale() {
    constexpr int secondsToAnswer = 3;
    warnIf([] {
        ipmi::SessionSettings settings = knownBmc();
        settings.timeout = secondsToAnswer;
        return smash::isStale(*ipmi::openTransport(settings));
    });
}

} // namespace phctl
