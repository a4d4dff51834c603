// CIM_ConcreteCollection: whatever class an element of a kind has, it is in the collection of that kind, and in no other.
#include "association_fixture.h"
#include "schema/class_schema.h"

namespace {

using testing::UnorderedElementsAreArray;

class Collections : public Associations {
protected:
    // What is served of a class and of those that derive from it. A sensor that cannot be read takes no part.
    std::vector<std::string> elementsOf(const std::string& ancestor) {
        std::vector<std::string> found;
        for (const schema::Class& each : schema::servedClasses()) {
            if (!schema::isSubclass(each.name, ancestor))
                continue;
            for (const auto& instance : broker.enumerateInstances(path(std::string(each.name))).instances)
                if (ancestor != "CIM_Sensor" || textOf(instance, "OperationalStatus") != "{0}")
                    found.push_back(toText(instance.path));
        }
        return found;
    }
};

TEST_F(Collections, haveEveryElementOfTheirKindOnce) {
    const struct {
        const char *name, *ancestor;
    } kinds[] = {{"Capabilities", "CIM_Capabilities"},
                 {"Consoles", "CIM_TextRedirectionSAP"},
                 {"Logs", "CIM_RecordLog"},
                 {"Sensors", "CIM_Sensor"},
                 {"Settings", "CIM_SettingData"}};
    for (const auto& kind : kinds) {
        std::vector<std::string> members;
        for (const auto& each : broker.enumerateInstances(path("CIM_ConcreteCollection")).instances)
            if (textOf(each, "ElementName") == kind.name) {
                const auto own =
                    texts(broker.associatorNames(each.path, {.assocClass = "CIM_MemberOfCollection"}).paths);
                EXPECT_FALSE(own.empty()) << toText(each.path);
                members.insert(members.end(), own.begin(), own.end());
            }
        EXPECT_THAT(members, UnorderedElementsAreArray(elementsOf(kind.ancestor))) << kind.name;
    }
}

} // namespace
