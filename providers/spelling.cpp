#include "spelling.h"

#include <algorithm>
#include <cstring>
#include <strings.h>

namespace spelling {
namespace {

// The names are in the order of strcasecmp.
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

} // namespace

const char* spelled(const char* name) {
    const auto* const found =
        std::lower_bound(std::begin(names), std::end(names), name,
                         [](const char* left, const char* right) { return strcasecmp(left, right) < 0; });
    return found != std::end(names) && strcasecmp(*found, name) == 0 ? *found : name;
}

std::string withoutPrefix(const std::string& className) {
    constexpr const char prefix[] = "PH_";
    constexpr std::size_t length = sizeof(prefix) - 1;
    return strncasecmp(className.c_str(), prefix, length) == 0 ? "CIM_" + className.substr(length) : "";
}

std::vector<const char*> keysOf(const char* className) {
    std::vector<const char*> found;
    for (const Key& key : keys)
        if (std::strcmp(key.className, className) == 0)
            found.push_back(key.name);
    return found;
}

Path::Path(const CMPIBroker* broker, const CMPIObjectPath* path) : Spelled(path) {
    const std::string given = objects::classNameOf(path);
    const std::string own = withoutPrefix(given);
    const std::string& className = own.empty() ? given : own;
    const auto keys = objects::keysOf(path);
    if (own.empty() && isSpelled(className) && std::ranges::all_of(keys, isSpelled, &objects::Property::name))
        return;
    copy_ = objects::makePath(broker, objects::nameSpaceOf(path).c_str(), spelled(className.c_str()));
    for (const objects::Property& key : keys)
        objects::addKey(copy_.get(), spelled(key.name.c_str()), key.data);
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
