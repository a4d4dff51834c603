// DeviceIDs of sensors: "32.1.0.1.01.99:Inlet Temp".
#include "input.h"
#include "target.h"

#include "provider_helper/alert_delivery.h"

#include <cstring>

namespace {

template <std::size_t N>
bool isEnded(const char (&text)[N]) {
    return std::memchr(text, '\0', N) != nullptr;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = textOf(data, size);
    PHSensorDeviceId parts;
    std::memset(&parts, 'x', sizeof parts);
    require(PH_Parse_Sensor_DeviceID(text.c_str(), &parts) == 0, "any text has parts");
    require(isEnded(parts.ownerId) && isEnded(parts.sensorNumber) && isEnded(parts.ownerLun) &&
                isEnded(parts.sensorType) && isEnded(parts.eventReadingType) && isEnded(parts.offset) &&
                isEnded(parts.name),
            "parts end");
    const int isEventing = IsEventingSensor(text.c_str(), 1);
    require(isEventing == 0 || isEventing == 1, "it is one or it is none");
    int first = 0;
    int second = 0;
    ParseDeviceId(text.c_str(), &first, &second);
    return 0;
}
