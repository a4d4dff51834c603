// What the host and the service processor have in common: their properties, where their records come from,
// and how they answer RequestStateChange.
#pragma once

#include "provider_helper/computer_system.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/engine/method.h"
#include "Utility/values/dmtf_values.h"

#include <cstdint>

namespace ph::computer {

using Record = HostComputerSystemRecord;

inline bool isManagementController(const Record& record) {
    return record.Dedicated[0] == Dedicated::ManagementController;
}

inline constexpr Property properties[] = {
    PH_KEY(Record, Name),
    PH_KEY(Record, CreationClassName),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, IdentifyingDescriptions),
    PH_PROPERTY(Record, OtherIdentifyingInfo),
    PH_PROPERTY(Record, OperationalStatus),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, HealthState),
    PH_PROPERTY_IF(Record, PrimaryOwnerContact, isManagementController),
    PH_PROPERTY(Record, Dedicated),
};

// What a system's only record is made from.
class Source {
public:
    bool open(int (*getName)(char*), int deviceType);
    SMASH_DB_HANDLE database() const { return database_.get(); }
    const DeviceRecord* device() const { return device_.get(); }
    // A record with its keys; nullptr when memory is short.
    Record* append(RecordArray<Record>& systems, const char* className) const;

private:
    char name_[256] = "";
    // Members are closed in reverse order: record, session, database.
    Database database_;
    IpmiSession session_;
    HeapPtr<DeviceRecord> device_;
};

struct Facts {
    const char* identifyingDescriptions; // separated by commas
    const char* otherIdentifyingInfo;
    std::uint16_t requestedState;
    int dedicated;
    int operationalStatus;
};
// Fills all but the keys. Returns -1 when an allocation fails.
int fill(Record* record, const Facts& facts);

// Stores a state as the RequestedState of a device. Returns 0 or -1.
int storeRequestedState(int deviceType, std::uint16_t state);

// How a system changes its state when RequestStateChange asks for it.
struct StateChange {
    const char* jobName;
    bool (*act)(CMPIString** keyValues, std::uint16_t requestedState);
    void (*afterwards)(CMPIString** keyValues, std::uint16_t requestedState); // of a change that was made
};
MethodAnswer changeState(MethodCall& call, const StateChange& change);
// RequestStateChange of the host, for its view too.
MethodAnswer changeHostState(MethodCall& call);

// Without its database a system does not know its name. It can be told by its class then, and restarted.
bool isNamed(CMPIString* const* keyValues, const char* className, int (*getName)(char*));

consteval Method stateChangeMethod(MethodAnswer (*carryOut)(MethodCall& call)) {
    return {.name = requestStateChange,
            .parameters = requestStateChangeParameters,
            .carryOut = carryOut,
            .job = JobReport{},
            .refusedValue = methodDone};
}

consteval Invocation invocation(bool (*exists)(CMPIString* const* keyValues)) {
    return {.exists = exists,
            .missing = {CMPI_RC_ERR_NOT_FOUND, "Given instance does not exist"},
            .closes = Invocation::Closes::WhenDone};
}

} // namespace ph::computer
