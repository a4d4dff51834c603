#include "smash-db/sync/sdr_mapping.h"

#include "ipmi/message.h"
#include "ipmi/reading_factors.h"
#include "ipmi/sensor_types.h"
#include "smash-db/rows.h"
#include "smash-db/sync/entity_associations.h"
#include "smash-db/sync/type_length.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace smash {
namespace {

// Record types, IPMI 2.0 43.
constexpr std::uint8_t fullSensor = 0x01;
constexpr std::uint8_t compactSensor = 0x02;
constexpr std::uint8_t eventOnly = 0x03;
constexpr std::uint8_t entityAssociation = 0x08;
constexpr std::uint8_t deviceRelativeAssociation = 0x09;
constexpr std::uint8_t genericDeviceLocator = 0x10;
constexpr std::uint8_t fruDeviceLocator = 0x11;
constexpr std::uint8_t controllerLocator = 0x12;

// Event/reading types, IPMI 2.0 table 42-1.
constexpr std::uint8_t threshold = 0x01;

constexpr unsigned wholeSensor = 99; // offset of a row that stands for no single state
constexpr unsigned stateOffsets = 15;

std::uint16_t cimSensorType(std::uint8_t ipmiType) {
    return ipmiType >= 1 && ipmiType <= 4 ? static_cast<std::uint16_t>(ipmiType + 1) : 1;
}

// Bytes 6 to 20, which full and compact records share.
CompactSdr readCommon(ipmi::Reader& reader, const SdrRecord& record) {
    CompactSdr row = {};
    copyText(row.source, sourceOf(record));
    row.ownerId = reader.u8();
    row.ownerLun = reader.u8() & 0x03;
    row.sensorNumber = reader.u8();
    row.entityId = reader.u8();
    row.entityInstance = reader.u8();
    reader.skip(2); // initialization, capabilities
    row.ipmiSensorType = reader.u8();
    row.eventReadingType = reader.u8();
    reader.skip(4); // assertion and deassertion masks
    const std::uint16_t readable = reader.u16();
    row.supportedStates = row.eventReadingType == threshold ? readable & 0x3F : readable & 0x7FFF;
    row.sensorType = cimSensorType(row.ipmiSensorType);
    if (row.sensorType == 1)
        copyText(row.otherSensorType, ipmi::sensorTypeName(row.ipmiSensorType));
    return row;
}

void requireServed(const ipmi::Reader& reader, const CompactSdr& row, unsigned sensors = 1) {
    constexpr unsigned reservedNumber = 0xFF;
    if (!reader.ok())
        throw MalformedSdr("the record ends before its last field");
    if (row.ownerId != bmcAddress || row.ownerLun != 0) {
        char owner[64];
        std::snprintf(owner, sizeof owner, "the sensor belongs to controller %02Xh, LUN %d", row.ownerId,
                      row.ownerLun);
        throw Unusable(owner);
    }
    if (row.sensorNumber + sensors > reservedNumber)
        throw MalformedSdr("its sensor numbers go beyond FEh");
}

// The name's place in `row`, where `suffix` is kept whole.
void setName(CompactSdr& row, const std::string& idString, const std::string& suffix = "") {
    char name[sizeof row.name];
    copyText({name, sizeof name - suffix.size()}, idString);
    copyText(row.name, idString.empty() ? "Sensor " + std::to_string(row.sensorNumber) : name + suffix);
}

void setDeviceId(CompactSdr& row, unsigned offset) {
    std::snprintf(row.deviceId, sizeof row.deviceId, "%d.%d.%d.%d.%02x.%u:%s", row.ownerId, row.sensorNumber,
                  row.ownerLun, row.ipmiSensorType, row.eventReadingType, offset, row.name);
    // The ID is a key of object paths, which quote it.
    for (char& character : row.deviceId)
        if (character == '\'' || character == '"')
            character = '_';
}

template <class Integer>
Integer toInteger(double value) {
    return static_cast<Integer>(std::clamp<double>(std::round(value), std::numeric_limits<Integer>::min(),
                                                   std::numeric_limits<Integer>::max()));
}

// Bytes 21 to 47 of a full record.
void readAnalog(ipmi::Reader& reader, FullSdr& row, SensorConversionRow& conversion) {
    copyText(conversion.source, row.common.source);
    conversion.units = reader.u8();
    conversion.baseUnit = reader.u8();
    conversion.modifierUnit = reader.u8();
    conversion.linearization = reader.u8() & 0x7F;
    row.analogFormat = conversion.units >> 6;
    row.rateUnits = conversion.units >> 3 & 0x07;
    row.baseUnits = conversion.baseUnit;
    row.isLinear = conversion.linearization == 0;

    const unsigned mTolerance = reader.u16();
    const unsigned bAccuracy = reader.u16();
    const unsigned accuracyDirection = reader.u8();
    conversion.exponents = reader.u8();
    row.exponents = conversion.exponents;
    row.m = ipmi::signExtend((mTolerance & 0xFF) | (mTolerance >> 6 & 0x300), 10);
    row.b = ipmi::signExtend((bAccuracy & 0xFF) | (bAccuracy >> 6 & 0x300), 10);
    conversion.m = row.m;
    conversion.b = row.b;
    const double step = std::abs(row.m) * std::pow(10.0, ipmi::signExtend(row.exponents >> 4, 4)) * 100;
    const unsigned tolerance = mTolerance >> 8 & 0x3F; // half raw steps
    const unsigned accuracy = (bAccuracy >> 8 & 0x3F) | (accuracyDirection & 0xF0) << 2;
    const unsigned accuracyExponent = accuracyDirection >> 2 & 0x03;
    row.resolution = toInteger<std::uint32_t>(step);
    row.tolerance = toInteger<std::int32_t>(tolerance * step / 2);
    row.accuracy = toInteger<std::int32_t>(accuracy * std::pow(10.0, accuracyExponent));

    const std::uint8_t specified = reader.u8(); // bits 0 nominal, 1 normal maximum, 2 normal minimum
    for (std::uint8_t* field :
         {&row.nominalReading, &row.normalMax, &row.normalMin, &row.maxReadable, &row.minReadable,
          &row.upperNonRecoverable, &row.upperCritical, &row.upperNonCritical, &row.lowerNonRecoverable,
          &row.lowerCritical, &row.lowerNonCritical, &row.hysteresis})
        *field = reader.u8();
    for (std::uint8_t bit = 0; std::uint8_t * field : {&row.nominalReading, &row.normalMax, &row.normalMin})
        if ((specified >> bit++ & 1) == 0)
            *field = 0;
    reader.skip(4); // negative-going hysteresis, reserved, OEM
}

// One sensor of several that share a record (IPMI 2.0 table 43-2, bytes 24 and 25).
std::string instanceSuffix(bool isAlphabetic, unsigned number) {
    if (!isAlphabetic)
        return " " + std::to_string(number);
    std::string letters; // A to Z, AA, AB, …
    for (unsigned left = number + 1; left > 0; left = (left - 1) / 26)
        letters.insert(letters.begin(), static_cast<char>('A' + (left - 1) % 26));
    return " " + letters;
}

// A row for each state of a sensor-specific sensor, so that each can be seen; one for any other sensor.
std::vector<CompactSdr> rowsOf(CompactSdr sensor) {
    std::vector<CompactSdr> rows;
    const auto add = [&](unsigned offset) {
        setDeviceId(sensor, offset);
        rows.push_back(sensor);
    };
    if (sensor.eventReadingType == ipmi::sensorSpecific)
        for (unsigned offset = 0; offset < stateOffsets; ++offset)
            if ((sensor.supportedStates >> offset & 1) != 0)
                add(offset);
    if (rows.empty())
        add(wholeSensor);
    return rows;
}

std::vector<CompactSdr> mapCompact(ipmi::Reader& reader, const SdrRecord& record) {
    const CompactSdr first = readCommon(reader, record);
    reader.skip(3); // units, which only readings of full records have
    const std::uint8_t sharing = reader.u8();
    const std::uint8_t instances = reader.u8();
    reader.skip(6); // hysteresis, reserved, OEM
    const std::string idString = readIdString(reader);
    const unsigned sensors = std::max(1, sharing & 0x0F);
    requireServed(reader, first, sensors);

    std::vector<CompactSdr> rows;
    for (unsigned i = 0; i < sensors; ++i) {
        CompactSdr sensor = first;
        sensor.sensorNumber = static_cast<std::uint8_t>(first.sensorNumber + i);
        if ((instances & 0x80) != 0)
            sensor.entityInstance = static_cast<std::uint8_t>(first.entityInstance + i);
        setName(sensor, idString,
                sensors > 1 ? instanceSuffix((sharing & 0x30) == 0x10, (instances & 0x7F) + i) : "");
        std::ranges::move(rowsOf(sensor), std::back_inserter(rows));
    }
    return rows;
}

FullSdr mapFull(ipmi::Reader& reader, const SdrRecord& record, SensorConversionRow& conversion) {
    FullSdr row = {};
    row.common = readCommon(reader, record);
    readAnalog(reader, row, conversion);
    const std::string idString = readIdString(reader);
    requireServed(reader, row.common);
    setName(row.common, idString);
    setDeviceId(row.common, wholeSensor);
    return row;
}

// Reads a locator from byte 6 on. All locators have the entity at byte 13 (IPMI 2.0 tables 43-7 to 43-9).
EntityLocator mapLocator(ipmi::Reader& reader, std::uint8_t type) {
    const std::uint8_t address = reader.u8() & 0xFE;
    const std::uint8_t fruDeviceId = reader.u8();
    const std::uint8_t access = reader.u8(); // bit 7 a logical FRU device, bits 4 to 3 LUN
    reader.skip(4);
    EntityLocator locator;
    locator.entityId = reader.u8();
    locator.entityInstance = reader.u8();
    if (!reader.ok())
        throw MalformedSdr("the record ends before its last field");
    if (type == fruDeviceLocator && address == bmcAddress && (access & 0x98) == 0x80)
        locator.fruDeviceId = fruDeviceId;
    reader.skip(1); // OEM
    locator.name = readIdString(reader);
    return locator;
}

const CompactSdr& commonOf(const CompactSdr& row) {
    return row;
}
const CompactSdr& commonOf(const FullSdr& row) {
    return row.common;
}

} // namespace

// Two rows with one ID describe the same states of the same sensor: one of them is enough.
template <class Row>
void SdrMapping::publish(std::vector<Row>& rows, const Row& row, std::vector<SyncRemark>& remarks) {
    const CompactSdr& common = commonOf(row);
    if (deviceIds_.insert(common.deviceId).second)
        rows.push_back(row);
    else
        remarks.push_back({common.source, std::string("an earlier record has a sensor ") + common.deviceId});
}

void SdrMapping::add(const SdrRecord& record, std::vector<SyncRemark>& remarks) {
    ipmi::Reader reader(record.bytes);
    reader.skip(3); // record ID, SDR version
    const std::uint8_t type = reader.u8();
    reader.skip(1); // length
    try {
        switch (type) {
        case fullSensor: {
            SensorConversionRow conversion = {};
            const FullSdr row = mapFull(reader, record, conversion);
            conversions.push_back(conversion);
            if (row.common.eventReadingType == threshold)
                publish(numericSensors, row, remarks);
            else
                for (const CompactSdr& state : rowsOf(row.common))
                    publish(sensors, state, remarks);
            break;
        }
        case compactSensor:
            for (const CompactSdr& row : mapCompact(reader, record))
                publish(sensors, row, remarks);
            break;
        case eventOnly:
            throw Unusable("the sensor only sends events");
        case genericDeviceLocator:
        case fruDeviceLocator:
        case controllerLocator:
            locators.push_back(mapLocator(reader, type));
            if (type == fruDeviceLocator && !locators.back().fruDeviceId)
                throw Unusable("the FRU device is not one that the BMC answers for");
            break;
        case entityAssociation:
        case deviceRelativeAssociation:
            addEntityAssociations(reader, type == deviceRelativeAssociation, associations);
            break;
        default: // OEM: no sensor
            break;
        }
    } catch (const MalformedSdr& error) {
        remarks.push_back({sourceOf(record), error.what(), true});
    } catch (const Unusable& error) {
        remarks.push_back({sourceOf(record), error.what()});
    }
}

} // namespace smash
