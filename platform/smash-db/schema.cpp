#include "smash-db/schema.h"

#include "smash-db/inventory_tables.h"
#include "smash-db/job_tables.h"
#include "smash-db/power_tables.h"

namespace smash {
namespace {

constexpr const Table* smashTables[] = {&sessionTable,          &deviceTable,  &fruTable,
                                        &compactSdrTable,       &fullSdrTable, &powerServiceTable,
                                        &powerCapabilitiesTable};

constexpr const Table* temporaryTables[] = {&jobTable, &jobSequenceTable, &jobErrorTable};

} // namespace

constexpr Schema smashSchema{"/conf/smash.db", 1, false, smashTables};
constexpr Schema temporarySchema{"/tmp/smash_tmp.db", 1, true, temporaryTables};

} // namespace smash
