// PH_GetInstArray: a class's instances by the name of the class, for association providers.
#include "provider_helper/utility.h"
#include "Utility/back-ends/debug_log.h"
#include "Utility/back-ends/dynamic_library.h"
#include "Utility/requests/request_texts.h"

#include <cmpimacs.h>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <mutex>
#include <strings.h>

namespace ph {
namespace {

using GetInstArray = CMPIArray* (*)(const CMPIObjectPath*, const CMPIBroker*, const CMPIContext*,
                                    const char**);
// Writes the class name that the object manager has for a prefix of its own. Returns 0 for success.
using ClassNameForPrefix = int (*)(const CMPIBroker*, const CMPIObjectPath*, char name[256]);

constexpr std::size_t symbolSize = 256;
constexpr std::size_t prefixLength = 4; // "CIM_"

// Finds the array function of a class in `library`; nullptr where it has none.
GetInstArray findGetter(const DynamicLibrary& library, const char* prefix, const char* name) {
    char symbol[symbolSize];
    const int length = std::snprintf(symbol, sizeof(symbol), "%s%s_GetInstArray", prefix, name);
    return length < static_cast<int>(sizeof(symbol)) ? library.find<GetInstArray>(symbol) : nullptr;
}

const char* withoutPrefix(const char* className) {
    return className + strnlen(className, prefixLength);
}

GetInstArray findOwnGetter(const DynamicLibrary& self, const CMPIBroker* broker, const CMPIObjectPath* ref,
                           const char* className) {
    if (const GetInstArray getter = findGetter(self, "PH_", withoutPrefix(className)))
        return getter;
    const DynamicLibrary objectManager("/usr/local/lib/libqom.so");
    const auto classNameFor =
        objectManager.find<ClassNameForPrefix>("qom_get_classname_for_arbitrary_prefix");
    char name[256] = "";
    if (classNameFor == nullptr || classNameFor(broker, ref, name) != 0)
        return nullptr;
    name[sizeof(name) - 1] = '\0';
    return name[0] != '\0' ? findGetter(self, "PH_", name) : nullptr;
}

// Arrays of classes that are costly to collect and asked for once per associated element.
struct CacheEntry {
    char className[128];
    CMPIArray* array; // a clone that the cache owns
    time_t stored;
};

constexpr time_t cacheSeconds = 180;

// Requests of several threads take turns at the entries, not at collecting the arrays.
std::mutex cacheMutex;

CacheEntry cache[] = {
    {"CIM_Sensor", nullptr, 0},
    {"CIM_NumericSensor", nullptr, 0},
    {"CIM_DNSSettingData", nullptr, 0},
    {"CIM_DNSProtocolEndpoint", nullptr, 0},
    {"CIM_DHCPProtocolEndpoint", nullptr, 0},
    {"CIM_DHCPSettingData", nullptr, 0},
};

CacheEntry* findEntry(const char* className) {
    if (g_corefeatures.words[CORE_FEATURE_INSTANCE_ARRAY_CACHE] != 1)
        return nullptr;
    for (CacheEntry& entry : cache)
        if (strcasecmp(entry.className, className) == 0)
            return &entry;
    return nullptr;
}

// A clone of an array that is not too old; nullptr where there is none.
CMPIArray* freshClone(const CacheEntry& entry) {
    const std::lock_guard lock(cacheMutex);
    const time_t now = std::time(nullptr);
    const bool isFresh = entry.array != nullptr && now >= entry.stored && now - entry.stored < cacheSeconds;
    return isFresh ? CMClone(entry.array, nullptr) : nullptr;
}

void store(CacheEntry& entry, const CMPIArray* array) {
    const std::lock_guard lock(cacheMutex);
    if (entry.array != nullptr)
        CMRelease(entry.array);
    entry.array = CMClone(array, nullptr);
    entry.stored = std::time(nullptr);
}

} // namespace
} // namespace ph

CMPIArray* PH_GetInstArray(const CMPIObjectPath* ref, const CMPIBroker* broker, const CMPIContext* context,
                           const char** properties) {
    const char* className = ph::textOf(CMGetClassName(ref, nullptr));
    if (className == nullptr)
        return nullptr;

    const ph::DynamicLibrary oem("/usr/local/lib/libOEMProviderHelper.so");
    if (const ph::GetInstArray getter = ph::findGetter(oem, "PH_OEM_", ph::withoutPrefix(className)))
        return getter(ref, broker, context, properties);

    const ph::DynamicLibrary self("/usr/local/lib/libProviderHelper.so");
    const ph::GetInstArray getter = ph::findOwnGetter(self, broker, ref, className);
    if (getter == nullptr)
        return nullptr;

    ph::CacheEntry* entry = ph::findEntry(className);
    if (entry == nullptr)
        return getter(ref, broker, context, properties);
    if (CMPIArray* const cached = ph::freshClone(*entry)) {
        PH_LOG("\n %s Cached \n", className);
        return cached;
    }
    PH_LOG("\n %s Fetching New \n", className);
    CMPIArray* array = getter(ref, broker, context, properties);
    if (array != nullptr)
        ph::store(*entry, array);
    return array;
}
