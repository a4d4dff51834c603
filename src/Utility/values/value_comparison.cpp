#include "Utility/values/value_comparison.h"

#include "provider_helper/utility.h"

#include <cmpimacs.h>
#include <cstring>

namespace ph {
namespace {

template <class Native>
bool match(int (*getter)(CMPIData, Native*), const CMPIData& data, Native wanted) {
    Native number{};
    return getter(data, &number) == 0 && number == wanted;
}

bool sameText(const CMPIString* a, const CMPIString* b) {
    const char* textA = a != nullptr ? CMGetCharsPtr(a, nullptr) : nullptr;
    const char* textB = b != nullptr ? CMGetCharsPtr(b, nullptr) : nullptr;
    return textA == nullptr || textB == nullptr ? textA == textB : std::strcmp(textA, textB) == 0;
}

bool sameDateTime(const CMPIDateTime* a, const CMPIDateTime* b) {
    if (a == nullptr || b == nullptr)
        return a == b;
    return CMGetBinaryFormat(a, nullptr) == CMGetBinaryFormat(b, nullptr);
}

bool sameOfType(CMPIType type, const CMPIValue& a, const CMPIValue& b) {
    switch (type) {
    case CMPI_string:
        return sameText(a.string, b.string);
    case CMPI_dateTime:
        return sameDateTime(a.dateTime, b.dateTime);
    case CMPI_real32:
        return a.real32 == b.real32;
    case CMPI_real64:
        return a.real64 == b.real64;
    case CMPI_boolean:
    case CMPI_uint8:
    case CMPI_sint8:
        return a.uint8 == b.uint8;
    case CMPI_uint16:
    case CMPI_sint16:
        return a.uint16 == b.uint16;
    case CMPI_uint32:
    case CMPI_sint32:
        return a.uint32 == b.uint32;
    case CMPI_uint64:
    case CMPI_sint64:
        return a.uint64 == b.uint64;
    default:
        return false;
    }
}

} // namespace

int MatchDataValue(const CMPIData& data, CMPIType type, const CMPIValue& value) {
    switch (type) {
    case CMPI_boolean:
        return match(GetBoolValue, data, value.boolean);
    case CMPI_uint8:
        return match(GetUINT8Value, data, value.uint8);
    case CMPI_uint16:
        return match(GetUINT16Value, data, value.uint16);
    case CMPI_uint32:
        return match<uint32_t>(GetUINT32Value, data, value.uint32);
    case CMPI_uint64:
        return match<uint64_t>(GetUINT64Value, data, value.uint64);
    case CMPI_sint8:
        return match<int8_t>(GetSINT8Value, data, value.sint8);
    case CMPI_sint16:
        return match(GetSINT16Value, data, value.sint16);
    case CMPI_sint32:
        return match<int32_t>(GetSINT32Value, data, value.sint32);
    case CMPI_sint64:
        return match<int64_t>(GetSINT64Value, data, value.sint64);
    default:
        return 0;
    }
}

int CompareDataValues(const CMPIData& a, const CMPIData& b) {
    if ((a.state & CMPI_nullValue) != 0)
        return (b.state & CMPI_nullValue) != 0;
    if (a.state != CMPI_goodValue || b.state != CMPI_goodValue)
        return 0;
    if (a.type == b.type)
        return sameOfType(a.type, a.value, b.value);
    if (a.type == CMPI_string)
        return MatchDataValue(a, b.type, b.value);
    return b.type == CMPI_string ? MatchDataValue(b, a.type, a.value) : 0;
}

bool sameValue(const CMPIData& a, const CMPIData& b) {
    const bool arrays = (a.type & b.type & CMPI_ARRAY) != 0 && a.state == CMPI_goodValue &&
                        b.state == CMPI_goodValue && a.value.array != nullptr && b.value.array != nullptr;
    if (!arrays)
        return CompareDataValues(a, b) == 1;
    const CMPICount count = CMGetArrayCount(a.value.array, nullptr);
    if (count != CMGetArrayCount(b.value.array, nullptr))
        return false;
    for (CMPICount i = 0; i < count; ++i)
        if (CompareDataValues(CMGetArrayElementAt(a.value.array, i, nullptr),
                              CMGetArrayElementAt(b.value.array, i, nullptr)) == 0)
            return false;
    return true;
}

bool isZero(const CMPIData& data) {
    if ((data.state & CMPI_nullValue) != 0)
        return true;
    switch (data.type) {
    case CMPI_real32:
        return data.value.real32 == 0;
    case CMPI_real64:
        return data.value.real64 == 0;
    case CMPI_boolean:
    case CMPI_uint8:
    case CMPI_sint8:
        return data.value.uint8 == 0;
    case CMPI_uint16:
    case CMPI_sint16:
    case CMPI_char16:
        return data.value.uint16 == 0;
    case CMPI_uint32:
    case CMPI_sint32:
        return data.value.uint32 == 0;
    case CMPI_uint64:
    case CMPI_sint64:
        return data.value.uint64 == 0;
    default: // everything else is a pointer
        return data.value.string == nullptr;
    }
}

} // namespace ph
