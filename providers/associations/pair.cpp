#include "associations/pair.h"

#include "associations/class_hierarchy.h"

#include <algorithm>

namespace associations {
namespace {

bool isOf(const Elements& elements, const CMPIInstance* instance) {
    return elements.property == nullptr ||
           propertyText(instance, elements.property).starts_with(elements.prefix);
}

std::string textIfNamed(const CMPIInstance* instance, const char* property) {
    return property != nullptr ? propertyText(instance, property) : std::string();
}

CMPIType typeOf(const AssociationClass& association, const char* property) {
    const auto declared = std::ranges::find_if(
        association.properties, [&](const Declaration& each) { return isSameName(each.name, property); });
    return declared != association.properties.end() ? declared->type : CMPI_null;
}

} // namespace

Half::Half(const Row& row, int end, const CMPIInstance* instance)
    : row_(row),
      end_(end),
      isMember_(isOf(row.ends[end], instance)),
      text_(textIfNamed(instance, row.meeting.properties[end])) {}

bool Half::meets(const CMPIInstance* other) const {
    if (!isOf(row_.ends[1 - end_], other))
        return false;
    if (row_.meeting.relation == nullptr)
        return true;
    const std::string text = textIfNamed(other, row_.meeting.properties[1 - end_]);
    return end_ == 0 ? row_.meeting.relation(text_, text) : row_.meeting.relation(text, text_);
}

Owned<CMPIObjectPath> pairPath(const CMPIBroker* broker, const std::string& nameSpace, const Row& row,
                               const CMPIInstance* first, const CMPIInstance* second) {
    const AssociationClass& association = *row.associationClass;
    auto path = makePath(broker, nameSpace.c_str(), association.name);
    CMPIValue value{};
    value.ref = pathOf(first);
    require(CMAddKey(path.get(), association.ends[0].role, &value, CMPI_ref));
    value.ref = pathOf(second);
    require(CMAddKey(path.get(), association.ends[1].role, &value, CMPI_ref));
    return path;
}

Owned<CMPIInstance> pairInstance(const CMPIBroker* broker, const CMPIObjectPath* path, const Row& row,
                                 const CMPIInstance* first, const CMPIInstance* second, const char** names,
                                 LiveState& live) {
    const AssociationClass& association = *row.associationClass;
    auto instance = makeInstance(broker, path);
    for (const auto& [end, element] :
         {std::pair{association.ends[0], first}, {association.ends[1], second}}) {
        CMPIValue value{};
        value.ref = pathOf(element);
        require(CMSetProperty(instance.get(), end.role, &value, CMPI_ref));
    }
    for (const OwnValue& own : row.values) {
        if (!isWanted(own.name, names))
            continue;
        const std::string texts[] = {textIfNamed(first, own.properties[0]),
                                     textIfNamed(second, own.properties[1])};
        const Numbers numbers = own.numbers({texts[0], texts[1], live.get(own.live)});
        if (!numbers.empty())
            setNumbers(broker, instance.get(), own.name, typeOf(association, own.name), numbers);
    }
    return instance;
}

Owned<CMPIInstance> copyOf(const CMPIBroker* broker, const CMPIInstance* instance, const char** names) {
    const CMPIObjectPath* path = pathOf(instance);
    auto copy = makeInstance(broker, path);
    for (const Property& property : propertiesOf(instance))
        if (isWanted(property.name.c_str(), names) || keyOf(path, property.name.c_str()))
            setProperty(copy.get(), property.name.c_str(), property.data);
    return copy;
}

} // namespace associations
