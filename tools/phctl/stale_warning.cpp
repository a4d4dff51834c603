#include "stale_warning.h"

#include "errors.h"
#include "ipmi/first_question.h"
#include "smash-db/sync/sdr_repository.h"
#include "smash-db/sync/staleness.h"

#include <optional>
#include <utility>

namespace phctl {
namespace {

// What the BMC told in the providers' session.
bool wasAsked = false;
std::optional<smash::SdrRepositoryRow> repository;

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

void askIfStale() {
    ipmi::askFirst([](ipmi::Transport& bmc) {
        if (!std::exchange(wasAsked, true))
            repository = smash::readSdrRepositoryInfo(bmc);
    });
}

void warnIfStale() {
    if (repository)
        warnIf([] { return smash::isStale(*repository); });
}

} // namespace phctl
