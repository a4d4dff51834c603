// What clients set about indications.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_indications.h>

namespace smash {

extern const TableOf<CimxmlFilterRow> cimxmlFilterTable;
extern const TableOf<CimxmlDestinationRow> cimxmlDestinationTable;
extern const TableOf<IndicationServiceRow> indicationServiceTable;

} // namespace smash
