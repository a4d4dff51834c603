#include "computer-system/computer_system.h"

#include "Utility/requests/request_texts.h"
#include "Utility/values/record_fields.h"

#include <cstdlib>
#include <cstring>

namespace ph::computer {
namespace {

bool is(const CMPIString* key, const char* text) {
    const char* given = textOf(key);
    return given != nullptr && std::strcmp(given, text) == 0;
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
    record->EnabledState = EnabledState::Enabled;
    record->HealthState = HealthState::OK;
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

MethodAnswer changeState(MethodCall& call, const StateChange& change) {
    std::uint16_t state = 0;
    if (!call.readRequestedState(state))
        return std::nullopt;
    return call.report(
        change.jobName, [&] { return change.act(call.keys, state); },
        [&] {
            if (change.afterwards != nullptr)
                change.afterwards(call.keys, state);
        });
}

bool isNamed(CMPIString* const* keyValues, const char* className, int (*getName)(char*)) {
    char name[256] = "";
    return is(keyValues[1], className) && (getName(name) != 0 || is(keyValues[0], name));
}

} // namespace ph::computer
