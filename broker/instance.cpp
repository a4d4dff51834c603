// CMPIInstance.
#include "data.h"

#include <algorithm>

namespace broker {

namespace {

bool contains(const std::vector<std::string>& names, std::string_view name) {
    return std::any_of(names.begin(), names.end(), [&](const auto& entry) { return sameName(entry, name); });
}

std::vector<std::string> listOf(const char** names) {
    std::vector<std::string> list;
    for (; names != nullptr && *names != nullptr; ++names)
        list.emplace_back(*names);
    return list;
}

CMPIData getProperty(const CMPIInstance* instance, const char* name, CMPIStatus* status) {
    return obtain(instance, Call::getProperty, status,
                  [&](auto& object) { return dataOf(object.state, object.content.get().properties, name); });
}

CMPIData getPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name, CMPIStatus* status) {
    return obtain(instance, Call::getPropertyAt, status, [&](auto& object) {
        return dataAt(object.state, object.content.get().properties, index, name);
    });
}

CMPICount getPropertyCount(const CMPIInstance* instance, CMPIStatus* status) {
    return obtain(instance, Call::getPropertyCount, status, [](auto& object) {
        return static_cast<CMPICount>(object.content.get().properties.size());
    });
}

CMPIStatus setProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                       CMPIType type) {
    return perform(instance, Call::setProperty, [&](auto& object) {
        const std::string_view property = nameOf(name);
        Value newValue = valueOf(value, type);
        InstanceContent& content = object.content;
        object.state.requireDeclared(content.get().path.className, property, newValue.type);
        // A path's key may come from a text, which does not tell the type of an integer.
        const bool isKey = find(content.get().path.keys, property) != nullptr;
        if (!isKey && content.filter && !contains(content.filter->properties, property) &&
            !contains(content.filter->keys, property))
            return;
        Instance& target = content.change();
        for (NamedValue& entry : target.properties)
            if (sameName(entry.name, property)) {
                if (!isKey && entry.value.type != newValue.type)
                    throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
                entry.value = std::move(newValue);
                return;
            }
        target.properties.push_back({std::string(property), std::move(newValue)});
    });
}

CMPIStatus setPropertyWithOrigin(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                                 CMPIType type, const char*) {
    return setProperty(instance, name, value, type);
}

CMPIObjectPath* getObjectPath(const CMPIInstance* instance, CMPIStatus* status) {
    return obtain(instance, Call::getObjectPath, status,
                  [](auto& object) { return make<CMPIObjectPath>(object.state, object.content.get().path); });
}

// From now on, setProperty passes over what is neither wanted nor a key.
CMPIStatus setPropertyFilter(const CMPIInstance* instance, const char** properties, const char** keys) {
    return perform(instance, Call::setPropertyFilter, [&](auto& object) {
        if (properties == nullptr)
            object.content.filter.reset();
        else
            object.content.filter = {listOf(properties), listOf(keys)};
    });
}

CMPIStatus setObjectPath(const CMPIInstance* instance, const CMPIObjectPath* path) {
    return perform(instance, Call::setObjectPath,
                   [&](auto& object) { object.content.change().path = objectOf(path).content; });
}

} // namespace

const CMPIInstanceFT Traits<CMPIInstance>::table{.ftVersion = CMPICurrentVersion,
                                                 .release = release,
                                                 .clone = clone,
                                                 .getProperty = getProperty,
                                                 .getPropertyAt = getPropertyAt,
                                                 .getPropertyCount = getPropertyCount,
                                                 .setProperty = setProperty,
                                                 .getObjectPath = getObjectPath,
                                                 .setPropertyFilter = setPropertyFilter,
                                                 .setObjectPath = setObjectPath,
                                                 .setPropertyWithOrigin = setPropertyWithOrigin};

} // namespace broker
