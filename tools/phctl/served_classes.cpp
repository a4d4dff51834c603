#include "served_classes.h"

#include "broker/value.h"

#include <algorithm>

namespace phctl {
namespace {

template <class Named>
const Named* findIn(std::span<const Named> all, std::string_view name) {
    const auto found =
        std::ranges::find_if(all, [&](const Named& each) { return broker::sameName(each.name, name); });
    return found != all.end() ? &*found : nullptr;
}

} // namespace

const schema::Class* servedClass(std::string_view className) {
    const schema::Class* found = schema::find(className);
    return found != nullptr && found->isServed() ? found : nullptr;
}

const schema::Property* servedProperty(const schema::Class& owner, std::string_view name) {
    return findIn(owner.servedProperties(), name);
}

const schema::Method* servedMethod(const schema::Class& owner, std::string_view name) {
    return findIn(owner.servedMethods(), name);
}

std::string defaultNameSpace(std::string_view className) {
    const schema::Class* described = servedClass(className);
    return described != nullptr ? std::string(described->nameSpaces.front()) : "root/cimv2";
}

std::vector<std::string> classNames() {
    return namesOf(schema::servedClasses());
}

bool isSensorClass(std::string_view className) {
    return broker::sameName(className, "CIM_Sensor") || broker::sameName(className, "CIM_NumericSensor");
}

} // namespace phctl
