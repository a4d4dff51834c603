// CMPIObjectPath.
#include "data.h"

namespace broker {

namespace {

std::string textOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

CMPIStatus setNameSpace(const CMPIObjectPath* path, const char* nameSpace) {
    return perform(path, Call::setNameSpace,
                   [&](auto& object) { object.content.nameSpace = textOrEmpty(nameSpace); });
}

CMPIString* getNameSpace(const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(path, Call::getNameSpace, status,
                  [](auto& object) { return make<CMPIString>(object.state, object.content.nameSpace); });
}

CMPIStatus setHostname(const CMPIObjectPath* path, const char* host) {
    return perform(path, Call::setHostname, [&](auto& object) { object.content.host = textOrEmpty(host); });
}

CMPIString* getHostname(const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(path, Call::getHostname, status,
                  [](auto& object) { return make<CMPIString>(object.state, object.content.host); });
}

CMPIStatus setClassName(const CMPIObjectPath* path, const char* className) {
    return perform(path, Call::setClassName,
                   [&](auto& object) { object.content.className = textOrEmpty(className); });
}

CMPIString* getClassName(const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(path, Call::getClassName, status,
                  [](auto& object) { return make<CMPIString>(object.state, object.content.className); });
}

bool isKeyType(CMPIType type) {
    return (type & CMPI_ARRAY) == 0 && type != CMPI_instance;
}

CMPIStatus addKey(const CMPIObjectPath* path, const char* name, const CMPIValue* value, const CMPIType type) {
    return perform(path, Call::addKey, [&](auto& object) {
        object.state.requireDeclared(object.content.className, nameOf(name), storedType(type));
        if (!isKeyType(type))
            throw Failure{CMPI_RC_ERR_INVALID_DATA_TYPE};
        set(object.content.keys, nameOf(name), valueOf(value, type));
    });
}

CMPIData getKey(const CMPIObjectPath* path, const char* name, CMPIStatus* status) {
    return obtain(path, Call::getKey, status, [&](auto& object) {
        return dataOf(object.state, object.content.keys, name, CMPI_keyValue);
    });
}

CMPIData getKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name, CMPIStatus* status) {
    return obtain(path, Call::getKeyAt, status, [&](auto& object) {
        return dataAt(object.state, object.content.keys, index, name, CMPI_keyValue);
    });
}

CMPICount getKeyCount(const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(path, Call::getKeyCount, status,
                  [](auto& object) { return static_cast<CMPICount>(object.content.keys.size()); });
}

CMPIStatus setNameSpaceFromObjectPath(const CMPIObjectPath* path, const CMPIObjectPath* source) {
    return perform(path, Call::setNameSpaceFromObjectPath,
                   [&](auto& object) { object.content.nameSpace = objectOf(source).content.nameSpace; });
}

CMPIStatus setHostAndNameSpaceFromObjectPath(const CMPIObjectPath* path, const CMPIObjectPath* source) {
    return perform(path, Call::setHostAndNameSpaceFromObjectPath, [&](auto& object) {
        const ObjectPath& from = objectOf(source).content;
        object.content.host = from.host;
        object.content.nameSpace = from.nameSpace;
    });
}

CMPIString* pathToString(const CMPIObjectPath* path, CMPIStatus* status) {
    return obtain(path, Call::toString, status,
                  [](auto& object) { return make<CMPIString>(object.state, toText(object.content)); });
}

} // namespace

const CMPIObjectPathFT Traits<CMPIObjectPath>::table{.ftVersion = CMPICurrentVersion,
                                                     .release = release,
                                                     .clone = clone,
                                                     .setNameSpace = setNameSpace,
                                                     .getNameSpace = getNameSpace,
                                                     .setHostname = setHostname,
                                                     .getHostname = getHostname,
                                                     .setClassName = setClassName,
                                                     .getClassName = getClassName,
                                                     .addKey = addKey,
                                                     .getKey = getKey,
                                                     .getKeyAt = getKeyAt,
                                                     .getKeyCount = getKeyCount,
                                                     .setNameSpaceFromObjectPath = setNameSpaceFromObjectPath,
                                                     .setHostAndNameSpaceFromObjectPath =
                                                         setHostAndNameSpaceFromObjectPath,
                                                     .getClassQualifier = unsupported,
                                                     .getPropertyQualifier = unsupported,
                                                     .getMethodQualifier = unsupported,
                                                     .getParameterQualifier = unsupported,
                                                     .toString = pathToString};

} // namespace broker
