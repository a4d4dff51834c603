// Requests on filters and listener destinations: what both have in common. Clients choose the name of one and
// nothing else of its keys.
#pragma once

#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/engine/guard.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/record_fields.h"

namespace ph::indications {

inline constexpr std::size_t keyCount = 4; // SystemCreationClassName, CreationClassName, SystemName, Name
inline constexpr std::size_t nameKey = 3;

// The path's keys but Name are those that all instances of the class have.
bool hasConstantKeys(const CMPIObjectPath* ref, const char* className);

// Reads the request's keys; false unless it has all of them.
bool readKeys(const Request& request, std::span<const char* const> keys, KeyValues& values);

// The record that the keys name, nullptr for none. The records own nothing.
template <class Record>
HeapPtr<Record> find(int (*get)(Record**, CMPIString**), KeyValues& values) {
    Record* record = nullptr;
    const int result = get(&record, values);
    HeapPtr<Record> owner(record);
    return result == 0 ? std::move(owner) : nullptr;
}

// The created instance's path, for the client.
CMPIStatus returnPath(const Request& request);

// A record with its keys; nullptr when memory is short.
template <class Record>
Record* append(RecordArray<Record>& records, const char* className, const char* systemName,
               const char* name) {
    Record* record = records.append();
    if (record == nullptr)
        return nullptr;
    setHostedKeys(*record, processorClass, systemName, className);
    copyText(record->Name, name);
    return record;
}

// Runs `add` on a caller's array and returns 0; after -1, the array is freed.
template <class Record, class Add>
int appendTo(Record** records, int* count, std::span<const Property> properties, Add add) {
    if (records == nullptr || count == nullptr)
        return -1;
    const int result = guarded(-1, [&] {
        RecordStore store(*records, *count, sizeof(Record), properties);
        RecordArray<Record> array(store);
        const int added = add(array);
        if (added == 0)
            store.commit();
        *count = store.committed();
        *records = static_cast<Record*>(store.release());
        return added;
    });
    if (result != 0) {
        std::free(std::exchange(*records, nullptr));
        *count = 0;
    }
    return result;
}

} // namespace ph::indications
