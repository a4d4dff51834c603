// What the host and the service processor have in common: their properties, where their records come from,
// and how they answer RequestStateChange.
#pragma once

#include "provider_helper/computer_system.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/method.h"

#include <cstdint>
#include <functional>
#include <span>

namespace ph::computer {

using Record = HostComputerSystemRecord;

enum Dedicated : int { notDedicated = 0, managementController = 28 };

inline bool isManagementController(const Record& record) {
    return record.Dedicated[0] == managementController;
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

inline constexpr Method methods[] = {requestStateChange};

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
    // Closed from below: record, session, database.
    Database database_;
    IpmiSession session_;
    HeapPtr<DeviceRecord> device_;
};

struct Facts {
    const char* identifyingDescriptions; // separated by commas
    const char* otherIdentifyingInfo;
    std::uint16_t requestedState;
    Dedicated dedicated;
    int operationalStatus;
};
// Fills all but the keys. Returns -1 when an allocation fails.
int fill(Record* record, const Facts& facts);

// Stores a state as the RequestedState of a device: 0 or -1.
int storeRequestedState(int deviceType, std::uint16_t state);

// A method as CMPI hands it over, with the keys of its object.
struct MethodCall {
    const CMPIBroker* broker;
    const CMPIResult* result;
    const CMPIObjectPath* ref;
    const CMPIArgs* in;
    CMPIArgs* out;
    CMPIString** keyValues;
    CMPIStatus* status;
};

// Sets the status; -1.
int refuse(const MethodCall& call, CMPIrc code, const char* message);

struct StateChange {
    const char* jobName;
    bool (*act)(CMPIString** keyValues, std::uint16_t requestedState);
    void (*afterwards)(CMPIString** keyValues, std::uint16_t requestedState); // of a change that was made
};
int changeState(const MethodCall& call, const StateChange& change);

// The invoke request of a class with one method, which `carryOut` carries out: 0 or -1.
CMPIStatus invoke(const Request& request, const char* method, std::span<const char* const> keys,
                  const std::function<int(const MethodCall&)>& carryOut);

// A system's invoke request. Systems close the result of a change that was made themselves.
struct System {
    const char* className;
    std::span<const char* const> keys; // Name, CreationClassName
    int (*getName)(char*);
    int (*changeState)(const CMPIBroker*, const CMPIResult*, const CMPIObjectPath*, const CMPIArgs*,
                       CMPIArgs*, CMPIString** keyValues, CMPIStatus*);
};
CMPIStatus invokeStateChange(const Request& request, const System& system);

} // namespace ph::computer
