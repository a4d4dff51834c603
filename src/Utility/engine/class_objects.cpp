#include "Utility/engine/class_objects.h"

#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/cmpi_ptr.h"

#include <cstring>

namespace ph::engine {
namespace {

template <class Object>
Temporary<Object> temporary(const Maker& maker, Object* object) {
    return {object, EarlyRelease{maker.releasesEarly}};
}

// Also of an element of a list.
std::size_t scalarSize(Kind kind) {
    switch (kind) {
    case Kind::Boolean:
    case Kind::Uint8:
    case Kind::Uint8Values:
    case Kind::Sint8:
        return 1;
    case Kind::Uint16:
    case Kind::Uint16Values:
    case Kind::Sint16:
        return 2;
    case Kind::Uint32:
    case Kind::Sint32:
    case Kind::Sint32Values:
    case Kind::Real32:
        return 4;
    default:
        return 8;
    }
}

bool setArray(CMPIInstance* instance, const char* name, CMPIArray* array, CMPIType type) {
    if (array == nullptr)
        return false;
    const CmpiPtr<CMPIArray> owner(array);
    CMPIValue value{};
    value.array = array;
    return CMSetProperty(instance, name, &value, type).rc == CMPI_RC_OK;
}

bool setValues(const CMPIBroker* broker, CMPIInstance* instance, const Property& property,
               const Values& values) {
    const auto type = static_cast<CMPIType>(typeOf(property.kind) & ~CMPI_ARRAY);
    const std::size_t size = scalarSize(property.kind);
    const CmpiPtr<CMPIArray> array(CMNewArray(broker, static_cast<CMPICount>(values.count), type, nullptr));
    if (array == nullptr)
        return false;
    for (std::size_t i = 0; i < values.count; ++i) {
        CMPIValue element{};
        std::memcpy(&element, static_cast<const char*>(values.first) + i * size, size);
        if (CMSetArrayElementAt(array.get(), static_cast<CMPICount>(i), &element, type).rc != CMPI_RC_OK)
            return false;
    }
    CMPIValue value{};
    value.array = array.get();
    return CMSetProperty(instance, property.name, &value, typeOf(property.kind)).rc == CMPI_RC_OK;
}

bool setDateTime(const Maker& maker, CMPIInstance* instance, const char* name, CMPIDateTime* time) {
    if (time == nullptr)
        return false;
    const auto owner = temporary(maker, time);
    CMPIValue value{};
    value.dateTime = time;
    return CMSetProperty(instance, name, &value, CMPI_dateTime).rc == CMPI_RC_OK;
}

bool setText(CMPIInstance* instance, const char* name, const char* text) {
    return CMSetProperty(instance, name, reinterpret_cast<const CMPIValue*>(text), CMPI_chars).rc ==
           CMPI_RC_OK;
}

bool addKey(CMPIObjectPath* path, const char* name, const char* text) {
    return CMAddKey(path, name, reinterpret_cast<const CMPIValue*>(text), CMPI_chars).rc == CMPI_RC_OK;
}

Temporary<CMPIObjectPath> newPath(const Maker& maker, const char* className) {
    auto path = temporary<CMPIObjectPath>(maker, nullptr);
    CMPIStatus status = success;
    if (maker.hasNameSpace)
        path.reset(CMNewObjectPath(maker.broker, maker.nameSpace, className, &status));
    if (status.rc != CMPI_RC_OK)
        path.reset();
    return path;
}

bool setReference(const Maker& maker, CMPIInstance* instance, const char* name, const Reference& reference) {
    if (reference.className == nullptr)
        return true;
    const auto path = newPath(maker, reference.className);
    if (path == nullptr)
        return false;
    for (const Reference::Key& key : reference.keys)
        if (key.name != nullptr && !addKey(path.get(), key.name, key.text))
            return false;
    CMPIValue value{};
    value.ref = path.get();
    return CMSetProperty(instance, name, &value, CMPI_ref).rc == CMPI_RC_OK;
}

bool setInstance(const Maker& maker, CMPIInstance* instance, const char* name,
                 const EmbeddedInstance& embedded) {
    if (embedded.record == nullptr)
        return true;
    const auto built = buildInstance(*embedded.family, maker, nullptr, embedded.record);
    CMPIValue value{};
    value.inst = built.get();
    return built != nullptr && CMSetProperty(instance, name, &value, CMPI_instance).rc == CMPI_RC_OK;
}

bool setProperty(const Maker& maker, CMPIInstance* instance, const Property& property, const void* record) {
    const CMPIBroker* const broker = maker.broker;
    ComputedValue computed; // not zeroed: most properties are stored, and it is large
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
    case Kind::Uint8Values:
    case Kind::Uint16Values:
    case Kind::Uint64Values:
    case Kind::Sint32Values: {
        const auto& values = *static_cast<const Values*>(field);
        return values.count == 0 || setValues(broker, instance, property, values);
    }
    case Kind::DateTimeText: {
        const char* text = static_cast<const char*>(field);
        return *text == '\0' ||
               setDateTime(maker, instance, property.name, CMNewDateTimeFromChars(broker, text, nullptr));
    }
    case Kind::DateTimeValue: {
        const std::uint64_t microseconds = static_cast<const DateTime*>(field)->microseconds;
        if (microseconds != DateTime::none)
            return setDateTime(maker, instance, property.name,
                               CMNewDateTimeFromBinary(broker, microseconds, false, nullptr));
        CMPIDateTime* unknown = CMNewDateTimeFromChars(broker, nullptr, nullptr);
        return unknown == nullptr || setDateTime(maker, instance, property.name, unknown);
    }
    case Kind::StringList: {
        char* const* texts = static_cast<char* const*>(field);
        return *texts == nullptr ||
               setArray(instance, property.name, PH_Dup_variable_string_Array(broker, texts), CMPI_stringA);
    }
    case Kind::Reference:
        return setReference(maker, instance, property.name, *static_cast<const Reference*>(field));
    case Kind::Instance:
        return setInstance(maker, instance, property.name, *static_cast<const EmbeddedInstance*>(field));
    default: {
        CMPIValue value{};
        std::memcpy(&value, field, scalarSize(property.kind));
        return CMSetProperty(instance, property.name, &value, typeOf(property.kind)).rc == CMPI_RC_OK;
    }
    }
}

} // namespace

Maker::Maker(const ClassFamily& family, const CMPIBroker* cmpiBroker, const CMPIObjectPath* ref)
    : broker(cmpiBroker), releasesEarly(family.stream != nullptr) {
    CMPIStatus status = success;
    nameSpace = textOf(CMGetNameSpace(ref, &status));
    hasNameSpace = status.rc == CMPI_RC_OK && nameSpace != nullptr;
}

Temporary<CMPIObjectPath> buildPath(const ClassFamily& family, const Maker& maker, const void* record) {
    auto path = newPath(maker, family.name);
    if (path == nullptr)
        return path;
    for (const Property& key : family.properties) {
        if (!key.isKey)
            continue;
        const char* text = keyText(key, record);
        if (*text == '\0' || !addKey(path.get(), key.name, text))
            return temporary<CMPIObjectPath>(maker, nullptr);
    }
    return path;
}

Temporary<CMPIInstance> buildInstance(const ClassFamily& family, const Maker& maker, const char** properties,
                                      const void* record) {
    auto instance = temporary<CMPIInstance>(maker, nullptr);
    const auto path = buildPath(family, maker, record);
    CMPIStatus status = success;
    if (path != nullptr)
        instance.reset(CMNewInstance(maker.broker, path.get(), &status));
    if (instance == nullptr || status.rc != CMPI_RC_OK)
        return temporary<CMPIInstance>(maker, nullptr);
    for (const Property& property : family.properties) {
        const bool wanted =
            property.isKey || ((properties == nullptr || ExistsInList(properties, property.name)) &&
                               (property.condition == nullptr || property.condition(record)));
        if (wanted && !setProperty(maker, instance.get(), property, record))
            return temporary<CMPIInstance>(maker, nullptr);
    }
    return instance;
}

} // namespace ph::engine
