#include "sensors/device_id.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace ph {
namespace {

template <std::size_t N>
void store(char (&field)[N], std::string_view text) {
    field[text.copy(field, N - 1)] = '\0';
}

int decimal(const char* text) {
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

} // namespace

PHSensorDeviceId parseDeviceId(const SensorRecord& sensor) {
    PHSensorDeviceId id;
    PH_Parse_Sensor_DeviceID(sensor.DeviceID, &id);
    return id;
}

int stateOffset(const PHSensorDeviceId& id) {
    return decimal(id.offset);
}

std::uint8_t sensorNumber(const SensorRecord& sensor) {
    return static_cast<std::uint8_t>(decimal(parseDeviceId(sensor).sensorNumber));
}

} // namespace ph

int PH_Parse_Sensor_DeviceID(const char* deviceId, PHSensorDeviceId* parts) {
    *parts = {};
    std::string_view rest = deviceId;
    for (char(*field)[4] : {&parts->ownerId, &parts->sensorNumber, &parts->ownerLun, &parts->sensorType,
                            &parts->eventReadingType, &parts->offset}) {
        const bool isLast = field == &parts->offset;
        const std::size_t end = std::min(rest.find_first_of(isLast ? ".:" : "."), rest.size());
        if (end == 0)
            return 0;
        ph::store(*field, rest.substr(0, end));
        rest.remove_prefix(end);
        if (!rest.starts_with(isLast ? ':' : '.'))
            return 0;
        rest.remove_prefix(1);
    }
    constexpr const char* blanks = " \t\n\v\f\r";
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
    ph::store(parts->name, rest.substr(0, rest.find_first_of(blanks)));
    return 0;
}
