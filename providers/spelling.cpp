#include "spelling.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

namespace spelling {
namespace {

// In the order of strcasecmp.
constexpr const char* names[] = {
#include "names.inc"
};

struct Key {
    const char* className;
    const char* name;
};
constexpr Key keys[] = {
#include "keys.inc"
};

bool isSpelled(const std::string& name) {
    return spelled(name.c_str()) == name;
}

CMPIData keyAt(const CMPIObjectPath* path, CMPICount index, std::string& name) {
    CMPIString* nameString = nullptr;
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData key = CMGetKeyAt(path, index, &nameString, &status);
    objects::require(status);
    name = objects::textOf(nameString);
    return key;
}

} // namespace

const char* spelled(const char* name) {
    const auto* const found =
        std::lower_bound(std::begin(names), std::end(names), name,
                         [](const char* left, const char* right) { return strcasecmp(left, right) < 0; });
    return found != std::end(names) && strcasecmp(*found, name) == 0 ? *found : name;
}

std::vector<const char*> keysOf(const char* className) {
    std::vector<const char*> found;
    for (const Key& key : keys)
        if (std::strcmp(key.className, className) == 0)
            found.push_back(key.name);
    return found;
}

Path::Path(const CMPIBroker* broker, const CMPIObjectPath* path) : Spelled(path) {
    const std::string className = objects::classNameOf(path);
    const CMPICount count = objects::keyCount(path);
    bool isAlright = isSpelled(className);
    std::string name;
    for (CMPICount i = 0; isAlright && i < count; ++i) {
        keyAt(path, i, name);
        isAlright = isSpelled(name);
    }
    if (isAlright)
        return;
    copy_ = objects::makePath(broker, objects::nameSpaceOf(path).c_str(), spelled(className.c_str()));
    for (CMPICount i = 0; i < count; ++i) {
        const CMPIData key = keyAt(path, i, name);
        objects::addKey(copy_.get(), spelled(name.c_str()), key);
    }
}

Instance::Instance(const CMPIBroker* broker, const CMPIObjectPath* path, const CMPIInstance* instance)
    : Spelled(instance) {
    const auto properties = objects::propertiesOf(instance);
    if (std::all_of(properties.begin(), properties.end(),
                    [](const objects::Property& each) { return isSpelled(each.name); }))
        return;
    copy_ = objects::makeInstance(broker, path);
    for (const objects::Property& each : properties)
        objects::setProperty(copy_.get(), spelled(each.name.c_str()), each.data);
}

Names::Names(const char** given) : isGiven_(given != nullptr) {
    for (; given != nullptr && *given != nullptr; ++given)
        names_.push_back(spelled(*given));
    names_.push_back(nullptr);
}

} // namespace spelling
