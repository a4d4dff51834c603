// The operations of all classes, over their descriptions.
#include "Utility/engine/class_objects.h"
#include "Utility/engine/guard.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/cmpi_ptr.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <vector>

namespace ph::engine {
namespace {

// The records of one request, cleaned when it ends.
class RequestRecords {
public:
    explicit RequestRecords(const ClassFamily& family) : family_(family) {}
    ~RequestRecords() { clean(family_, &records_, count_); }
    RequestRecords(const RequestRecords&) = delete;
    RequestRecords& operator=(const RequestRecords&) = delete;

    bool enumerate(Detail detail) {
        return enumerateAll(family_, &records_, &count_, detail == Detail::Names) == 0;
    }
    bool get(CMPIString** keyValues) {
        const int result = engine::get(family_, &records_, keyValues);
        count_ = records_ != nullptr;
        return result == 0;
    }
    int count() const { return count_; }
    const void* at(int i) const { return static_cast<const char*>(records_) + family_.recordSize * i; }

private:
    const ClassFamily& family_;
    void* records_ = nullptr;
    int count_ = 0;
};

// Hands each record to `take`, one at a time where the class can. Returns false when `take` does, or when the
// records cannot be had.
template <class Take>
bool forEachRecord(const ClassFamily& family, Detail detail, Take&& take) {
    return guarded(false, [&] {
        if (family.stream != nullptr)
            return family.stream(std::ref(take), detail) == 0;
        RequestRecords records(family);
        if (!records.enumerate(detail))
            return false;
        for (int i = 0; i < records.count(); ++i)
            if (!take(records.at(i)))
                return false;
        return true;
    });
}

bool skips(const ClassFamily& family, const void* record) {
    return family.skip != nullptr && family.skip(record);
}

const Property& keyProperty(const ClassFamily& family, std::string_view name) {
    return *std::find_if(family.properties.begin(), family.properties.end(),
                         [&](const Property& property) { return property.isKey && name == property.name; });
}

bool keysMatch(const ClassFamily& family, const void* record, CMPIString** keyValues) {
    for (std::size_t i = 0; i < family.keys.size(); ++i) {
        const char* wanted = textOf(keyValues[i]);
        if (wanted == nullptr || // a broker that fails
            std::strcmp(keyText(keyProperty(family, family.keys[i]), record), wanted) != 0)
            return false;
    }
    return true;
}

bool collectMatching(const ClassFamily& family, RecordStore& store, CMPIString** keyValues) {
    for (std::size_t i = 0; i < family.keys.size(); ++i)
        if (keyValues == nullptr || textOf(keyValues[i]) == nullptr)
            return false;
    if ((family.get != nullptr ? family.get(store, keyValues) : family.enumerate(store, Detail::All)) != 0)
        return false;
    if (store.count() == 0)
        return false;
    int match = 0;
    while (match < store.count() && !keysMatch(family, store.at(match), keyValues))
        ++match;
    const bool found = match < store.count();
    store.keepOnly(found ? match : 0);
    store.commit();
    return found;
}

// Reads and writes a pointer to records whose type the engine does not know: all pointers look alike.
void* pointerAt(const void* address) {
    void* pointer = nullptr;
    std::memcpy(&pointer, address, sizeof pointer);
    return pointer;
}
void setPointerAt(void* address, void* pointer) {
    std::memcpy(address, &pointer, sizeof pointer);
}

CMPIStatus change(RequestHandler handler, const char* refusal, const Request& request) {
    if (handler == nullptr)
        return fail(request.broker, CMPI_RC_ERR_NOT_SUPPORTED, refusal);
    try {
        return handler(request);
    } catch (...) {
        return fail(request.broker, CMPI_RC_ERR_FAILED, "Out of memory");
    }
}

} // namespace

int enumerateAll(const ClassFamily& family, void* records, int* count, int namesOnly) {
    RecordStore store(pointerAt(records), *count, family.recordSize, family.properties);
    const int result =
        guarded(-1, [&] { return family.enumerate(store, namesOnly != 0 ? Detail::Names : Detail::All); });
    if (result == 0)
        store.commit();
    const bool isKept = result == 0 || !family.failureFreesAll;
    *count = isKept ? store.committed() : 0;
    setPointerAt(records, isKept ? store.release() : nullptr);
    return result == 0 ? 0 : -1;
}

int get(const ClassFamily& family, void* record, CMPIString** keyValues) {
    RecordStore store(nullptr, 0, family.recordSize, family.properties);
    const bool found = guarded(false, [&] { return collectMatching(family, store, keyValues); });
    setPointerAt(record, store.release());
    return found ? 0 : -1;
}

void clean(const ClassFamily& family, void* records, int count) {
    void* const first = pointerAt(records);
    for (int i = 0; first != nullptr && i < count; ++i)
        cleanRecord(family.properties, static_cast<char*>(first) + family.recordSize * i);
    std::free(first);
    setPointerAt(records, nullptr);
}

bool hasInstance(const ClassFamily& family, CMPIString** keyValues) {
    RequestRecords records(family);
    if (!records.enumerate(Detail::Names))
        return false;
    for (int i = 0; i < records.count(); ++i)
        if (keysMatch(family, records.at(i), keyValues))
            return true;
    return false;
}

CMPIObjectPath* makePath(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                         const void* record, CMPIStatus* status) {
    CMPIObjectPath* path = buildPath(family, Maker(family, broker, ref), record).release();
    if (path == nullptr)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Make ObjectPath failed.");
    return path;
}

CMPIInstance* makeInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                           const char** properties, const void* record, CMPIStatus* status) {
    CMPIInstance* instance = guarded(static_cast<CMPIInstance*>(nullptr), [&] {
        return buildInstance(family, Maker(family, broker, ref), properties, record).release();
    });
    if (instance == nullptr)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Make instance failed.");
    return instance;
}

CMPIArray* instanceArray(const ClassFamily& family, const CMPIObjectPath* ref, const CMPIBroker* broker,
                         const char** properties) {
    std::vector<CMPIInstance*> instances; // an array may take over the objects themselves
    const Maker maker(family, broker, ref);
    const bool done = forEachRecord(family, Detail::All, [&](const void* record) {
        return skips(family, record) ||
               instances.emplace_back(buildInstance(family, maker, properties, record).release()) != nullptr;
    });
    CMPIStatus status = success;
    CmpiPtr<CMPIArray> array(
        done ? CMNewArray(broker, static_cast<CMPICount>(instances.size()), CMPI_instance, &status)
             : nullptr);
    if (array == nullptr || status.rc != CMPI_RC_OK)
        return nullptr;
    for (CMPICount i = 0; i < instances.size(); ++i) {
        CMPIValue value{};
        value.inst = instances[i];
        if (CMSetArrayElementAt(array.get(), i, &value, CMPI_instance).rc != CMPI_RC_OK)
            return nullptr;
    }
    return array.release();
}

void enumerateInstances(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                        const char** properties, const CMPIResult* result, CMPIStatus* status) {
    if (family.enumerate == nullptr)
        return fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "Enumerate Instances  not supported");
    const Maker maker(family, broker, ref);
    const bool done = forEachRecord(family, Detail::All, [&](const void* record) {
        if (skips(family, record))
            return true;
        const auto instance = buildInstance(family, maker, properties, record);
        return instance != nullptr && CMReturnInstance(result, instance.get()).rc == CMPI_RC_OK;
    });
    if (!done)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance");
}

void enumerateNames(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                    const CMPIResult* result, CMPIStatus* status) {
    if (family.enumerate == nullptr)
        return fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "Enumerate Instance Names not supported");
    const Maker maker(family, broker, ref);
    const bool done = forEachRecord(family, Detail::Names, [&](const void* record) {
        const auto path = buildPath(family, maker, record);
        return path != nullptr && CMReturnObjectPath(result, path.get()).rc == CMPI_RC_OK;
    });
    if (!done)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance Names");
}

void getInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                 const char** properties, const CMPIResult* result, CMPIStatus* status) {
    if (family.enumerate == nullptr)
        return fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "Get Instance not supported");
    // What exactly is wrong with the keys never reaches the client from here.
    KeyValues keyValues;
    RequestRecords records(family);
    if (keyValues.areRead(broker, ref, family.keys) && records.get(keyValues)) {
        const CMPIInstance* instance = makeInstance(family, broker, ref, properties, records.at(0), nullptr);
        if (instance != nullptr && CMReturnInstance(result, instance).rc == CMPI_RC_OK)
            return;
    }
    fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Get Instance");
}

CMPIStatus modify(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref, const CMPIInstance* instance,
                  const char** properties) {
    return change(family.modify, "SetInstance not supported",
                  {.broker = broker,
                   .context = context,
                   .result = result,
                   .ref = ref,
                   .instance = instance,
                   .properties = properties});
}

CMPIStatus create(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref, const CMPIInstance* instance) {
    return change(family.create, "CreateInstance not supported",
                  {.broker = broker, .context = context, .result = result, .ref = ref, .instance = instance});
}

CMPIStatus remove(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref) {
    return change(family.remove, "DeleteInstance not supported",
                  {.broker = broker, .context = context, .result = result, .ref = ref});
}

} // namespace ph::engine
