// One class of the library: its data, what is peculiar to it, and the exported functions that follow from
// them.
//
//     namespace ph::x {
//     namespace {
//     using Record = XRecord;
//     constexpr Property properties[] = {PH_KEY(Record, Name), PH_PROPERTY(Record, EnabledState)};
//     constexpr ClassDefinition<Record> definition{.name = "CIM_X", .keys = g_XKeyList, ...};
//     } // namespace
//     } // namespace ph::x
//     PH_EXPORT_CLASS_FAMILY(X, XRecord, ph::x::definition)
//
// A namespace of its own lets every class use these names, in files that are compiled together.
// The engine (class_engine.cpp) runs every class from its ClassFamily, the same description without types.
#pragma once

#include "provider_helper/utility.h"
#include "Utility/engine/method.h"
#include "Utility/engine/property.h"
#include "Utility/engine/record_array.h"
#include "Utility/requests/request.h"

#include <cmpimacs.h>
#include <functional>
#include <span>
#include <string_view>

namespace ph {

enum class Detail { Names, All }; // what an enumeration fills: keys only, or everything

// How a class answers a request for one of its methods. Clients know classes by what they say, and in which
// order.
struct Invocation {
    enum class Keys {
        First,     // before the method's name
        AfterName, // behind it
        ByMethod,  // the method reads them when it needs them
        None       // the class of the path is all that counts, and is checked with the name
    };
    Keys keys = Keys::First;
    Refusal badKeys{}; // without a message: what the key check says of them
    Refusal unknownMethod{CMPI_RC_ERR_METHOD_NOT_FOUND, "No such method available"};
    // Whether the object that the keys name is there, asked when keys and name were checked; nullptr leaves
    // that to the method.
    bool (*exists)(CMPIString* const* keys) = nullptr;
    bool isLookedUp = false; // in its place: the frame asks the class for the names of its instances
    Refusal missing{};
    // A request is taken up before it is checked: the job's path is made first, and a refusal has a value.
    bool isTakenUpFirst = false;
    // Who closes the result. Where it is not the class, it is the provider.
    enum class Closes { Never, WhenDone, Always };
    Closes closes = Closes::Never;
};

// What a class states of itself. The first five are needed; the others have defaults.
template <class Record>
struct ClassDefinition {
    const char* name;       // "CIM_…"
    const char* superclass; // for the class's schema; nullptr: none
    const char* source;     // for the class's description: IPMI commands, tables and files that tell of it
    std::span<const char* const> keys;
    std::span<const Property> properties; // in publication order, keys first
    // Appends the records and returns 0; after -1, nothing counts as appended. A class without it is only
    // reached through others: it refuses to be enumerated and got.
    int (*enumerate)(RecordArray<Record>& records, Detail detail) = nullptr;
    // A failed enumeration frees the records that the caller's array had before, too.
    bool failureFreesAll = false;
    // For requests that take one record after the other: a class with more than fit in memory at once, or one that
    // gets the next while an instance is made. It hands each to `take`, and ends with -1 when that returns false. What
    // records own it frees itself; a class whose records own texts has `enumerate`, too.
    int (*stream)(const std::function<bool(const Record&)>& take, Detail detail) = nullptr;
    // Appends the one record with these key values (not NULL, in key-list order) or a likely one: the keys
    // are compared afterwards. Without it the whole enumeration is searched.
    int (*get)(RecordArray<Record>& records, CMPIString** keyValues) = nullptr;
    // Returns true for a record that has a path but no instance at present.
    bool (*skip)(const Record& record) = nullptr;
    RequestHandler modify = nullptr;
    RequestHandler create = nullptr;
    RequestHandler remove = nullptr;
    std::span<const Method> methods = {};
    Invocation invocation = {}; // of the methods
    bool isInInterop = false;   // clients find it in the interop namespace, too
};

struct ClassFamily {
    const char* name;
    const char* superclass;
    const char* source;
    std::span<const char* const> keys;
    std::span<const Property> properties;
    std::size_t recordSize;
    int (*enumerate)(RecordStore& records, Detail detail); // a class that streams has it too
    bool failureFreesAll;
    int (*stream)(const std::function<bool(const void*)>& take, Detail detail);
    int (*get)(RecordStore& records, CMPIString** keyValues);
    bool (*skip)(const void* record);
    RequestHandler modify;
    RequestHandler create;
    RequestHandler remove;
    std::span<const Method> methods;
    Invocation invocation;
    bool isInInterop;
};

namespace detail {

// Every name of the key list is a key property held as text, as CheckForValidObjectPath takes no reference
// for a key; and no other property is a key.
consteval bool keysDescribed(std::span<const char* const> keys, std::span<const Property> properties) {
    std::size_t described = 0;
    for (const Property& property : properties) {
        if (!property.isKey)
            continue;
        bool listed = false;
        for (const char* key : keys)
            listed = listed || std::string_view(key) == property.name;
        if (!listed || property.kind != Kind::Text)
            return false;
        ++described;
    }
    return described == keys.size() && described <= maxKeys;
}

consteval bool ownsTexts(std::span<const Property> properties) {
    for (const Property& property : properties)
        if (property.kind == Kind::StringList)
            return true;
    return false;
}

template <class Record, const ClassDefinition<Record>& definition>
constexpr ClassFamily eraseTypes() {
    static_assert(keysDescribed(definition.keys, definition.properties));
    static_assert(definition.source != nullptr, "The class's description says where its values come from.");
    static_assert(definition.stream == nullptr || definition.enumerate != nullptr ||
                  !ownsTexts(definition.properties));
    ClassFamily family{definition.name,
                       definition.superclass,
                       definition.source,
                       definition.keys,
                       definition.properties,
                       sizeof(Record),
                       nullptr,
                       definition.failureFreesAll,
                       nullptr,
                       nullptr,
                       nullptr,
                       definition.modify,
                       definition.create,
                       definition.remove,
                       definition.methods,
                       definition.invocation,
                       definition.isInInterop};
    if constexpr (definition.enumerate != nullptr)
        family.enumerate = [](RecordStore& store, Detail detail) {
            RecordArray<Record> records(store);
            return definition.enumerate(records, detail);
        };
    if constexpr (definition.stream != nullptr) {
        family.stream = [](const std::function<bool(const void*)>& take, Detail detail) {
            return definition.stream([&](const Record& record) { return take(&record); }, detail);
        };
    }
    if constexpr (definition.stream != nullptr && definition.enumerate == nullptr)
        family.enumerate = [](RecordStore& store, Detail detail) {
            RecordArray<Record> records(store);
            return definition.stream(
                [&](const Record& record) {
                    Record* copy = records.append();
                    return copy != nullptr && (*copy = record, true);
                },
                detail);
        };
    if constexpr (definition.get != nullptr)
        family.get = [](RecordStore& store, CMPIString** keyValues) {
            RecordArray<Record> records(store);
            return definition.get(records, keyValues);
        };
    if constexpr (definition.skip != nullptr)
        family.skip = [](const void* record) { return definition.skip(*static_cast<const Record*>(record)); };
    return family;
}

} // namespace detail

// The operations of a class family, see PH_DECLARE_CLASS_FAMILY (provider_helper/utility.h). None throws.
namespace engine {

// The first three have the address of the caller's typed pointer.
int enumerateAll(const ClassFamily& family, void* records, int* count, int namesOnly);
int get(const ClassFamily& family, void* record, CMPIString** keyValues);
void clean(const ClassFamily& family, void* records, int count);
// Returns whether the class has the instance that these keys name. Only names are enumerated.
bool hasInstance(const ClassFamily& family, CMPIString** keyValues);
CMPIObjectPath* makePath(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                         const void* record, CMPIStatus* status);
CMPIInstance* makeInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                           const char** properties, const void* record, CMPIStatus* status);
CMPIArray* instanceArray(const ClassFamily& family, const CMPIObjectPath* ref, const CMPIBroker* broker,
                         const char** properties);
void enumerateInstances(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                        const char** properties, const CMPIResult* result, CMPIStatus* status);
void enumerateNames(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                    const CMPIResult* result, CMPIStatus* status);
void getInstance(const ClassFamily& family, const CMPIBroker* broker, const CMPIObjectPath* ref,
                 const char** properties, const CMPIResult* result, CMPIStatus* status);
// A class without a handler refuses with 7 (not supported).
CMPIStatus modify(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref, const CMPIInstance* instance,
                  const char** properties);
CMPIStatus create(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref, const CMPIInstance* instance);
CMPIStatus remove(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref);
// Carries out the method that the request names.
CMPIStatus invoke(const ClassFamily& family, const CMPIBroker* broker, const CMPIContext* context,
                  const CMPIResult* result, const CMPIObjectPath* ref, const char* method, const CMPIArgs* in,
                  CMPIArgs* out);
// Carries out this method for an exported function of its own, with these keys where the class reads them
// first. Sets the status, which may be NULL, to what is wrong.
MethodAnswer carryOut(const ClassFamily& family, const Method& method, const Request& request,
                      CMPIString** keys, CMPIStatus* status);

} // namespace engine

inline constexpr Refusal noSuchInstance{CMPI_RC_ERR_NOT_FOUND,
                                        "There is no such instance, or it cannot be read"};

} // namespace ph

// The exported functions of class CIM_X, and ph::family_X for the list of all classes.
#define PH_EXPORT_CLASS_FAMILY(X, Record, definition)                                                        \
    PH_DEFINE_CLASS_FAMILY(X, Record, definition)                                                            \
    PH_EXPORT_CLASS_RECORDS(X, Record)                                                                       \
    PH_EXPORT_CLASS_OBJECTS(X, Record)                                                                       \
    PH_EXPORT_CLASS_REQUESTS(X)

// The same for a class whose instances are only reached through others: nothing enumerates its records.
#define PH_EXPORT_EMBEDDED_CLASS_FAMILY(X, Record, definition)                                               \
    PH_DEFINE_CLASS_FAMILY(X, Record, definition)                                                            \
    PH_EXPORT_CLASS_OBJECTS(X, Record)                                                                       \
    PH_EXPORT_CLASS_REQUESTS(X)

#define PH_DEFINE_CLASS_FAMILY(X, Record, definition)                                                        \
    namespace ph {                                                                                           \
    extern constinit const ClassFamily family_##X = detail::eraseTypes<Record, definition>();                \
    }

#define PH_EXPORT_CLASS_RECORDS(X, Record)                                                                   \
    int PH_Enum_All_##X(Record** records, int* count, int namesOnly) {                                       \
        return ph::engine::enumerateAll(ph::family_##X, records, count, namesOnly);                          \
    }                                                                                                        \
    int PH_Get_##X(Record** record, CMPIString** keyValues) {                                                \
        return ph::engine::get(ph::family_##X, record, keyValues);                                           \
    }                                                                                                        \
    void PH_Clean_##X(Record** records, int count) {                                                         \
        ph::engine::clean(ph::family_##X, records, count);                                                   \
    }                                                                                                        \
    CMPIArray* PH_##X##_GetInstArray(const CMPIObjectPath* ref, const CMPIBroker* broker,                    \
                                     const CMPIContext*, const char** properties) {                          \
        return ph::engine::instanceArray(ph::family_##X, ref, broker, properties);                           \
    }

#define PH_EXPORT_CLASS_OBJECTS(X, Record)                                                                   \
    CMPIObjectPath* PH_MakePath_##X(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* ref, \
                                    const Record* record, CMPIStatus* status) {                              \
        return ph::engine::makePath(ph::family_##X, broker, ref, record, status);                            \
    }                                                                                                        \
    CMPIInstance* PH_MakeInst_##X(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* ref,   \
                                  const char** properties, const Record* record, int, int,                   \
                                  CMPIStatus* status) {                                                      \
        return ph::engine::makeInstance(ph::family_##X, broker, ref, properties, record, status);            \
    }

// Keeps the compiler from guarding the stack of functions that have no buffer on it; there are hundreds of them.
#define PH_PASSES_ON __attribute__((no_stack_protector))

#define PH_EXPORT_CLASS_REQUESTS(X)                                                                          \
    void PH_EI_##X(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* ref,                  \
                   const char** properties, const CMPIResult* result, CMPIStatus* status) {                  \
        ph::engine::enumerateInstances(ph::family_##X, broker, ref, properties, result, status);             \
    }                                                                                                        \
    void PH_EIN_##X(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* ref,                 \
                    const CMPIResult* result, CMPIStatus* status) {                                          \
        ph::engine::enumerateNames(ph::family_##X, broker, ref, result, status);                             \
    }                                                                                                        \
    void PH_GI_##X(const CMPIBroker* broker, const CMPIContext*, const CMPIObjectPath* ref,                  \
                   const char** properties, const CMPIResult* result, CMPIStatus* status) {                  \
        ph::engine::getInstance(ph::family_##X, broker, ref, properties, result, status);                    \
    }                                                                                                        \
    PH_PASSES_ON CMPIStatus PH_MI_##X(const CMPIBroker* broker, const CMPIContext* context,                  \
                                      const CMPIResult* result, const CMPIObjectPath* ref,                   \
                                      const CMPIInstance* instance, const char** properties) {               \
        return ph::engine::modify(ph::family_##X, broker, context, result, ref, instance, properties);       \
    }                                                                                                        \
    PH_PASSES_ON CMPIStatus PH_CI_##X(const CMPIBroker* broker, const CMPIContext* context,                  \
                                      const CMPIResult* result, const CMPIObjectPath* ref,                   \
                                      const CMPIInstance* instance) {                                        \
        return ph::engine::create(ph::family_##X, broker, context, result, ref, instance);                   \
    }                                                                                                        \
    PH_PASSES_ON CMPIStatus PH_DI_##X(const CMPIBroker* broker, const CMPIContext* context,                  \
                                      const CMPIResult* result, const CMPIObjectPath* ref) {                 \
        return ph::engine::remove(ph::family_##X, broker, context, result, ref);                             \
    }                                                                                                        \
    PH_PASSES_ON CMPIStatus PH_IM_##X(const CMPIBroker* broker, const CMPIContext* context,                  \
                                      const CMPIResult* result, const CMPIObjectPath* ref,                   \
                                      const char* method, const CMPIArgs* in, CMPIArgs* out) {               \
        return ph::engine::invoke(ph::family_##X, broker, context, result, ref, method, in, out);            \
    }
