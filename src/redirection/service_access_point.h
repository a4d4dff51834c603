// Access points of services of the BMC: KVM, media and USB are such classes.
#pragma once

#include "redirection/access_point.h"
#include "redirection/media_services.h"
#include "Utility/requests/request_texts.h"

namespace ph::redirection {

// Fill what follows from the record's Name. Return -1 for a name that none of the class has.
int fillAccessPoint(const char* className, IPMI20_SESSION_T* session, RedirectionSAPRecord& record);
// A drive, whose access point listens, and ends sessions that are idle.
int fillDrive(const char* className, IPMI20_SESSION_T* session, RedirectionSAPRecord& record);

inline bool hasTimeout(const RedirectionSAPRecord& accessPoint) {
    return accessPoint.SessionTimeout[0] != '\0';
}
inline constexpr Property driveProperties[] = {
    PH_PROPERTY(RedirectionSAPRecord, ConnectionMode),
    PH_DATETIME(RedirectionSAPRecord, SessionTimeout),
};
inline constexpr auto driveAccessPointProperties = joined(accessPointProperties, driveProperties);

MethodAnswer changeAccessPoint(MethodCall& call);
inline constexpr Method accessPointMethods[] = {{.name = requestStateChange,
                                                 .parameters = requestStateChangeParameters,
                                                 .carryOut = changeAccessPoint,
                                                 .job = JobReport{}}};

struct AccessPointClass {
    const char* name;
    int (*fill)(IPMI20_SESSION_T* session, RedirectionSAPRecord* record);
};

// Makes the definition of such a class.
template <const AccessPointClass& accessPointClass>
constexpr ClassDefinition<RedirectionSAPRecord> define(std::span<const char* const> keys,
                                                       std::span<const Property> properties) {
    return {.name = accessPointClass.name,
            .superclass = "CIM_ServiceAccessPoint",
            .source = "Get and Set Service Configuration (OEM)",
            .keys = keys,
            .properties = properties,
            .enumerate =
                [](RecordArray<RedirectionSAPRecord>& accessPoints, Detail detail) {
                    return enumerateRows(accessPointRows(), accessPointClass.name, accessPointClass.fill,
                                         accessPoints, detail);
                },
            .get =
                [](RecordArray<RedirectionSAPRecord>& accessPoints, CMPIString** keyValues) {
                    const char* name = textOf(keyValues[nameKey]);
                    return name != nullptr
                               ? enumerateRows(accessPointRows(), accessPointClass.name,
                                               accessPointClass.fill, accessPoints, Detail::All, name)
                               : -1;
                },
            .methods = accessPointMethods,
            .invocation = {.isLookedUp = true, .missing = noSuchInstance}};
}

} // namespace ph::redirection
