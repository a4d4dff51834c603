// One CIM_Sensor instance through the class engine, and by straight-line code that makes the same CMPI calls
// on the same broker.
#include "broker/broker.h"
#include "provider_helper/sensors.h"

#include <benchmark/benchmark.h>
#include <cmpimacs.h>
#include <cstdlib>
#include <cstring>

namespace {

SensorRecord sensor() {
    SensorRecord record{};
    std::strcpy(record.SystemCreationClassName, "CIM_HostComputerSystem");
    std::strcpy(record.SystemName, "Unknown.IPMI BMC DeviceID.a123456789abcdefa123456789abcdef");
    std::strcpy(record.CreationClassName, "CIM_Sensor");
    std::strcpy(record.DeviceID, "32.48.0.8.6f.1:PSU1 Status");
    record.SensorType = 1;
    std::strcpy(record.OtherSensorTypeDescription, "PowerSupply");
    record.HealthState = 5;
    record.OperationalStatus[0] = 2;
    record.OperationalStatus[1] = -1;
    static char asserted[] = "Power Supply Failure detected Assert";
    static char deasserted[] = "Power Supply Failure detected Deassert";
    static char unknown[] = "Unknown";
    record.PossibleStates[0] = asserted;
    record.PossibleStates[1] = deasserted;
    record.PossibleStates[2] = unknown;
    std::strcpy(record.CurrentState, deasserted);
    std::strcpy(record.Caption, "PowerSupply(48.32.0)");
    std::strcpy(record.Description, "PSU1 Status(48.32.0):PowerSupply for Power Supply 1");
    std::strcpy(record.ElementName, "PSU1 Status(48.32.0)");
    record.RequestedState = 12;
    record.EnabledState = 2;
    return record;
}

const CMPIValue* chars(const char* text) {
    return reinterpret_cast<const CMPIValue*>(text);
}

bool setUint16(CMPIInstance* instance, const char* name, CMPIUint16 number) {
    CMPIValue value{};
    value.uint16 = number;
    return CMSetProperty(instance, name, &value, CMPI_uint16).rc == CMPI_RC_OK;
}

bool setArray(CMPIInstance* instance, const char* name, CMPIArray* array, CMPIType type) {
    CMPIValue value{};
    value.array = array;
    const bool done = array != nullptr && CMSetProperty(instance, name, &value, type).rc == CMPI_RC_OK;
    CMRelease(array);
    return done;
}

CMPIInstance* byHand(const CMPIBroker* broker, const CMPIObjectPath* ref, const char** properties,
                     const SensorRecord& record) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIObjectPath* path =
        CMNewObjectPath(broker, CMGetCharsPtr(CMGetNameSpace(ref, &status), nullptr), "CIM_Sensor", &status);
    CMAddKey(path, "SystemCreationClassName", chars(record.SystemCreationClassName), CMPI_chars);
    CMAddKey(path, "SystemName", chars(record.SystemName), CMPI_chars);
    CMAddKey(path, "CreationClassName", chars(record.CreationClassName), CMPI_chars);
    CMAddKey(path, "DeviceID", chars(record.DeviceID), CMPI_chars);
    CMPIInstance* instance = CMNewInstance(broker, path, &status);
    CMSetProperty(instance, "SystemCreationClassName", chars(record.SystemCreationClassName), CMPI_chars);
    CMSetProperty(instance, "SystemName", chars(record.SystemName), CMPI_chars);
    CMSetProperty(instance, "CreationClassName", chars(record.CreationClassName), CMPI_chars);
    CMSetProperty(instance, "DeviceID", chars(record.DeviceID), CMPI_chars);
    if (ExistsInList(properties, "SensorType"))
        setUint16(instance, "SensorType", record.SensorType);
    if (ExistsInList(properties, "OtherSensorTypeDescription"))
        CMSetProperty(instance, "OtherSensorTypeDescription", chars(record.OtherSensorTypeDescription),
                      CMPI_chars);
    if (ExistsInList(properties, "HealthState"))
        setUint16(instance, "HealthState", record.HealthState);
    if (ExistsInList(properties, "OperationalStatus"))
        setArray(instance, "OperationalStatus", PH_Dup_uint16_Array(broker, record.OperationalStatus),
                 CMPI_uint16A);
    if (ExistsInList(properties, "PossibleStates"))
        setArray(instance, "PossibleStates", PH_Dup_variable_string_Array(broker, record.PossibleStates),
                 CMPI_stringA);
    if (ExistsInList(properties, "CurrentState"))
        CMSetProperty(instance, "CurrentState", chars(record.CurrentState), CMPI_chars);
    if (ExistsInList(properties, "Caption"))
        CMSetProperty(instance, "Caption", chars(record.Caption), CMPI_chars);
    if (ExistsInList(properties, "Description"))
        CMSetProperty(instance, "Description", chars(record.Description), CMPI_chars);
    if (ExistsInList(properties, "ElementName"))
        CMSetProperty(instance, "ElementName", chars(record.ElementName), CMPI_chars);
    if (ExistsInList(properties, "RequestedState"))
        setUint16(instance, "RequestedState", record.RequestedState);
    if (ExistsInList(properties, "EnabledState"))
        setUint16(instance, "EnabledState", record.EnabledState);
    return instance;
}

CMPIInstance* byEngine(const CMPIBroker* broker, const CMPIObjectPath* ref, const char** properties,
                       const SensorRecord& record) {
    return PH_MakeInst_Sensor(broker, nullptr, ref, properties, &record, 0, 0, nullptr);
}

using Maker = CMPIInstance* (*)(const CMPIBroker*, const CMPIObjectPath*, const char**, const SensorRecord&);

void build(benchmark::State& state, Maker make, const char** properties) {
    const broker::Broker broker;
    broker::Scope scope(broker);
    const CMPIObjectPath* ref = scope.make(broker::parseObjectPath("root/cimv2:CIM_Sensor"));
    const SensorRecord record = sensor();
    for (auto _ : state) {
        const broker::Scope request(broker);
        CMPIInstance* instance = make(broker.handle(), ref, properties, record);
        if (instance == nullptr) {
            state.SkipWithError("no instance");
            break;
        }
        benchmark::DoNotOptimize(instance);
    }
}

const char* three[] = {"ElementName", "CurrentState", "HealthState", nullptr};

BENCHMARK_CAPTURE(build, all_properties_engine, byEngine, nullptr);
BENCHMARK_CAPTURE(build, all_properties_by_hand, byHand, nullptr);
BENCHMARK_CAPTURE(build, three_properties_engine, byEngine, three);
BENCHMARK_CAPTURE(build, three_properties_by_hand, byHand, three);

} // namespace
