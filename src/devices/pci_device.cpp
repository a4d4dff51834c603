// CIM_PCIDevice: devices on boards and in slots.
#include "devices/entity_device.h"

constexpr const char* const g_PCIDeviceKeyList[4] = {ph::entityDeviceKeys[0], ph::entityDeviceKeys[1],
                                                     ph::entityDeviceKeys[2], ph::entityDeviceKeys[3]};

namespace ph::pci_device {
namespace {

using Record = PCIDeviceRecord;

static_assert(offsetof(Record, device) == 0, "the properties of every device lie where they are shared");

constexpr const char* className = "CIM_PCIDevice";
constexpr std::uint8_t otherClass = 255;

bool hasClass(const Record& device) {
    return device.ClassCode != otherClass;
}

constexpr Property deviceProperties[] = {
    PH_PROPERTY(Record, Description),    PH_PROPERTY_IF(Record, ClassCode, hasClass),
    PH_PROPERTY(Record, BusNumber),      PH_PROPERTY(Record, DeviceNumber),
    PH_PROPERTY(Record, FunctionNumber),
};
constexpr auto properties = joined(entityDeviceProperties, deviceProperties);

int enumerate(RecordArray<Record>& devices, Detail) {
    char systemName[256] = "";
    Rows<PciDeviceRow> rows;
    if (PH_GetHostSystemName(systemName) != 0 || !rows.read(db_get_all_pci_devices))
        return -1;
    for (const PciDeviceRow& row : rows.all()) {
        Record* device = devices.append();
        if (device == nullptr || PH_Fill_PCIDevice(&row, device) != 0)
            return -1;
        setHostedKeys(device->device, hostClass, systemName, className);
    }
    return 0;
}

constexpr ClassDefinition<Record> definition{.name = className,
                                             .superclass = "CIM_PCIController",
                                             .source = "table pci_device (SMBIOS types 9 and 41)",
                                             .keys = g_PCIDeviceKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::pci_device

int PH_Fill_PCIDevice(const PciDeviceRow* row, PCIDeviceRecord* record) {
    ph::fillDevice(row->deviceId, row->name, record->device);
    record->device.EnabledState = row->enabledState;
    ph::copyText(record->Description, row->description);
    record->ClassCode = row->classCode;
    record->BusNumber = row->bus;
    record->DeviceNumber = row->device;
    record->FunctionNumber = row->function;
    return 0;
}

PH_EXPORT_CLASS_FAMILY(PCIDevice, PCIDeviceRecord, ph::pci_device::definition)
