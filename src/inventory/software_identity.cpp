// CIM_SoftwareIdentity: the firmware of the BMC and of the host.
#include "firmware/stored_firmware.h"
#include "inventory/version_text.h"
#include "provider_helper/software.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <cstdio>

constexpr const char* const g_SoftwareIdentityKeyList[1] = {"InstanceID"};

namespace ph::software_identity {
namespace {

using Record = SoftwareIdentityRecord;

template <std::uint32_t bit>
bool knows(const Record& record) {
    return (record.known & bit) != 0;
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY_IF(Record, MajorVersion, knows<PH_VERSION_KNOWN>),
    PH_PROPERTY_IF(Record, MinorVersion, knows<PH_VERSION_KNOWN>),
    PH_PROPERTY_IF(Record, RevisionNumber, knows<PH_REVISION_KNOWN>),
    PH_PROPERTY_IF(Record, BuildNumber, knows<PH_BUILD_KNOWN>),
    PH_PROPERTY_IF(Record, LargeBuildNumber, knows<PH_LARGE_BUILD_KNOWN>),
    PH_PROPERTY_IF(Record, IsLargeBuildNumber, knows<PH_LARGE_BUILD_KNOWN>),
    PH_PROPERTY(Record, VersionString),
    PH_PROPERTY(Record, Classifications),
    PH_PROPERTY(Record, IsEntity),
};

Record* append(RecordArray<Record>& identities, const char* name) {
    Record* identity = identities.append();
    if (identity == nullptr)
        return nullptr;
    std::snprintf(identity->InstanceID, sizeof(identity->InstanceID), "IPMI:%s", name);
    copyText(identity->ElementName, name);
    identity->IsEntity = true;
    return identity;
}

// A platform that keeps no images need not have the function.
int appendStored(RecordArray<Record>& identities, IpmiSession& session) {
    CIM_StoredFirmware images[CIM_MAX_STORED_FIRMWARE] = {};
    std::uint8_t count = 0;
    if (CIM_GetStoredFirmware(session.get(), images, &count, hookTimeout) != 0)
        return 0;
    for (int i = 0; i < std::min<int>(count, CIM_MAX_STORED_FIRMWARE); ++i) {
        Record* identity = append(identities, images[i].name);
        if (identity == nullptr || PH_Fill_SystemFirmware(images[i].version, identity) != 0)
            return -1;
        writeStoredId(images[i], identity->InstanceID);
        setList(identity->Classifications, {Classifications::Firmware});
    }
    return 0;
}

// The host's version is asked for first: a BMC that falls silent then fails the second question too, and is
// not taken for one that does not know the host's version.
int enumerate(RecordArray<Record>& identities, Detail /*detail*/) {
    IpmiSession session;
    char version[CIM_SYSTEM_INFO_SIZE] = "";
    CIM_DeviceID device{};
    if (!session.open())
        return -1;
    if (CIM_GetSystemInfo(session.get(), CIM_SYSTEM_FIRMWARE_VERSION, version, hookTimeout) != 0)
        version[0] = '\0';
    if (CIM_GetDeviceID(session.get(), &device, hookTimeout) != 0)
        return -1;
    Record* firmware = append(identities, "BMC Firmware");
    if (firmware == nullptr || PH_Fill_BMCFirmware(&device, firmware) != 0)
        return -1;
    if (version[0] != '\0') {
        firmware = append(identities, "System Firmware");
        if (firmware == nullptr || PH_Fill_SystemFirmware(version, firmware) != 0)
            return -1;
    }
    return appendStored(identities, session);
}

constexpr ClassDefinition<Record> definition{
    .name = "CIM_SoftwareIdentity",
    .superclass = "CIM_LogicalElement",
    .source = "Get Device ID; Get System Info Parameters 1; images that are kept",
    .keys = g_SoftwareIdentityKeyList,
    .properties = properties,
    .enumerate = enumerate};

constexpr unsigned fromBcd(std::uint8_t byte) {
    return (byte >> 4) * 10U + (byte & 0x0F);
}

} // namespace
} // namespace ph::software_identity

PH_EXPORT_CLASS_FAMILY(SoftwareIdentity, SoftwareIdentityRecord, ph::software_identity::definition)

int PH_Fill_BMCFirmware(const CIM_DeviceID* device, SoftwareIdentityRecord* record) {
    record->known = PH_VERSION_KNOWN;
    record->MajorVersion = device->firmwareMajor;
    record->MinorVersion = static_cast<std::uint16_t>(ph::software_identity::fromBcd(device->firmwareMinor));
    char build[10] = "";
    if (device->hasAuxiliary != 0) {
        record->known |= PH_LARGE_BUILD_KNOWN;
        record->IsLargeBuildNumber = true;
        std::uint32_t number = 0;
        for (const std::uint8_t byte : device->auxiliary)
            number = number << 8 | byte;
        record->LargeBuildNumber = number;
        std::snprintf(build, sizeof(build), ".%08x", number);
    }
    std::snprintf(record->VersionString, sizeof(record->VersionString), "%u.%02u%s", device->firmwareMajor,
                  record->MinorVersion, build);
    ph::setList(record->Classifications, {ph::Classifications::Firmware});
    return 0;
}

int PH_Fill_SystemFirmware(const char* version, SoftwareIdentityRecord* record) {
    ph::copyText(record->VersionString, version);
    ph::setList(record->Classifications, {ph::Classifications::Bios});
    const ph::Version read = ph::readVersion(version);
    if (!read.numbers.empty()) {
        record->known |= PH_VERSION_KNOWN;
        record->MajorVersion = read.numbers[0];
        record->MinorVersion = read.numbers[1];
    }
    if (read.numbers.size() > 2) {
        record->known |= PH_REVISION_KNOWN;
        record->RevisionNumber = read.numbers[2];
    }
    if (read.build) {
        record->known |= PH_BUILD_KNOWN;
        record->BuildNumber = *read.build;
    }
    return 0;
}
