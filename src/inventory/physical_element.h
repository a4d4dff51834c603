// What all physical elements share: their properties, and how records come from the packages of the database.
#pragma once

#include "provider_helper/inventory.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"

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

// A class of elements, and how its records are filled from a row; `database` is open.
struct PhysicalClass {
    const char* name;
    int (*fill)(const PackageRow& row, SMASH_DB_HANDLE database, Record& element);
};

int enumerate(const PhysicalClass& physicalClass, RecordArray<Record>& elements, Detail detail);
int get(const PhysicalClass& physicalClass, RecordArray<Record>& elements, CMPIString** keyValues);

// Makes the definition of such a class.
template <const PhysicalClass& physicalClass>
constexpr ClassDefinition<Record> define(const char* superclass, const char* source,
                                         std::span<const char* const> keys,
                                         std::span<const Property> properties) {
    return {.name = physicalClass.name,
            .superclass = superclass,
            .source = source,
            .keys = keys,
            .properties = properties,
            .enumerate = [](RecordArray<Record>& elements,
                            Detail detail) { return enumerate(physicalClass, elements, detail); },
            .get = [](RecordArray<Record>& elements,
                      CMPIString** keyValues) { return get(physicalClass, elements, keyValues); }};
}

} // namespace ph::inventory
