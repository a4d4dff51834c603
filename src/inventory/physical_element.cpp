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
    std::snprintf(name.text, sizeof name.text, "%s %d", mappingOf(row.entityId).name, row.entityInstance);
    return name;
}

bool isOf(const PhysicalClass& physicalClass, const PackageRow& row) {
    return std::strcmp(mappingOf(row.entityId).physicalClass, physicalClass.name) == 0;
}

int append(const PhysicalClass& physicalClass, RecordArray<Record>& elements, const PackageRow& row,
           SMASH_DB_HANDLE database, Detail detail) {
    Record* element = elements.append();
    if (element == nullptr)
        return -1;
    copyText(element->Tag, row.tag);
    copyText(element->CreationClassName, physicalClass.name);
    return detail == Detail::Names ? 0 : physicalClass.fill(row, database, *element);
}

} // namespace

DateTime manufactureDate(const Record& element) {
    constexpr std::uint64_t firstOf1996 = 820'454'400; // seconds since 1970
    return {(firstOf1996 + element.ManufactureDate * std::uint64_t{60}) * 1'000'000};
}

bool isServed(const PackageRow& row) {
    const char* const served[] = {"CIM_Chassis", "CIM_Card", "CIM_Chip", "CIM_PhysicalPackage"};
    return std::ranges::any_of(served, [&](const char* name) {
        return std::strcmp(name, mappingOf(row.entityId).physicalClass) == 0;
    });
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

int enumerate(const PhysicalClass& physicalClass, RecordArray<Record>& elements, Detail detail) {
    Database database;
    Rows<PackageRow> rows;
    if (!database.open() || !rows.read(database.get(), db_get_all_packages))
        return -1;
    for (const PackageRow& row : rows.all())
        if (isOf(physicalClass, row) && append(physicalClass, elements, row, database.get(), detail) != 0)
            return -1;
    return 0;
}

int get(const PhysicalClass& physicalClass, RecordArray<Record>& elements, CMPIString** keyValues) {
    constexpr std::size_t tagKey = 0;
    Database database;
    const char* tag = CMGetCharsPtr(keyValues[tagKey], nullptr);
    const auto row =
        tag != nullptr && database.open() ? record(db_get_package, database.get(), tag) : nullptr;
    return row != nullptr && isOf(physicalClass, *row)
               ? append(physicalClass, elements, *row, database.get(), Detail::All)
               : -1;
}

} // namespace ph::inventory
