// The operations of all classes, over their descriptions.
#include "Utility/array_ptr.h"
#include "Utility/class_family.h"
#include "Utility/guard.h"
#include "Utility/request_status.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>

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
    bool skips(int i) const { return family_.skip != nullptr && family_.skip(at(i)); }

private:
    const ClassFamily& family_;
    void* records_ = nullptr;
    int count_ = 0;
};

const char* textOf(const CMPIString* string) {
    return string != nullptr ? CMGetCharsPtr(string, nullptr) : nullptr;
}

const char* keyText(const Property& key, const void* record) {
    return static_cast<const char*>(record) + key.offset;
}

CMPIType scalarType(Kind kind) {
    switch (kind) {
    case Kind::Boolean:
        return CMPI_boolean;
    case Kind::Uint8:
        return CMPI_uint8;
    case Kind::Uint16:
        return CMPI_uint16;
    case Kind::Uint32:
        return CMPI_uint32;
    case Kind::Uint64:
        return CMPI_uint64;
    case Kind::Sint8:
        return CMPI_sint8;
    case Kind::Sint16:
        return CMPI_sint16;
    case Kind::Sint32:
        return CMPI_sint32;
    case Kind::Sint64:
        return CMPI_sint64;
    case Kind::Real32:
        return CMPI_real32;
    case Kind::Real64:
        return CMPI_real64;
    default:
        return CMPI_null;
    }
}

std::size_t scalarSize(Kind kind) {
    switch (kind) {
    case Kind::Boolean:
    case Kind::Uint8:
    case Kind::Sint8:
        return 1;
    case Kind::Uint16:
    case Kind::Sint16:
        return 2;
    case Kind::Uint32:
    case Kind::Sint32:
    case Kind::Real32:
        return 4;
    default:
        return 8;
    }
}

bool setArray(CMPIInstance* instance, const char* name, CMPIArray* array, CMPIType type) {
    if (array == nullptr)
        return false;
    const ArrayPtr owner(array);
    CMPIValue value{};
    value.array = array;
    return CMSetProperty(instance, name, &value, type).rc == CMPI_RC_OK;
}

bool setDateTime(CMPIInstance* instance, const char* name, CMPIDateTime* time) {
    if (time == nullptr)
        return false;
    CMPIValue value{};
    value.dateTime = time;
    return CMSetProperty(instance, name, &value, CMPI_dateTime).rc == CMPI_RC_OK;
}

bool setText(CMPIInstance* instance, const char* name, const char* text) {
    return CMSetProperty(instance, name, reinterpret_cast<const CMPIValue*>(text), CMPI_chars).rc ==
           CMPI_RC_OK;
}

bool setProperty(const CMPIBroker* broker, CMPIInstance* instance, const Property& property,
                 const void* record) {
    ComputedValue computed{};
    const void* field = static_cast<const char*>(record) + property.offset;
    if (property.compute != nullptr) {
        property.compute(record, &computed);
        field = &computed;
    }
    switch (property.kind) {
    case Kind::Text:
        return setText(instance, property.name, static_cast<const char*>(field));
    case Kind::TextRef: {
        const char* text = *static_cast<const char* const*>(field);
        return text == nullptr || setText(instance, property.name, text);
    }
    case Kind::Uint16List:
        return setArray(instance, property.name, PH_Dup_uint16_Array(broker, static_cast<const int*>(field)),
                        CMPI_uint16A);
    case Kind::Uint16ListRef:
        return setArray(instance, property.name,
                        PH_Dup_uint16_Array(broker, *static_cast<const int* const*>(field)), CMPI_uint16A);
    case Kind::Uint16Slots: {
        const auto* slots = static_cast<const std::uint16_t*>(field);
        return *slots == 0xFFFF ||
               setArray(instance, property.name, PH_DupArray_uint16(broker, slots, 0), CMPI_uint16A);
    }
    case Kind::DateTimeText: {
        const char* text = static_cast<const char*>(field);
        return *text == '\0' ||
               setDateTime(instance, property.name, CMNewDateTimeFromChars(broker, text, nullptr));
    }
    case Kind::DateTimeValue: {
        const std::uint64_t microseconds = static_cast<const DateTime*>(field)->microseconds;
        return setDateTime(instance, property.name,
                           microseconds == DateTime::none
                               ? CMNewDateTimeFromChars(broker, nullptr, nullptr)
                               : CMNewDateTimeFromBinary(broker, microseconds, false, nullptr));
    }
    case Kind::StringList: {
        char* const* texts = static_cast<char* const*>(field);
        return *texts == nullptr ||
               setArray(instance, property.name, PH_Dup_variable_string_Array(broker, texts), CMPI_stringA);
    }
    default: {
        CMPIValue value{};
        std::memcpy(&value, field, scalarSize(property.kind));
        return CMSetProperty(instance, property.name, &value, scalarType(property.kind)).rc == CMPI_RC_OK;
    }
    }
}

CMPIObjectPath* buildPath(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                          const void* record) {
    CMPIStatus status = success;
    const char* nameSpace = textOf(CMGetNameSpace(ref, &status));
    if (status.rc != CMPI_RC_OK)
        return nullptr;
    CMPIObjectPath* path = CMNewObjectPath(broker, nameSpace, family.name, &status);
    if (path == nullptr || status.rc != CMPI_RC_OK)
        return nullptr;
    for (const Property& key : family.properties) {
        if (!key.isKey)
            continue;
        const char* text = keyText(key, record);
        if (*text == '\0' ||
            CMAddKey(path, key.name, reinterpret_cast<const CMPIValue*>(text), CMPI_chars).rc != CMPI_RC_OK)
            return nullptr;
    }
    return path;
}

CMPIInstance* buildInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                            const char** properties, const void* record) {
    CMPIObjectPath* path = buildPath(family, broker, ref, record);
    if (path == nullptr)
        return nullptr;
    CMPIStatus status = success;
    CMPIInstance* instance = CMNewInstance(broker, path, &status);
    if (instance == nullptr || status.rc != CMPI_RC_OK)
        return nullptr;
    for (const Property& property : family.properties) {
        const bool wanted =
            property.isKey || ((properties == nullptr || ExistsInList(properties, property.name)) &&
                               (property.condition == nullptr || property.condition(record)));
        if (wanted && !setProperty(broker, instance, property, record))
            return nullptr;
    }
    return instance;
}

const Property& keyProperty(const ClassFamily& family, std::string_view name) {
    return *std::find_if(family.properties.begin(), family.properties.end(),
                         [&](const Property& property) { return property.isKey && name == property.name; });
}

bool keysMatch(const ClassFamily& family, const void* record, CMPIString** keyValues) {
    for (std::size_t i = 0; i < family.keys.size(); ++i) {
        const char* wanted = textOf(keyValues[i]);
        if (wanted == nullptr ||
            std::strcmp(keyText(keyProperty(family, family.keys[i]), record), wanted) != 0)
            return false;
    }
    return true;
}

bool collectMatching(const ClassFamily& family, RecordStore& store, CMPIString** keyValues) {
    for (std::size_t i = 0; i < family.keys.size(); ++i)
        if (keyValues == nullptr || keyValues[i] == nullptr)
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

} // namespace

int enumerateAll(const ClassFamily& family, void** records, int* count, int namesOnly) {
    RecordStore store(*records, *count, family.recordSize, family.properties);
    const int result =
        guarded(-1, [&] { return family.enumerate(store, namesOnly != 0 ? Detail::Names : Detail::All); });
    if (result == 0)
        store.commit();
    *count = store.committed();
    *records = store.release();
    return result == 0 ? 0 : -1;
}

int get(const ClassFamily& family, void** record, CMPIString** keyValues) {
    RecordStore store(nullptr, 0, family.recordSize, family.properties);
    const bool found = guarded(false, [&] { return collectMatching(family, store, keyValues); });
    *record = store.release();
    return found ? 0 : -1;
}

void clean(const ClassFamily& family, void** records, int count) {
    for (int i = 0; *records != nullptr && i < count; ++i)
        cleanRecord(family.properties, static_cast<char*>(*records) + family.recordSize * i);
    std::free(*records);
    *records = nullptr;
}

CMPIObjectPath* makePath(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                         const void* record, CMPIStatus* status) {
    CMPIObjectPath* path = buildPath(family, broker, ref, record);
    if (path == nullptr)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Make ObjectPath failed.");
    return path;
}

CMPIInstance* makeInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                           const char** properties, const void* record, CMPIStatus* status) {
    CMPIInstance* instance = guarded(static_cast<CMPIInstance*>(nullptr),
                                     [&] { return buildInstance(family, broker, ref, properties, record); });
    if (instance == nullptr)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Make instance failed.");
    return instance;
}

CMPIArray* instanceArray(const ClassFamily& family, const CMPIObjectPath* ref, const CMPIBroker* broker,
                         const char** properties) {
    RequestRecords records(family);
    if (!records.enumerate(Detail::All))
        return nullptr;
    CMPICount size = 0;
    for (int i = 0; i < records.count(); ++i)
        size += !records.skips(i);
    CMPIStatus status = success;
    ArrayPtr array(CMNewArray(broker, size, CMPI_instance, &status));
    if (array == nullptr || status.rc != CMPI_RC_OK)
        return nullptr;
    CMPICount position = 0;
    for (int i = 0; i < records.count(); ++i) {
        if (records.skips(i))
            continue;
        CMPIValue value{};
        value.inst = makeInstance(family, broker, ref, properties, records.at(i), nullptr);
        if (value.inst == nullptr ||
            CMSetArrayElementAt(array.get(), position++, &value, CMPI_instance).rc != CMPI_RC_OK)
            return nullptr;
    }
    return array.release();
}

void enumerateInstances(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                        const char** properties, const CMPIResult* result, CMPIStatus* status) {
    if (family.enumerate == nullptr)
        return fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "Enumerate Instances  not supported");
    RequestRecords records(family);
    bool done = records.enumerate(Detail::All);
    for (int i = 0; done && i < records.count(); ++i) {
        if (records.skips(i))
            continue;
        const CMPIInstance* instance = makeInstance(family, broker, ref, properties, records.at(i), nullptr);
        done = instance != nullptr && CMReturnInstance(result, instance).rc == CMPI_RC_OK;
    }
    if (!done)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance");
}

void enumerateNames(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                    const CMPIResult* result, CMPIStatus* status) {
    if (family.enumerate == nullptr)
        return fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "Enumerate Instance Names not supported");
    RequestRecords records(family);
    bool done = records.enumerate(Detail::Names);
    for (int i = 0; done && i < records.count(); ++i) {
        const CMPIObjectPath* path = makePath(family, broker, ref, records.at(i), nullptr);
        done = path != nullptr && CMReturnObjectPath(result, path).rc == CMPI_RC_OK;
    }
    if (!done)
        fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Enumerate Instance Names");
}

void getInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                 const char** properties, const CMPIResult* result, CMPIStatus* status) {
    if (family.enumerate == nullptr)
        return fail(broker, status, CMPI_RC_ERR_NOT_SUPPORTED, "Get Instance not supported");
    // What exactly is wrong with the keys never reaches the client from here.
    CMPIStatus keyStatus = success;
    CMPIString* keyValues[maxKeys] = {};
    RequestRecords records(family);
    if (CheckForValidObjectPath(broker, ref, family.keys.data(), keyValues,
                                static_cast<int>(family.keys.size()), &keyStatus) == 0 &&
        records.get(keyValues)) {
        const CMPIInstance* instance = makeInstance(family, broker, ref, properties, records.at(0), nullptr);
        if (instance != nullptr && CMReturnInstance(result, instance).rc == CMPI_RC_OK)
            return;
    }
    fail(broker, status, CMPI_RC_ERR_FAILED, "Failed to Get Instance");
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

} // namespace ph::engine
