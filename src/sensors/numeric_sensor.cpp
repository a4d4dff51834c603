// CIM_NumericSensor: threshold sensors with a reading in numbers.
#include "sensors/reading_conversion.h"
#include "sensors/sensor_family.h"
#include "Utility/values/dmtf_values.h"

#include <algorithm>
#include <cmath>
#include <limits>

constexpr const char* const g_NumericSensorKeyList[4] = {ph::sensorKeys[0], ph::sensorKeys[1],
                                                         ph::sensorKeys[2], ph::sensorKeys[3]};

namespace ph::numeric_sensor {
namespace {

using Record = NumericSensorRecord;

static_assert(offsetof(Record, sensor) == 0, "the properties of every sensor lie where CIM_Sensor has them");

using Int32 = std::numeric_limits<std::int32_t>;
using Uint32 = std::numeric_limits<std::uint32_t>;

// Converts the value and multiplies it by 100; rounds a half to even, and gives at most `highest`.
std::int64_t hundredfold(const Record& record, std::int32_t raw, double highest = Int32::max()) {
    float value = 0;
    convert({record.analogFormat, record.m, record.b, record.exponents}, raw, value);
    return static_cast<std::int64_t>(
        std::clamp<double>(std::nearbyint(value * 100.0F), Int32::min(), highest));
}

template <std::int32_t Record::*raw>
std::int32_t threshold(const Record& record) {
    return static_cast<std::int32_t>(hundredfold(record, record.*raw));
}

// A raw 0 is published as 0: SDRs leave what they do not give at 0.
template <std::int32_t Record::*raw>
std::int32_t reading(const Record& record) {
    return record.*raw == 0 ? 0 : threshold<raw>(record);
}

std::uint32_t hysteresis(const Record& record) {
    const std::int32_t raw = record.rawHysteresis;
    return raw == 0 ? 0 : static_cast<std::uint32_t>(hundredfold(record, raw, Uint32::max()));
}

std::int32_t unitModifier(const Record& record) {
    return record.analogFormat - 2;
}

// DMTF values of SupportedThresholds.
enum Threshold {
    lowerNonCritical,
    upperNonCritical,
    lowerCritical,
    upperCritical,
    lowerFatal,
    upperFatal,
};

template <Threshold value>
bool supports(const Record& record) {
    const int* list = record.SupportedThresholds;
    while (*list >= 0 && *list != value)
        ++list;
    return *list == value;
}

constexpr Property numericProperties[] = {
    PH_COMPUTED("CurrentReading", reading<&Record::rawReading>),
    PH_PROPERTY(Record, BaseUnits),
    PH_COMPUTED("UnitModifier", unitModifier),
    PH_PROPERTY(Record, RateUnits),
    PH_COMPUTED("NominalReading", reading<&Record::rawNominalReading>),
    PH_COMPUTED("NormalMax", reading<&Record::rawNormalMax>),
    PH_COMPUTED("NormalMin", reading<&Record::rawNormalMin>),
    PH_COMPUTED("MaxReadable", reading<&Record::rawMaxReadable>),
    PH_COMPUTED("MinReadable", reading<&Record::rawMinReadable>),
    PH_PROPERTY(Record, Resolution),
    PH_PROPERTY(Record, Tolerance),
    PH_PROPERTY(Record, Accuracy),
    PH_PROPERTY(Record, IsLinear),
    PH_COMPUTED("Hysteresis", hysteresis),
    PH_PROPERTY(Record, SupportedThresholds),
    stored("EnabledThresholds", Kind::Uint16List, offsetof(Record, SupportedThresholds)),
    PH_PROPERTY(Record, SettableThresholds),
    PH_COMPUTED_IF("LowerThresholdNonCritical", threshold<&Record::rawLowerNonCritical>,
                   supports<lowerNonCritical>),
    PH_COMPUTED_IF("UpperThresholdNonCritical", threshold<&Record::rawUpperNonCritical>,
                   supports<upperNonCritical>),
    PH_COMPUTED_IF("LowerThresholdCritical", threshold<&Record::rawLowerCritical>, supports<lowerCritical>),
    PH_COMPUTED_IF("UpperThresholdCritical", threshold<&Record::rawUpperCritical>, supports<upperCritical>),
    PH_COMPUTED_IF("LowerThresholdFatal", threshold<&Record::rawLowerFatal>, supports<lowerFatal>),
    PH_COMPUTED_IF("UpperThresholdFatal", threshold<&Record::rawUpperFatal>, supports<upperFatal>),
};
constexpr auto properties = joined(sensorProperties, numericProperties);

int publish(Record& record, const Reading& reading) {
    const bool isAvailable = reading.availability == ReadingAvailability::Available;
    record.rawReading = isAvailable ? reading.answer.reading : 0;
    return publishReading(record.sensor, reading, [&](const CIM_SensorReading& answer) {
        PH_Get_Analog_CurrentState(&record, answer.statesLow & 0x3F);
    });
}

constexpr SensorClass<Record, FullSdr> sensorClass{"CIM_NumericSensor", db_get_all_full_sdrs, db_get_full_sdr,
                                                   PH_Fill_NumericSensor, publish};

int enumerate(RecordArray<Record>& sensors, Detail detail) {
    return enumerateSensors(sensorClass, sensors, detail);
}

int stream(const std::function<bool(const Record&)>& take, Detail detail) {
    return streamSensors(sensorClass, properties, take, detail);
}

int get(RecordArray<Record>& sensors, CMPIString** keyValues) {
    return getSensor(sensorClass, sensors, keyValues);
}

bool skip(const Record& record) {
    return isUnreadable(record.sensor);
}

constexpr ClassDefinition<Record> definition{.name = sensorClass.name,
                                             .superclass = "CIM_Sensor",
                                             .source = "table full_sdr (SDR type 01h); Get Sensor Reading",
                                             .keys = g_NumericSensorKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate,
                                             .stream = stream,
                                             .get = get,
                                             .skip = skip};

} // namespace
} // namespace ph::numeric_sensor

// CurrentState tells of lower thresholds only, and of no upper one.
std::uint16_t ph::healthByThresholds(const NumericSensorRecord& sensor) {
    using enum numeric_sensor::Threshold;
    constexpr std::uint16_t minor = 15, critical = 25, nonRecoverable = 30; // DMTF HealthState
    constexpr struct {
        bool (*isSupported)(const NumericSensorRecord&);
        std::int32_t (*value)(const NumericSensorRecord&);
        bool isUpper;
        std::uint16_t health;
    } thresholds[] = {
        {numeric_sensor::supports<lowerNonCritical>,
         numeric_sensor::threshold<&NumericSensorRecord::rawLowerNonCritical>, false, minor},
        {numeric_sensor::supports<upperNonCritical>,
         numeric_sensor::threshold<&NumericSensorRecord::rawUpperNonCritical>, true, minor},
        {numeric_sensor::supports<lowerCritical>,
         numeric_sensor::threshold<&NumericSensorRecord::rawLowerCritical>, false, critical},
        {numeric_sensor::supports<upperCritical>,
         numeric_sensor::threshold<&NumericSensorRecord::rawUpperCritical>, true, critical},
        {numeric_sensor::supports<lowerFatal>, numeric_sensor::threshold<&NumericSensorRecord::rawLowerFatal>,
         false, nonRecoverable},
        {numeric_sensor::supports<upperFatal>, numeric_sensor::threshold<&NumericSensorRecord::rawUpperFatal>,
         true, nonRecoverable},
    };
    const std::int32_t value = numeric_sensor::threshold<&NumericSensorRecord::rawReading>(sensor);
    std::uint16_t health = HealthState::OK;
    for (const auto& each : thresholds)
        if (each.isSupported(sensor) &&
            (each.isUpper ? value >= each.value(sensor) : value <= each.value(sensor)))
            health = each.health;
    return health;
}

std::int32_t ph::publishedReading(const NumericSensorRecord& sensor) {
    return numeric_sensor::reading<&NumericSensorRecord::rawReading>(sensor);
}

std::int32_t ph::publishedUnitModifier(const NumericSensorRecord& sensor) {
    return numeric_sensor::unitModifier(sensor);
}

int PH_Fill_NumericSensor(const FullSdr* sdr, NumericSensorRecord* record) {
    ph::fillCommon(sdr->common, record->sensor);
    record->BaseUnits = sdr->baseUnits;
    record->analogFormat = sdr->analogFormat;
    record->RateUnits = sdr->rateUnits;
    record->m = sdr->m;
    record->b = sdr->b;
    record->exponents = sdr->exponents;
    record->rawNominalReading = sdr->nominalReading;
    record->rawNormalMax = sdr->normalMax;
    record->rawNormalMin = sdr->normalMin;
    record->rawMaxReadable = sdr->maxReadable;
    record->rawMinReadable = sdr->minReadable;
    record->rawHysteresis = sdr->hysteresis;
    record->rawLowerNonCritical = sdr->lowerNonCritical;
    record->rawUpperNonCritical = sdr->upperNonCritical;
    record->rawLowerCritical = sdr->lowerCritical;
    record->rawUpperCritical = sdr->upperCritical;
    record->rawLowerFatal = sdr->lowerNonRecoverable;
    record->rawUpperFatal = sdr->upperNonRecoverable;
    record->Resolution = sdr->resolution;
    record->Tolerance = sdr->tolerance;
    record->Accuracy = sdr->accuracy;
    record->IsLinear = sdr->isLinear != 0;
    PH_Fill_Caption_Description_ElementName_NumericSensor(sdr, record);
    PH_Fill_Settable_SupportedThresholds_NumericSensor(record);
    return PH_Fill_PossibleStates_NumericSensor(record);
}

int PH_Fill_Settable_SupportedThresholds_NumericSensor(NumericSensorRecord* record) {
    using enum ph::numeric_sensor::Threshold;
    constexpr ph::numeric_sensor::Threshold byBit[] = {lowerNonCritical, lowerCritical, lowerFatal,
                                                       upperNonCritical, upperCritical, upperFatal};
    int count = 0;
    std::fill_n(record->SupportedThresholds, std::size(record->SupportedThresholds), -1);
    for (unsigned bit = 0; bit < std::size(byBit); ++bit)
        if ((record->sensor.supportedStates >> bit & 1U) != 0)
            record->SupportedThresholds[count++] = byBit[bit];
    std::copy_n(record->SupportedThresholds, std::size(record->SupportedThresholds),
                record->SettableThresholds);
    return 0;
}

PH_EXPORT_CLASS_FAMILY(NumericSensor, NumericSensorRecord, ph::numeric_sensor::definition)
