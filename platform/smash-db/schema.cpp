#include "smash-db/schema.h"

#include "smash-db/conversion_table.h"
#include "smash-db/device_tables.h"
#include "smash-db/hardware_tables.h"
#include "smash-db/indication_tables.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/job_tables.h"
#include "smash-db/message_tables.h"
#include "smash-db/network_tables.h"
#include "smash-db/package_tables.h"
#include "smash-db/power_tables.h"

namespace smash {
namespace {

constexpr const Table* smashTables[] = {
    &sessionTable,           &deviceTable,           &fruTable,
    &compactSdrTable,        &fullSdrTable,          &powerServiceTable,
    &powerCapabilitiesTable, &staticIpTable,         &cimxmlFilterTable,
    &cimxmlDestinationTable, &eventMessageTable,     &entityDeviceTable,
    &entityAssociationTable, &packageTable,          &powerSupplyInfoTable,
    &indicationServiceTable, &sensorConversionTable, &sdrRepositoryTable,
    &processorTable,         &memoryTable,           &memoryModuleTable,
    &connectorTable,         &pciDeviceTable};

constexpr const Table* temporaryTables[] = {&jobTable, &jobSequenceTable, &jobErrorTable};

} // namespace

constexpr Schema smashSchema{"/conf/smash.db", 6, false, smashTables};
// The name must not begin with "/tmp/smash": such files are removed when the CLP daemon is started.
constexpr Schema temporarySchema{"/tmp/method_jobs.db", 2, true, temporaryTables};

} // namespace smash
