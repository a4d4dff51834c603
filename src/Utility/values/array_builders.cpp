// Native lists and tables as CMPI arrays.
#include "provider_helper/utility.h"
#include "Utility/values/refused_type.h"

#include <cmpimacs.h>
#include <cstring>
#include <limits>

namespace {

// Makes an array of `size` elements; setElement(array, i) sets element i and says whether it could.
template <class SetElement>
CMPIArray* buildArray(const CMPIBroker* broker, int size, CMPIType type, SetElement setElement) {
    if (size < 0)
        return nullptr;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIArray* array = CMNewArray(broker, static_cast<CMPICount>(size), type, &status);
    if (array == nullptr || status.rc != CMPI_RC_OK)
        return nullptr;
    for (CMPICount i = 0; i < static_cast<CMPICount>(size); ++i)
        if (setElement(array, i).rc != CMPI_RC_OK) {
            CMRelease(array);
            return nullptr;
        }
    return array;
}

template <class Native>
CMPIStatus setElement(CMPIArray* array, CMPICount index, Native native, CMPIType type) {
    CMPIValue value{};
    std::memcpy(&value, &native, sizeof(native));
    return CMSetArrayElementAt(array, index, &value, type);
}

// Some brokers take no chars in an array of strings; they get the text as a string of theirs. Their arrays may
// refer to it: it is the broker's to release.
CMPIStatus setText(const CMPIBroker* broker, CMPIArray* array, CMPICount index, const char* text) {
    const CMPIStatus status =
        CMSetArrayElementAt(array, index, reinterpret_cast<const CMPIValue*>(text), CMPI_chars);
    if (!ph::isRefusedType(status.rc))
        return status;
    CMPIValue value{};
    value.string = CMNewString(broker, text, nullptr);
    return value.string != nullptr ? CMSetArrayElementAt(array, index, &value, CMPI_string) : status;
}

// PH_DupArray_*: all bits set end the list.
template <class Native>
CMPIArray* dupList(const CMPIBroker* broker, const Native* list, int count, CMPIType type) {
    constexpr Native sentinel = static_cast<Native>(-1);
    if (list == nullptr)
        return nullptr;
    if (count == 0) {
        while (list[count] != sentinel)
            ++count;
        if (count == 0)
            return nullptr;
    }
    bool ended = false;
    return buildArray(broker, count, type, [&](CMPIArray* array, CMPICount i) {
        ended = ended || list[i] == sentinel;
        return ended ? CMPIStatus{CMPI_RC_OK, nullptr} : setElement(array, i, list[i], type);
    });
}

} // namespace

CMPIArray* PH_DupArray_uint8(const CMPIBroker* broker, const uint8_t* list, int count) {
    return dupList(broker, list, count, CMPI_uint8);
}

CMPIArray* PH_DupArray_uint16(const CMPIBroker* broker, const uint16_t* list, int count) {
    return dupList(broker, list, count, CMPI_uint16);
}

CMPIArray* PH_DupArray_uint64(const CMPIBroker* broker, const uint64_t* list, int count) {
    return dupList(broker, list, count, CMPI_uint64);
}

CMPIArray* PH_DupArray_sint32(const CMPIBroker* broker, const int32_t* list, int count) {
    return dupList(broker, list, count, CMPI_sint32);
}

CMPIArray* PH_Dup_uint16_Array(const CMPIBroker* broker, const int* list) {
    if (list == nullptr)
        return nullptr;
    int count = 0;
    while (list[count] >= 0)
        ++count;
    return buildArray(broker, count, CMPI_uint16, [&](CMPIArray* array, CMPICount i) {
        return setElement(array, i, static_cast<CMPIUint16>(list[i]), CMPI_uint16);
    });
}

CMPIArray* Dup_uint16_Array(const CMPIBroker* broker, int count, const uint16_t* list) {
    if (list == nullptr)
        return nullptr;
    return buildArray(broker, count, CMPI_uint16, [&](CMPIArray* array, CMPICount i) {
        return setElement(array, i, list[i], CMPI_uint16);
    });
}

CMPIArray* Dup_const_string_Array(const CMPIBroker* broker, int count, const void* table, int stride) {
    if (table == nullptr)
        return nullptr;
    return buildArray(broker, count, CMPI_string, [&](CMPIArray* array, CMPICount i) {
        return setText(broker, array, i,
                       static_cast<const char*>(table) + static_cast<std::ptrdiff_t>(i) * stride);
    });
}

CMPIArray* PH_Dup_const_string_Array(const CMPIBroker* broker, const void* table, int stride) {
    if (table == nullptr)
        return nullptr;
    int count = 0;
    for (const char* word = static_cast<const char*>(table);; word += sizeof(uint32_t), ++count) {
        uint32_t bits = 0;
        std::memcpy(&bits, word, sizeof(bits));
        if (bits == 0)
            break;
    }
    return count == 0 ? nullptr : Dup_const_string_Array(broker, count, table, stride);
}

CMPIArray* Dup_variable_string_Array(const CMPIBroker* broker, int count, char* const* texts) {
    if (texts == nullptr)
        return nullptr;
    return buildArray(broker, count, CMPI_string,
                      [&](CMPIArray* array, CMPICount i) { return setText(broker, array, i, texts[i]); });
}

CMPIArray* PH_Dup_variable_string_Array(const CMPIBroker* broker, char* const* texts) {
    int count = 0;
    while (texts != nullptr && texts[count] != nullptr)
        ++count;
    return count == 0 ? nullptr : Dup_variable_string_Array(broker, count, texts);
}
