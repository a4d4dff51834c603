#include "boot/boot_choice.h"

#include "Utility/engine/guard.h"
#include "Utility/values/record_fields.h"

#include <algorithm>

namespace ph::boot {
namespace {

constexpr Configuration configurationTable[] = {
    {"BootConfigSetting-Persistent", "Boot Configuration of Every Boot", true},
    {"BootConfigSetting-Once", "Boot Configuration of the Next Boot", false},
};

// The identifiers of structured boot strings are DMTF's; each device has a string of its own.
constexpr Source sourceTable[] = {
    {"BootSourceSetting-Network", "Network (PXE)", "CIM:Network:1", CIM_BOOT_NETWORK},
    {"BootSourceSetting-Disk", "Hard Disk", "CIM:Hard-Disk:1", CIM_BOOT_DISK},
    {"BootSourceSetting-DiskSafeMode", "Hard Disk, Safe Mode", nullptr, CIM_BOOT_DISK_SAFE_MODE},
    {"BootSourceSetting-DiagnosticPartition", "Diagnostic Partition", nullptr, CIM_BOOT_DIAGNOSTIC_PARTITION},
    {"BootSourceSetting-CD", "CD or DVD", "CIM:CD/DVD:1", CIM_BOOT_CD},
    {"BootSourceSetting-FirmwareSetup", "Setup of the System Firmware", nullptr, CIM_BOOT_FIRMWARE_SETUP},
    {"BootSourceSetting-RemoteFloppy", "Remote Floppy", "CIM:Floppy:2", CIM_BOOT_REMOTE_FLOPPY},
    {"BootSourceSetting-RemoteCD", "Remote CD or DVD", "CIM:CD/DVD:2", CIM_BOOT_REMOTE_CD},
    {"BootSourceSetting-RemoteMedia", "Remote Media", nullptr, CIM_BOOT_REMOTE_MEDIA},
    {"BootSourceSetting-RemoteDisk", "Remote Hard Disk", "CIM:Hard-Disk:2", CIM_BOOT_REMOTE_DISK},
    {"BootSourceSetting-Floppy", "Floppy or Other Removable Media", "CIM:Floppy:1", CIM_BOOT_FLOPPY},
};

template <class Row>
const Row* find(std::span<const Row> rows, const char* instanceId) {
    const auto found = std::ranges::find_if(rows, [&](const Row& row) {
        return instanceId != nullptr && std::strcmp(row.instanceId, instanceId) == 0;
    });
    return found != rows.end() ? &*found : nullptr;
}

void choose(const Flags& flags, PHBootChoice& choice) {
    for (const Configuration& configuration : configurations())
        if (flags.isNext(configuration))
            copyText(choice.configuration, configuration.instanceId);
    for (const Source& source : sources())
        if (source.device == flags.device())
            copyText(choice.source, source.instanceId);
}

} // namespace

std::span<const Configuration> configurations() {
    return configurationTable;
}

const Configuration* findConfiguration(const char* instanceId) {
    return find(configurations(), instanceId);
}

std::span<const Source> sources() {
    return sourceTable;
}

const Source* findSource(const char* instanceId) {
    return find(sources(), instanceId);
}

const Source* findSourceByString(const char* structuredBootString) {
    const auto* const found = std::ranges::find_if(sourceTable, [&](const Source& source) {
        return source.structuredBootString != nullptr && structuredBootString != nullptr &&
               std::strcmp(source.structuredBootString, structuredBootString) == 0;
    });
    return found != std::end(sourceTable) ? found : nullptr;
}

bool changeOrder(const Configuration& configuration, std::uint8_t device) {
    Flags flags;
    if (!flags.read() || !flags.areThere())
        return false;
    if (device != CIM_BOOT_NO_OVERRIDE)
        return flags.set(configuration, device);
    return !flags.isNext(configuration) || flags.clear();
}

} // namespace ph::boot

int PH_GetBootChoice(PHBootChoice* choice) {
    *choice = {};
    return ph::guarded(-1, [&] {
        ph::boot::Flags flags;
        if (!flags.read())
            return -1;
        if (flags.areThere())
            ph::boot::choose(flags, *choice);
        return 0;
    });
}
