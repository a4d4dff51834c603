#include "smash-db/sync/staleness.h"

#include "smash-db/connection.h"
#include "smash-db/rows.h"
#include "smash-db/sync/sdr_repository.h"

namespace smash {
namespace {

template <class Ask>
bool differs(Ask ask) {
    const auto database = connect(smashSchema);
    const auto stored = read(select(*database, sdrRepositoryTable), sdrRepositoryTable);
    if (stored.count == 0)
        return false;
    const SdrRepositoryRow& then = *stored.records;
    const SdrRepositoryRow now = ask();
    return now.records != then.records || now.lastAddition != then.lastAddition ||
           now.lastErase != then.lastErase;
}

} // namespace

bool isStale(ipmi::Transport& bmc) {
    return differs([&] { return readSdrRepositoryInfo(bmc); });
}

bool isStale(const SdrRepositoryRow& now) {
    return differs([&] { return now; });
}

} // namespace smash
