// Where the host's SMBIOS table comes from.
#pragma once

#include "smash-db/sync/sync.h"
#include "smbios/hardware.h"

#include <platform/smash_db_inventory.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace smash {

struct SmbiosTable {
    smbios::Table table;
    std::string source; // for people
};

// The platform keeps here the table that the host's firmware, or phctl, hands over.
inline constexpr const char* keptSmbiosFile = "/conf/smbios.bin";

// Takes the table of `file`, which is kept then; without one that of the BMC (OEM command Read SMBIOS Table), else the
// one that is kept. Throws smbios::NoTable, or another std::runtime_error, for a file that was named and is of no use; a
// table of the others that is of none is remarked.
std::optional<SmbiosTable> findSmbiosTable(ipmi::Transport& bmc, const DeviceRecord& controller,
                                           const std::filesystem::path& file,
                                           std::vector<SyncRemark>& remarks,
                                           const std::function<void(std::size_t, std::size_t)>& progress);

// Remarks a table that has another UUID than the host whose BMC it is.
void noteOtherSystem(const smbios::Hardware& hardware, const DeviceRecord& host,
                     std::vector<SyncRemark>& remarks);

} // namespace smash
