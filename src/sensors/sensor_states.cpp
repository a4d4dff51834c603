// PossibleStates and CurrentState.
#include "provider_helper/sensors.h"
#include "provider_helper/tables.h"
#include "sensors/device_id.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>

namespace ph {
namespace {

enum SensorType { other = 1, temperature = 2, tachometer = 5 }; // CIM

// IPMI event/reading types.
constexpr int firstGeneric = 0x02;
constexpr int severity = 0x07;
constexpr int lastGeneric = 0x0C;
constexpr int sensorSpecific = 0x6F;
constexpr const char* sensorSpecificText = "6f";

constexpr const char* unknown = DMTF_PossibleStates[2];

bool within(int value, int first, int last) {
    return first <= value && value <= last;
}

std::span<const PHGenericState> genericStates(std::uint32_t eventReadingType) {
    const auto* first = std::ranges::lower_bound(ipmi_cim_Possible_States_Mapping, eventReadingType, {},
                                                 &PHGenericState::eventReadingType);
    const auto* end = first;
    while (end != std::end(ipmi_cim_Possible_States_Mapping) && end->eventReadingType == eventReadingType)
        ++end;
    return {first, end};
}

// Finds the sensor type's first state with this offset or a higher one; nullptr when it has none.
const PHSensorSpecificState* specificStateFrom(std::uint32_t sensorType, int offset) {
    const auto* state = std::ranges::lower_bound(
        sensor_specific_possible_state_mapping, std::pair(sensorType, static_cast<std::uint32_t>(offset)), {},
        [](const PHSensorSpecificState& row) { return std::pair(row.sensorType, row.offset); });
    const bool found =
        state != std::end(sensor_specific_possible_state_mapping) && state->sensorType == sensorType;
    return found ? state : nullptr;
}

// Fills a record's list anew.
class StateList {
public:
    explicit StateList(SensorRecord& sensor) : states_(sensor.PossibleStates) {
        for (char*& state : states_)
            std::free(std::exchange(state, nullptr));
    }

    void add(std::string_view name, std::string_view suffix = "") {
        if (failed_ || count_ + 1 == std::size(states_))
            return;
        char* text = static_cast<char*>(std::malloc(name.size() + suffix.size() + 1));
        failed_ = text == nullptr;
        if (failed_)
            return;
        text[name.copy(text, name.size()) + suffix.copy(text + name.size(), suffix.size())] = '\0';
        states_[count_++] = text;
    }
    int result() const { return failed_ ? -1 : 0; }

private:
    decltype(SensorRecord::PossibleStates)& states_;
    std::size_t count_ = 0;
    bool failed_ = false;
};

void addSpecificStates(StateList& states, const SensorRecord& sensor) {
    const int offset = stateOffset(parseDeviceId(sensor));
    if (offset != wholeSensor) {
        const PHSensorSpecificState* state = specificStateFrom(sensor.ipmiSensorType, offset);
        if (state == nullptr || static_cast<int>(state->offset) != offset)
            return;
        states.add(state->name, " Assert");
        states.add(state->name, " Deassert");
    }
    states.add(unknown);
}

int setState(SensorRecord& sensor, const char* state) {
    copyText(sensor.CurrentState, state);
    return 0;
}

int setStateUnknown(SensorRecord& sensor) {
    const bool isGood = sensor.eventReadingType == severity && sensor.SensorType != other &&
                        (sensor.supportedStates & 1) == 0;
    copyText(sensor.CurrentState, isGood ? DMTF_PossibleStates[0] : unknown);
    return -1;
}

// Judged on the first state bit: a sensor as a whole is good or bad by what its type begins with.
int setGenericState(SensorRecord& sensor, unsigned bits) {
    const auto states = genericStates(sensor.eventReadingType);
    if (states.empty())
        return setStateUnknown(sensor);
    const PHGenericState& first = states.front();
    const bool isOther = sensor.SensorType == other;
    if ((bits & first.stateMask) == 0)
        return setState(sensor, isOther ? "No Events" : unknown);
    return setState(sensor, isOther ? first.name : DMTF_PossibleStates[first.dmtfState]);
}

int setSpecificState(SensorRecord& sensor, int offset, unsigned bits) {
    if (offset == wholeSensor) {
        copyText(sensor.CurrentState, unknown);
        return -1;
    }
    if (specificStateFrom(sensor.ipmiSensorType, 0) == nullptr)
        return setStateUnknown(sensor);
    const char* const* states = sensor.PossibleStates;
    if (states[0] == nullptr || states[1] == nullptr)
        return -1;
    const bool isAsserted = (bits >> std::min(static_cast<unsigned>(offset), 31U) & 1U) != 0;
    return setState(sensor, states[isAsserted ? 0 : 1]);
}

} // namespace
} // namespace ph

int PH_Fill_PossibleStates_Sensor(SensorRecord* record) {
    ph::StateList states(*record);
    const int type = record->eventReadingType;
    if (ph::within(record->SensorType, ph::temperature, ph::tachometer)) {
        for (const char* state : DMTF_PossibleStates)
            states.add(state);
    } else if (ph::within(type, ph::firstGeneric, ph::lastGeneric)) {
        for (const PHGenericState& state : ph::genericStates(type))
            if ((state.stateMask & record->supportedStates) != 0)
                states.add(state.name);
        states.add(ph::unknown);
        states.add("No Events");
    } else if (type == ph::sensorSpecific) {
        ph::addSpecificStates(states, *record);
    } else if (ph::within(type, 0x70, 0x7F) && ph::within(record->ipmiSensorType, 0xC0, 0xFF)) { // OEM
        states.add(ph::unknown);
    }
    return states.result();
}

int PH_Fill_PossibleStates_NumericSensor(NumericSensorRecord* record) {
    ph::StateList states(record->sensor);
    unsigned bit = 0;
    for (const char* state : DMTF_IPMI_Analog_Possible_States)
        if ((record->sensor.supportedStates >> bit++ & 1U) != 0)
            states.add(state);
    states.add("Normal");
    states.add(ph::unknown);
    return states.result();
}

int PH_Get_Sensor_CurrentState(SensorRecord* record, uint8_t statesLow, uint8_t statesHigh) {
    const unsigned bits = statesLow != 0 ? statesLow : statesHigh;
    const PHSensorDeviceId id = ph::parseDeviceId(*record);
    if (std::string_view(id.eventReadingType) == ph::sensorSpecificText)
        return ph::setSpecificState(*record, ph::stateOffset(id), bits);
    if (std::string_view(id.offset) == "99")
        return ph::setGenericState(*record, bits);
    return ph::setStateUnknown(*record);
}

int PH_Get_Analog_CurrentState(NumericSensorRecord* record, uint8_t thresholds) {
    const char* state = (thresholds & 0x01) != 0   ? DMTF_IPMI_Analog_Possible_States[0]
                        : (thresholds & 0x02) != 0 ? DMTF_IPMI_Analog_Possible_States[1]
                                                   : "Normal";
    return ph::setState(record->sensor, state);
}
