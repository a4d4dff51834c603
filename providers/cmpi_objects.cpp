#include "cmpi_objects.h"

namespace objects {
namespace {

CMPIValue numberValue(CMPIType type, std::uint64_t number) {
    CMPIValue value{};
    if (type == CMPI_uint16)
        value.uint16 = static_cast<CMPIUint16>(number);
    else
        value.uint64 = number;
    return value;
}

// Reads a value that was asked for by its name; nothing where there is no such name. Throws Failure where it
// could not be read.
std::optional<CMPIData> present(const CMPIData& data, const CMPIStatus& status) {
    if (status.rc == CMPI_RC_ERR_NO_SUCH_PROPERTY || status.rc == CMPI_RC_ERR_NOT_FOUND)
        return std::nullopt;
    require(status);
    return (data.state & CMPI_notFound) == 0 ? std::optional(data) : std::nullopt;
}

const CMPIValue* valueOf(const CMPIData& data) {
    return (data.state & CMPI_nullValue) != 0 ? nullptr : &data.value;
}

} // namespace

void require(const CMPIStatus& status) {
    if (status.rc != CMPI_RC_OK)
        throw Failure(status.rc, textOf(status.msg));
}

Owned<CMPIObjectPath> makePath(const CMPIBroker* broker, const char* nameSpace, const char* className) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIObjectPath* path = CMNewObjectPath(broker, nameSpace, className, &status);
    return made(path, status);
}

Owned<CMPIInstance> makeInstance(const CMPIBroker* broker, const CMPIObjectPath* path) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIInstance* instance = CMNewInstance(broker, path, &status);
    return made(instance, status);
}

std::string textOf(const CMPIString* string) {
    if (string == nullptr)
        return {};
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const char* text = CMGetCharsPtr(string, &status);
    require(status);
    return text != nullptr ? text : "";
}

std::string textOf(const CMPIData& data) {
    if ((data.state & (CMPI_nullValue | CMPI_notFound)) != 0)
        return {};
    switch (data.type) {
    case CMPI_string:
        return textOf(data.value.string);
    case CMPI_chars:
        return data.value.chars != nullptr ? data.value.chars : "";
    case CMPI_uint8:
        return std::to_string(data.value.uint8);
    case CMPI_uint16:
        return std::to_string(data.value.uint16);
    case CMPI_uint32:
        return std::to_string(data.value.uint32);
    case CMPI_uint64:
        return std::to_string(data.value.uint64);
    default:
        return {};
    }
}

std::optional<CMPIData> propertyOf(const CMPIInstance* instance, const char* name) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetProperty(instance, name, &status);
    return present(data, status);
}

std::optional<CMPIData> keyOf(const CMPIObjectPath* path, const char* name) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetKey(path, name, &status);
    return present(data, status);
}

std::string propertyText(const CMPIInstance* instance, const char* name) {
    const auto data = propertyOf(instance, name);
    return data ? textOf(*data) : std::string();
}

std::string keyText(const CMPIObjectPath* path, const char* name) {
    const auto data = keyOf(path, name);
    return data ? textOf(*data) : std::string();
}

std::vector<Property> propertiesOf(const CMPIInstance* instance) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    std::vector<Property> properties(CMGetPropertyCount(instance, &status));
    require(status);
    for (CMPICount i = 0; i < properties.size(); ++i) {
        CMPIString* name = nullptr;
        properties[i].data = CMGetPropertyAt(instance, i, &name, &status);
        require(status);
        properties[i].name = textOf(name);
    }
    return properties;
}

// Some brokers count the keys that the class has, whether the path has them or not.
std::vector<Property> keysOf(const CMPIObjectPath* path) {
    std::vector<Property> keys;
    const CMPICount count = keyCount(path);
    for (CMPICount i = 0; i < count; ++i) {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIString* name = nullptr;
        const CMPIData data = CMGetKeyAt(path, i, &name, &status);
        if (const auto key = present(data, status))
            keys.push_back({textOf(name), *key});
    }
    return keys;
}

void setProperty(const CMPIInstance* instance, const char* name, const CMPIData& data) {
    require(CMSetProperty(instance, name, valueOf(data), data.type));
}

void addKey(CMPIObjectPath* path, const char* name, const CMPIData& data) {
    require(CMAddKey(path, name, valueOf(data), data.type));
}

std::string classNameOf(const CMPIObjectPath* path) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIString* name = CMGetClassName(path, &status);
    require(status);
    return textOf(name);
}

std::string nameSpaceOf(const CMPIObjectPath* path) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIString* name = CMGetNameSpace(path, &status);
    require(status);
    return textOf(name);
}

CMPICount keyCount(const CMPIObjectPath* path) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPICount count = CMGetKeyCount(path, &status);
    require(status);
    return count;
}

CMPICount sizeOf(const CMPIArray* array) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPICount count = CMGetArrayCount(array, &status);
    require(status);
    return count;
}

CMPIData elementOf(const CMPIArray* array, CMPICount index) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData data = CMGetArrayElementAt(array, index, &status);
    require(status);
    return data;
}

CMPIObjectPath* pathOf(const CMPIInstance* instance) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIObjectPath* path = CMGetObjectPath(instance, &status);
    require(status);
    if (path == nullptr)
        throw Failure(CMPI_RC_ERR_FAILED, "An instance without a path");
    return path;
}

const CMPIValue* charsValue(const char* text) {
    return reinterpret_cast<const CMPIValue*>(text);
}

void setNumbers(const CMPIBroker* broker, const CMPIInstance* instance, const char* name, CMPIType type,
                const std::vector<std::uint64_t>& numbers) {
    const auto elementType = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    if (type == elementType) {
        const CMPIValue value = numberValue(type, numbers.front());
        return require(CMSetProperty(instance, name, &value, type));
    }
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIArray* const array = CMNewArray(broker, static_cast<CMPICount>(numbers.size()), elementType, &status);
    const Owned<CMPIArray> owner = made(array, status);
    for (CMPICount i = 0; i < numbers.size(); ++i) {
        const CMPIValue element = numberValue(elementType, numbers[i]);
        require(CMSetArrayElementAt(array, i, &element, elementType));
    }
    CMPIValue value{};
    value.array = array;
    require(CMSetProperty(instance, name, &value, type));
}

bool haveSameKeys(const CMPIObjectPath* left, const CMPIObjectPath* right) {
    const CMPICount count = keyCount(left);
    if (count != keyCount(right))
        return false;
    for (CMPICount i = 0; i < count; ++i) {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        CMPIString* name = nullptr;
        const CMPIData key = CMGetKeyAt(left, i, &name, &status);
        require(status);
        if (textOf(key) != keyText(right, textOf(name).c_str()))
            return false;
    }
    return true;
}

} // namespace objects
