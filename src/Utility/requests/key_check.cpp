// The keys of a request's object path.
#include "provider_helper/utility.h"
#include "Utility/requests/request.h"
#include "Utility/requests/request_status.h"

#include <algorithm>
#include <cmpimacs.h>
#include <cstring>

namespace ph {
namespace {

bool isInteger(CMPIType type) {
    return type >= CMPI_uint8 && type <= CMPI_sint64 && type % 0x10 == 0;
}

Refusal storeKey(const CMPIData& key, CMPIString** slot) {
    if (key.type != CMPI_string)
        return {};
    const char* text = key.value.string != nullptr ? CMGetCharsPtr(key.value.string, nullptr) : nullptr;
    if (text == nullptr)
        return {CMPI_RC_ERR_INVALID_PARAMETER, "Key Value Missing"};
    if (std::strpbrk(text, "\"'") != nullptr)
        return {CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Value"};
    *slot = key.value.string;
    return {};
}

Refusal checkKeys(const CMPIObjectPath* ref, const char* const* keyNames, CMPIString** keyValues,
                  int keyCount) {
    const int count = static_cast<int>(CMGetKeyCount(ref, nullptr));
    if (count < keyCount)
        return {CMPI_RC_ERR_FAILED, "Key Property Missing"};
    for (int i = 0; i < count; ++i) {
        CMPIString* name = nullptr;
        const CMPIData key = CMGetKeyAt(ref, static_cast<CMPICount>(i), &name, nullptr);
        if (key.type != CMPI_string && !isInteger(key.type))
            return {CMPI_RC_ERR_TYPE_MISMATCH, "Invalid Data Type"};
        const char* nameText = name != nullptr ? CMGetCharsPtr(name, nullptr) : nullptr;
        bool expected = false;
        for (int j = 0; j < keyCount; ++j) {
            if (nameText == nullptr || std::strcmp(nameText, keyNames[j]) != 0)
                continue;
            expected = true;
            if (const Refusal refusal = storeKey(key, &keyValues[j]); refusal.message != nullptr)
                return refusal;
        }
        if (!expected)
            return {CMPI_RC_ERR_NO_SUCH_PROPERTY, "No Such Key Property"};
    }
    return {};
}

} // namespace

CMPIStatus KeyValues::read(const CMPIBroker* broker, const CMPIObjectPath* ref,
                           std::span<const char* const> keys) {
    CMPIStatus status = success;
    CheckForValidObjectPath(broker, ref, keys.data(), values_, static_cast<int>(keys.size()), &status);
    return status;
}

bool KeyValues::areRead(const CMPIBroker* broker, const CMPIObjectPath* ref,
                        std::span<const char* const> keys) {
    return read(broker, ref, keys).rc == CMPI_RC_OK;
}

void KeyValues::assign(CMPIString* const* values, std::size_t count) {
    if (values != nullptr)
        std::copy_n(values, count, values_);
}

} // namespace ph

int CheckForValidObjectPath(const CMPIBroker* broker, const CMPIObjectPath* ref, const char* const* keyNames,
                            CMPIString** keyValues, int keyCount, CMPIStatus* status) {
    const ph::Refusal refusal = ph::checkKeys(ref, keyNames, keyValues, keyCount);
    if (refusal.message == nullptr)
        return 0;
    ph::fail(broker, status, refusal.code, refusal.message);
    return -1;
}
