// CIM_HostComputerSystem: the managed host.
#include "provider_helper/computer_system.h"
#include "Utility/array_count.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/record_fields.h"

#include <cstdio>

constexpr const char* const g_HostComputerSystemKeyList[2] = {"Name", "CreationClassName"};

namespace {

using Record = HostComputerSystemRecord;
using ph::Property;

constexpr const char* className = "CIM_HostComputerSystem";
constexpr int systemBoard = 7;           // IPMI entity ID
constexpr int managementController = 28; // Dedicated

bool isManagementController(const Record& record) {
    return record.Dedicated[0] == managementController;
}

constexpr Property properties[] = {
    PH_KEY(Record, Name),
    PH_KEY(Record, CreationClassName),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, IdentifyingDescriptions),
    PH_PROPERTY(Record, OtherIdentifyingInfo),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY_IF(Record, PrimaryOwnerContact, isManagementController),
    PH_PROPERTY(Record, Dedicated),
};

int enumerate(ph::RecordArray<Record>& hosts, ph::Detail detail) {
    char name[256] = "";
    ph::IpmiSession session;
    ph::Database database;
    if (PH_GetHostSystemName(name) != 0 || !session.open() || !database.open())
        return -1;
    const auto device = ph::record(db_get_device_bytype, database.get(), SMASH_DEVICE_HOST);
    const auto fru = ph::record(db_get_fru_by_entity_id, database.get(), systemBoard);
    if (device == nullptr || fru == nullptr)
        return -1;
    Record* host = hosts.append();
    if (host == nullptr)
        return -1;
    ph::copyText(host->CreationClassName, className);
    ph::copyText(host->Name, name);
    return detail == ph::Detail::Names ? 0 : PH_Fill_HostComputerSystem(device.get(), host, fru.get());
}

constexpr ph::ClassDefinition<Record> definition{.name = className,
                                                 .superclass = "CIM_ComputerSystem",
                                                 .keys = g_HostComputerSystemKeyList,
                                                 .properties = properties,
                                                 .enumerate = enumerate};

} // namespace

int PH_Fill_HostComputerSystem(const DeviceRecord* device, Record* record, const FruRecord* fru) {
    char** descriptions = nullptr;
    int count = 0;
    if (PH_GetArrayCount("CIM:GUID, CIM:Model:SerialNumber, CIM:Tag", &descriptions, &count) != 0)
        return -1;
    std::copy_n(descriptions, count, record->IdentifyingDescriptions);
    std::free(descriptions);

    ph::copyText(record->ElementName, record->Name);
    record->RequestedState = device->requestedState;
    ph::setList(record->Dedicated, {0});
    record->EnabledState = 2;                    // enabled
    ph::setList(record->OperationalStatus, {2}); // OK
    record->HealthState = 5;                     // OK

    constexpr std::size_t infoSize = 256;
    char* info = static_cast<char*>(std::malloc(infoSize));
    if (info == nullptr)
        return -1;
    std::snprintf(info, infoSize, "CIM:%s, CIM:%s:%s, CIM:%d:%d", device->guid, fru->model, fru->serialNumber,
                  device->tag[0], device->tag[1]);
    record->OtherIdentifyingInfo[0] = info;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(HostComputerSystem, Record, definition)
