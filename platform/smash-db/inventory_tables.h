// How to reach the BMC, its devices, FRUs and sensors.
#pragma once

#include "smash-db/table.h"

#include <platform/smash_db_inventory.h>

namespace smash {

// What Get SDR Repository Info told when the sensors were read. Times are the BMC's, in seconds; 0 where it leaves
// them out.
struct SdrRepositoryRow {
    std::uint16_t records;
    std::uint32_t lastAddition;
    std::uint32_t lastErase;
};

extern const TableOf<IPMISessionInfo> sessionTable;
extern const TableOf<DeviceRecord> deviceTable;
extern const TableOf<FruRecord> fruTable;
extern const TableOf<CompactSdr> compactSdrTable;
extern const TableOf<FullSdr> fullSdrTable;
// The number behind the first '(' of a sensor's ElementName, as an indexed term: its own number, unless its name
// has a '('.
#define SMASH_EVENT_NUMBER                                                                                   \
    "CASE instr(name, '(') WHEN 0 THEN sensorNumber "                                                        \
    "ELSE CAST(substr(name, instr(name, '(') + 1) AS INTEGER) END"

extern const TableOf<SdrRepositoryRow> sdrRepositoryTable;

} // namespace smash
