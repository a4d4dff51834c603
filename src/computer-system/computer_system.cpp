#include "computer-system/computer_system.h"

#include "Utility/array_count.h"
#include "Utility/method_job.h"
#include "Utility/record_fields.h"
#include "Utility/request_status.h"
#include "Utility/request_texts.h"

#include <cstdlib>
#include <cstring>
#include <strings.h>

namespace ph::computer {
namespace {

// `value` stays as it is for what the status tells: failures before the job exists.
int changeState(const MethodCall& call, const StateChange& change, std::uint32_t& value) {
    MethodJob job;
    if (!job.makePath(call.broker, call.ref))
        return refuse(call, CMPI_RC_ERR_FAILED, noJobPath);
    std::uint16_t state = 0;
    const auto requested = argument(call.in, "RequestedState");
    if (!requested || GetUINT16Value(*requested, &state) != 0)
        return refuse(call, CMPI_RC_ERR_INVALID_PARAMETER, "RequestedState Parameter is Invalid");
    const auto outcome = job.carryOut(change.jobName, [&] { return change.act(call.keyValues, state); });
    if (outcome == MethodJob::Outcome::NoJob)
        return refuse(call, CMPI_RC_ERR_FAILED, noJob);
    const bool isDone = outcome == MethodJob::Outcome::Done;
    if (isDone && change.afterwards != nullptr)
        change.afterwards(call.keyValues, state);
    if (job.returnReference(call.out) && isDone)
        return 0;
    value = methodFailed;
    return -1;
}

bool is(const CMPIString* key, const char* text) {
    const char* given = textOf(key);
    return given != nullptr && std::strcmp(given, text) == 0;
}

// Without its database a system does not know its name. It can be told by its class then, and restarted.
bool isNamed(const System& system, CMPIString* const* keyValues) {
    char name[256] = "";
    return is(keyValues[1], system.className) && (system.getName(name) != 0 || is(keyValues[0], name));
}

} // namespace

bool Source::open(int (*getName)(char*), int deviceType) {
    if (getName(name_) != 0 || !session_.open() || !database_.open())
        return false;
    device_ = record(db_get_device_bytype, database_.get(), deviceType);
    return device_ != nullptr;
}

Record* Source::append(RecordArray<Record>& systems, const char* className) const {
    Record* system = systems.append();
    if (system == nullptr)
        return nullptr;
    copyText(system->CreationClassName, className);
    copyText(system->Name, name_);
    return system;
}

int fill(Record* record, const Facts& facts) {
    char** descriptions = nullptr;
    int count = 0;
    if (PH_GetArrayCount(facts.identifyingDescriptions, &descriptions, &count) != 0)
        return -1;
    std::copy_n(descriptions, count, record->IdentifyingDescriptions);
    std::free(descriptions);

    copyText(record->ElementName, record->Name);
    setList(record->Dedicated, {facts.dedicated});
    setList(record->OperationalStatus, {facts.operationalStatus});
    record->RequestedState = facts.requestedState;
    record->EnabledState = 2; // enabled
    record->HealthState = 5;  // OK
    record->OtherIdentifyingInfo[0] = strndup(facts.otherIdentifyingInfo, 255);
    return record->OtherIdentifyingInfo[0] != nullptr ? 0 : -1;
}

int storeRequestedState(int deviceType, std::uint16_t state) {
    Database database;
    if (!database.open())
        return -1;
    const auto device = record(db_get_device_bytype, database.get(), deviceType);
    if (device == nullptr)
        return -1;
    device->requestedState = state;
    return db_set_device(database.get(), device.get()) == 0 ? 0 : -1;
}

int refuse(const MethodCall& call, CMPIrc code, const char* message) {
    fail(call.broker, call.status, code, message);
    return -1;
}

int changeState(const MethodCall& call, const StateChange& change) {
    std::uint32_t value = methodDone;
    const int result = changeState(call, change, value);
    returnValue(call.result, value);
    return result;
}

CMPIStatus invoke(const Request& request, const char* method, std::span<const char* const> keys,
                  const std::function<int(const MethodCall&)>& carryOut) {
    CMPIStatus status = success;
    CMPIString* keyValues[maxKeys] = {};
    if (CheckForValidObjectPath(request.broker, request.ref, keys.data(), keyValues,
                                static_cast<int>(keys.size()), &status) != 0)
        return status;
    if (request.method == nullptr || strcasecmp(request.method, method) != 0)
        return fail(request.broker, CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available");
    return carryOut({request.broker, request.result, request.ref, request.in, request.out, keyValues,
                     &status}) == 0
               ? success
               : status;
}

CMPIStatus invokeStateChange(const Request& request, const System& system) {
    return invoke(request, requestStateChange.name, system.keys, [&](const MethodCall& call) {
        if (!isNamed(system, call.keyValues))
            return refuse(call, CMPI_RC_ERR_NOT_FOUND, "Given instance does not exist");
        const int result = system.changeState(call.broker, call.result, call.ref, call.in, call.out,
                                              call.keyValues, call.status);
        if (result == 0)
            CMReturnDone(call.result);
        return result;
    });
}

} // namespace ph::computer
