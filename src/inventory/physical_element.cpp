#include "inventory/physical_element.h"

#include "tables/sensor_names.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace ph::inventory {
namespace {

ElementName entityNameOf(const PackageRow& row) {
    ElementName name;
    // An element that IPMI does not know has no instance.
    std::snprintf(name.text, sizeof name.text, row.entityInstance != 0 ? "%s %d" : "%s",
                  mappingOf(row.entityId).name, row.entityInstance);
    return name;
}

} // namespace

DateTime manufactureDate(const Record& element) {
    constexpr std::uint64_t firstOf1996 = 820'454'400; // seconds since 1970
    return {(firstOf1996 + element.ManufactureDate * std::uint64_t{60}) * 1'000'000};
}

bool isServed(const PackageRow& row) {
    const char* const served[] = {"CIM_Chassis", "CIM_Card", "CIM_Chip", "CIM_PhysicalMemory",
                                  "CIM_PhysicalPackage"};
    return std::ranges::any_of(served, [&](const char* name) { return isOf(name, row); });
}

ElementName nameOf(const PackageRow& row) {
    if (row.name[0] == '\0')
        return entityNameOf(row);
    ElementName name;
    copyText(name.text, row.name);
    return name;
}

void fillElement(const PackageRow& row, Record& element) {
    copyText(element.ElementName, nameOf(row).text);
    copyText(element.Description, entityNameOf(row).text);
    copyText(element.Manufacturer, row.manufacturer);
    copyText(element.Model, row.model);
    copyText(element.SerialNumber, row.serialNumber);
    copyText(element.PartNumber, row.partNumber);
    copyText(element.Version, row.version);
    copyText(element.UserTracking, row.assetTag);
    element.ManufactureDate = row.manufactured;
    element.CanBeFRUed = row.fruDeviceId != SMASH_NO_FRU_DEVICE;
}

void fillPackageType(const PackageRow& row, Record& element) {
    int type = 0;
    char name[64] = "";
    PH_GetPackageTypeAndName(row.entityId, &type, name);
    element.PackageType = static_cast<std::uint16_t>(type);
    if (type == PackageType::Other)
        copyText(element.OtherPackageType, name);
}

bool isOf(const char* className, const PackageRow& row) {
    return std::strcmp(mappingOf(row.entityId).physicalClass, className) == 0;
}

void identify(const char* className, const PackageRow& row, Record& element) {
    copyText(element.Tag, row.tag);
    copyText(element.CreationClassName, className);
}

} // namespace ph::inventory
