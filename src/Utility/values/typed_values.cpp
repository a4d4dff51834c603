// Values of a client's request as native numbers, booleans and strings.
#include "provider_helper/utility.h"

#include <cctype>
#include <cmpimacs.h>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <strings.h>
#include <type_traits>

namespace ph {
namespace {

// A missing text is a value too: 0, false or no string.
const char* textOf(const CMPIData& data) {
    return data.value.string != nullptr ? CMGetCharsPtr(data.value.string, nullptr) : nullptr;
}

// Finds the text of a string that stands for an integer, NULL for 0. Returns false when it stands for none.
bool integerText(const CMPIData& data, int signedFlag, const char*& text) {
    text = data.type == CMPI_string ? textOf(data) : nullptr;
    return data.type == CMPI_string && (text == nullptr || IsValidIntValue(text, signedFlag) == 1);
}

// From a string the 64-bit getters take 32 bits: clients rely on larger numbers being refused.
template <class Native>
using StringRange =
    std::conditional_t<sizeof(Native) == 8,
                       std::conditional_t<std::is_signed_v<Native>, std::int32_t, std::uint32_t>, Native>;

template <class Native>
int getInteger(const CMPIData& data, CMPIType nativeType, Native* result) {
    if (data.type == nativeType) {
        std::memcpy(result, &data.value, sizeof(Native));
        return 0;
    }
    using Wide = std::conditional_t<std::is_signed_v<Native>, std::int64_t, std::uint64_t>;
    using Range = std::numeric_limits<StringRange<Native>>;
    Wide number = 0;
    int parsed = -1;
    if constexpr (std::is_signed_v<Native>)
        parsed = ParseToSignedInt(data, &number);
    else
        parsed = ParseToUnsignedInt(data, &number);
    if (parsed != 0 || number < static_cast<Wide>(Range::min()) || number > static_cast<Wide>(Range::max()))
        return -1;
    *result = static_cast<Native>(number);
    return 0;
}

// Converts the elements of an array value into a zeroed heap buffer with `slot` bytes for each.
template <class Element, class Convert>
int getArray(const CMPIData& data, Element** buffer, CMPICount* count, std::size_t slot, Convert convert) {
    if (data.value.array == nullptr)
        return 0;
    *count = CMGetArrayCount(data.value.array, nullptr);
    *buffer = static_cast<Element*>(std::calloc(*count > 0 ? *count : 1, slot));
    if (*buffer == nullptr)
        return -1;
    for (CMPICount i = 0; i < *count; ++i)
        if (convert(CMGetArrayElementAt(data.value.array, i, nullptr), (*buffer)[i]) != 0) {
            std::free(*buffer);
            *buffer = nullptr;
            return -1;
        }
    return 0;
}

} // namespace
} // namespace ph

int IsValidIntValue(const char* text, int signedFlag) {
    if (text == nullptr || (signedFlag == 1 && *text != '+' && *text != '-'))
        return 0;
    text += signedFlag == 1;
    const bool isHex = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    for (text += isHex ? 2 : 0; *text != '\0'; ++text) {
        const auto c = static_cast<unsigned char>(*text);
        if (isHex ? !std::isxdigit(c) : !std::isdigit(c))
            return 0;
    }
    return 1;
}

int ParseToUnsignedInt(CMPIData data, uint64_t* result) {
    const char* text = nullptr;
    if (!ph::integerText(data, 0, text))
        return -1;
    *result = text != nullptr ? std::strtoull(text, nullptr, 0) : 0;
    return 0;
}

int ParseToSignedInt(CMPIData data, int64_t* result) {
    const char* text = nullptr;
    if (!ph::integerText(data, 1, text))
        return -1;
    *result = text != nullptr ? std::strtoll(text, nullptr, 0) : 0;
    return 0;
}

int GetUINT8Value(CMPIData data, uint8_t* result) {
    return ph::getInteger(data, CMPI_uint8, result);
}

int GetUINT16Value(CMPIData data, uint16_t* result) {
    return ph::getInteger(data, CMPI_uint16, result);
}

int GetUINT32Value(CMPIData data, uint32_t* result) {
    return ph::getInteger(data, CMPI_uint32, result);
}

int GetUINT64Value(CMPIData data, uint64_t* result) {
    return ph::getInteger(data, CMPI_uint64, result);
}

int GetSINT8Value(CMPIData data, int8_t* result) {
    return ph::getInteger(data, CMPI_sint8, result);
}

int GetSINT16Value(CMPIData data, int16_t* result) {
    return ph::getInteger(data, CMPI_sint16, result);
}

int GetSINT32Value(CMPIData data, int32_t* result) {
    return ph::getInteger(data, CMPI_sint32, result);
}

int GetSINT64Value(CMPIData data, int64_t* result) {
    return ph::getInteger(data, CMPI_sint64, result);
}

int GetBoolValue(CMPIData data, CMPIBoolean* result) {
    if (data.type == CMPI_boolean) {
        *result = data.value.boolean;
        return 0;
    }
    if (data.type != CMPI_string)
        return -1;
    const char* text = ph::textOf(data);
    if (text != nullptr && strcasecmp(text, "true") != 0 && strcasecmp(text, "false") != 0)
        return -1;
    *result = text != nullptr && strcasecmp(text, "true") == 0;
    return 0;
}

int GetStringValue(CMPIData data, CMPIString** result) {
    *result = nullptr;
    if (data.type != CMPI_string)
        return -1;
    if (ph::textOf(data) != nullptr)
        *result = data.value.string;
    return 0;
}

int GetUINT16AValue(CMPIData data, uint16_t** buffer, CMPICount* count) {
    if ((data.type & CMPI_ARRAY) == 0)
        return -1;
    return ph::getArray(data, buffer, count, sizeof(uint16_t), [](CMPIData element, uint16_t& number) {
        // Some object managers hand every integer element over as uint64: its low 16 bits count.
        if (element.type == CMPI_uint64) {
            element.type = CMPI_uint16;
            element.value.uint16 = static_cast<CMPIUint16>(element.value.uint64);
        }
        return GetUINT16Value(element, &number);
    });
}

int GetStringAValue(CMPIData data, CMPIString*** buffer, CMPICount* count) {
    constexpr std::size_t slot = 8; // callers of both widths count on eight bytes
    if (data.type != CMPI_stringA && data.type != CMPI_ARRAY)
        return -1;
    return ph::getArray(data, buffer, count, slot, [](const CMPIData& element, CMPIString*& string) {
        return GetStringValue(element, &string);
    });
}
