// What all physical elements share: their properties, and how records come from the packages of the database.
#pragma once

#include "provider_helper/inventory.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"

#include <cstddef>

namespace ph::inventory {

using Record = PhysicalElementRecord;

inline constexpr const char* elementKeys[2] = {"Tag", "CreationClassName"};

template <auto text>
bool isGiven(const Record& element) {
    return (element.*text)[0] != '\0';
}
inline bool hasFru(const Record& element) {
    return element.CanBeFRUed;
}
inline bool hasDate(const Record& element) {
    return element.ManufactureDate != 0;
}
DateTime manufactureDate(const Record& element);

inline constexpr Property elementProperties[] = {
    PH_KEY(Record, Tag),
    PH_KEY(Record, CreationClassName),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, Description),
    PH_PROPERTY_IF(Record, Manufacturer, isGiven<&Record::Manufacturer>),
    PH_PROPERTY_IF(Record, Model, isGiven<&Record::Model>),
    PH_PROPERTY_IF(Record, SerialNumber, isGiven<&Record::SerialNumber>),
    PH_PROPERTY_IF(Record, PartNumber, isGiven<&Record::PartNumber>),
    PH_PROPERTY_IF(Record, Version, isGiven<&Record::Version>),
    PH_PROPERTY_IF(Record, UserTracking, isGiven<&Record::UserTracking>),
    PH_COMPUTED_IF("ManufactureDate", manufactureDate, hasDate),
    PH_PROPERTY_IF(Record, CanBeFRUed, hasFru),
};

// CIM_PhysicalPackage and its subclasses have these too.
inline constexpr Property packageProperties[] = {
    PH_PROPERTY(Record, PackageType),
    PH_PROPERTY_IF(Record, OtherPackageType, isGiven<&Record::OtherPackageType>),
};
inline constexpr auto packageElementProperties = joined(elementProperties, packageProperties);

// Returns whether the package is an instance of one of the classes of physical elements.
bool isServed(const PackageRow& row);

struct ElementName {
    char text[128];
};
// Returns the name that the locator gives, else the entity's name and instance.
ElementName nameOf(const PackageRow& row);

// These fill everything but the keys.
void fillElement(const PackageRow& row, Record& element);
void fillPackageType(const PackageRow& row, Record& element);

// A class of elements, and how its records are filled from a row; `database` is open. A record that has more than
// those of all elements begins with one.
template <class ElementRecord>
struct PhysicalClass {
    const char* name;
    int (*fill)(const PackageRow& row, SMASH_DB_HANDLE database, ElementRecord& element);
};

bool isOf(const char* className, const PackageRow& row);
// Fills the keys.
void identify(const char* className, const PackageRow& row, Record& element);

inline Record& elementOf(Record& record) {
    return record;
}
template <class ElementRecord>
Record& elementOf(ElementRecord& record) {
    static_assert(offsetof(ElementRecord, element) == 0, "the shared properties lie where they are shared");
    return record.element;
}

template <class ElementRecord>
int append(const PhysicalClass<ElementRecord>& physicalClass, RecordArray<ElementRecord>& elements,
           const PackageRow& row, SMASH_DB_HANDLE database, Detail detail) {
    ElementRecord* element = elements.append();
    if (element == nullptr)
        return -1;
    identify(physicalClass.name, row, elementOf(*element));
    return detail == Detail::Names ? 0 : physicalClass.fill(row, database, *element);
}

template <class ElementRecord>
int enumerate(const PhysicalClass<ElementRecord>& physicalClass, RecordArray<ElementRecord>& elements,
              Detail detail) {
    Database database;
    Rows<PackageRow> rows;
    if (!database.open() || !rows.read(database.get(), db_get_all_packages))
        return -1;
    for (const PackageRow& row : rows.all())
        if (isOf(physicalClass.name, row) &&
            append(physicalClass, elements, row, database.get(), detail) != 0)
            return -1;
    return 0;
}

template <class ElementRecord>
int get(const PhysicalClass<ElementRecord>& physicalClass, RecordArray<ElementRecord>& elements,
        CMPIString** keyValues) {
    constexpr std::size_t tagKey = 0;
    Database database;
    const char* tag = CMGetCharsPtr(keyValues[tagKey], nullptr);
    const auto row =
        tag != nullptr && database.open() ? record(db_get_package, database.get(), tag) : nullptr;
    return row != nullptr && isOf(physicalClass.name, *row)
               ? append(physicalClass, elements, *row, database.get(), Detail::All)
               : -1;
}

// Makes the definition of such a class.
template <const auto& physicalClass, class ElementRecord = Record>
constexpr ClassDefinition<ElementRecord> define(const char* superclass, const char* source,
                                                std::span<const char* const> keys,
                                                std::span<const Property> properties) {
    return {.name = physicalClass.name,
            .superclass = superclass,
            .source = source,
            .keys = keys,
            .properties = properties,
            .enumerate = [](RecordArray<ElementRecord>& elements,
                            Detail detail) { return enumerate(physicalClass, elements, detail); },
            .get = [](RecordArray<ElementRecord>& elements,
                      CMPIString** keyValues) { return get(physicalClass, elements, keyValues); }};
}

} // namespace ph::inventory
