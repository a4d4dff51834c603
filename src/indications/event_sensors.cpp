// The CIM_Sensor instances that events come from.
#include "provider_helper/alert_delivery.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/cmpi_ptr.h"

#include <cmpimacs.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int defaultSensor = 5; // stands for sensor 0

void copyBounded(char* buffer, int size, const char* text) {
    if (size > 0)
        std::snprintf(buffer, static_cast<std::size_t>(size), "%s", text != nullptr ? text : "");
}

} // namespace

CMPIEnumeration* CacheSensorInstances(const CMPIBroker* broker, const CMPIContext* context) {
    const ph::CmpiPtr<CMPIObjectPath> path(CMNewObjectPath(broker, "root/cimv2", "CIM_Sensor", nullptr));
    return path != nullptr ? CBEnumInstances(broker, context, path.get(), nullptr, nullptr) : nullptr;
}

CMPIInstance* GetSpecificEventSensorObjectInstances(int sensorNumber, CMPIEnumeration* sensors) {
    const int wanted = sensorNumber != 0 ? sensorNumber : defaultSensor;
    while (sensors != nullptr && CMHasNext(sensors, nullptr)) {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const CMPIData data = CMGetNext(sensors, &status);
        if (status.rc != CMPI_RC_OK)
            return nullptr;
        char deviceId[256];
        if (data.type != CMPI_instance || data.value.inst == nullptr)
            continue;
        get_cmpi_str_property_value(data.value.inst, "DeviceID", deviceId, sizeof(deviceId));
        if (IsEventingSensor(deviceId, wanted) == 1)
            return data.value.inst;
    }
    return nullptr;
}

int IsEventingSensor(const char* deviceId, int sensorNumber) {
    PHSensorDeviceId parts;
    ReturnParsedSensorDeviceID(deviceId, &parts);
    return parts.sensorNumber[0] != '\0' && std::strtol(parts.sensorNumber, nullptr, 10) == sensorNumber;
}

int ReturnParsedSensorDeviceID(const char* deviceId, PHSensorDeviceId* parts) {
    return PH_Parse_Sensor_DeviceID(deviceId, parts);
}

int get_cmpi_str_property_value(const CMPIInstance* instance, const char* name, char* buffer, int size) {
    copyBounded(buffer, size, ph::propertyText(instance, name));
    return 0;
}

int get_alerting_managed_element_from_instance(const CMPIInstance* instance, const char* name, char* buffer,
                                               int size, char* path, int pathSize) {
    get_cmpi_str_property_value(instance, name, buffer, size);
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const ph::CmpiPtr<CMPIObjectPath> objectPath(CMGetObjectPath(instance, &status));
    const ph::CmpiPtr<CMPIString> string(status.rc == CMPI_RC_OK && objectPath != nullptr
                                             ? objectPath->ft->toString(objectPath.get(), nullptr)
                                             : nullptr);
    const char* const text = ph::textOf(string.get());
    copyBounded(path, pathSize, text);
    return text != nullptr ? 0 : -1;
}
