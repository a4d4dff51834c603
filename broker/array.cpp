// CMPIArray and CMPIEnumeration.
#include "data.h"

namespace broker {

namespace {

Value::Array& elements(ObjectOf<CMPIArray>& array) {
    return std::get<Value::Array>(array.content.content);
}

CMPIType elementType(const Value& array) {
    return array.type & ~CMPI_ARRAY;
}

CMPICount getSize(const CMPIArray* array, CMPIStatus* status) {
    return obtain(array, Call::getSize, status,
                  [](auto& object) { return static_cast<CMPICount>(elements(object).size()); });
}

CMPIType getSimpleType(const CMPIArray* array, CMPIStatus* status) {
    return obtain(array, Call::getSimpleType, status,
                  [](auto& object) -> CMPIType { return elementType(object.content); });
}

CMPIData getElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* status) {
    return obtain(array, Call::getElementAt, status, [&](auto& object) {
        if (index >= elements(object).size())
            throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
        return dataOf(object.state, elements(object)[index]);
    });
}

CMPIStatus setElementAt(const CMPIArray* array, CMPICount index, const CMPIValue* value, CMPIType type) {
    // Providers try with chars first: an exception for each element would be a tenth of an enumeration's time.
    bool isRefused = false;
    const CMPIStatus status = perform(array, Call::setElementAt, [&](auto& object) {
        if (index >= elements(object).size())
            throw Failure{CMPI_RC_ERR_NO_SUCH_PROPERTY};
        isRefused = type == CMPI_chars && object.state.isStrict();
        if (isRefused)
            return;
        if (storedType(type) != elementType(object.content))
            throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
        elements(object)[index] = valueOf(value, type);
    });
    return isRefused ? CMPIStatus{CMPI_RC_ERR_TYPE_MISMATCH, nullptr} : status;
}

CMPIData getNext(const CMPIEnumeration* enumeration, CMPIStatus* status) {
    return obtain(enumeration, Call::getNext, status, [](auto& object) {
        EnumerationContent& content = object.content;
        if (content.next >= content.items.size())
            throw Failure{CMPI_RC_ERR_NOT_FOUND};
        return dataOf(object.state, content.items[content.next++]);
    });
}

CMPIBoolean hasNext(const CMPIEnumeration* enumeration, CMPIStatus* status) {
    return obtain(enumeration, Call::hasNext, status, [](auto& object) -> CMPIBoolean {
        return object.content.next < object.content.items.size();
    });
}

CMPIArray* toArray(const CMPIEnumeration* enumeration, CMPIStatus* status) {
    return obtain(enumeration, Call::toArray, status, [](auto& object) {
        const EnumerationContent& content = object.content;
        return make<CMPIArray>(object.state,
                               {static_cast<CMPIType>(content.type | CMPI_ARRAY), content.items});
    });
}

} // namespace

const CMPIArrayFT Traits<CMPIArray>::table{.ftVersion = CMPICurrentVersion,
                                           .release = release,
                                           .clone = clone,
                                           .getSize = getSize,
                                           .getSimpleType = getSimpleType,
                                           .getElementAt = getElementAt,
                                           .setElementAt = setElementAt};

const CMPIEnumerationFT Traits<CMPIEnumeration>::table{.ftVersion = CMPICurrentVersion,
                                                       .release = release,
                                                       .clone = clone,
                                                       .getNext = getNext,
                                                       .hasNext = hasNext,
                                                       .toArray = toArray};

} // namespace broker
