#include "indications/common_requests.h"

#include "Utility/requests/request_texts.h"

#include <cstring>

namespace ph::indications {

bool hasConstantKeys(const CMPIObjectPath* ref, const char* className) {
    char systemName[256] = "";
    if (PH_GetSPSystemName(systemName) != 0)
        return false;
    const struct {
        const char* name;
        const char* value;
    } constants[] = {{"SystemCreationClassName", processorClass},
                     {"CreationClassName", className},
                     {"SystemName", systemName}};
    const CMPICount count = CMGetKeyCount(ref, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString* keyName = nullptr;
        const CMPIData key = CMGetKeyAt(ref, i, &keyName, nullptr);
        const char* const name = textOf(keyName);
        const char* const value = textOf(key);
        if (name == nullptr || value == nullptr)
            return false;
        for (const auto& constant : constants)
            if (std::strcmp(name, constant.name) == 0 && std::strcmp(value, constant.value) != 0)
                return false;
    }
    return true;
}

bool readKeys(const Request& request, std::span<const char* const> keys, KeyValues& values) {
    if (!values.areRead(request.broker, request.ref, keys))
        return false;
    for (std::size_t i = 0; i < keys.size(); ++i)
        if (values[i] == nullptr)
            return false;
    return true;
}

CMPIStatus returnPath(const Request& request) {
    return request.result != nullptr ? CMReturnObjectPath(request.result, request.ref) : success;
}

} // namespace ph::indications
