// Associations through phctl.
#include "phctl_fixture.h"

#include <sstream>

namespace {

using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class AssociationVerbs : public ph_test::PhctlTest {
protected:
    static std::string path(const std::string& className, const std::string& text = {}) {
        std::istringstream lines(succeed({"ein", className}).out);
        for (std::string line; std::getline(lines, line);)
            if (line.find(text) != std::string::npos)
                return line;
        ADD_FAILURE() << "there is no " << className << ' ' << text;
        return {};
    }
};

TEST_F(AssociationVerbs, walkFromAProfileToAReading) {
    // A class says which namespace serves it.
    const auto sensors = path("CIM_RegisteredProfile", "DSP1009");
    EXPECT_EQ(sensors, "root/interop:CIM_RegisteredProfile.InstanceID=\"provider-helper:DSP1009\"");
    const auto conforming =
        succeed({"associator-names", sensors, "--assoc-class", "CIM_ElementConformsToProfile",
                 "--result-class", "CIM_NumericSensor", "--role", "conformantstandard", "--json"})
            .json();
    ASSERT_GT(conforming.size(), 40U);
    EXPECT_THAT(succeed({"gi", conforming[0], "--properties", "CurrentReading,BaseUnits,UnitModifier"}).out,
                HasSubstr("= 2400  (24 degrees C)"));
}

TEST_F(AssociationVerbs, walkFromTheChassisToAFanItsSpeedAndItsRedundancy) {
    const auto next = [](const std::string& from, const char* association, const char* to) {
        return succeed({"ain", from, "--assoc-class", association, "--result-class", to, "--json"}).json();
    };
    const auto packages = next(path("CIM_Chassis", "23."), "CIM_Container", "CIM_PhysicalPackage");
    std::string fan;
    for (const auto& package : packages)
        if (const auto devices = next(package, "CIM_Realizes", "CIM_Fan");
            devices == nlohmann::json::array({path("CIM_Fan", "29.2")}))
            fan = devices[0];
    ASSERT_NE(fan, "") << packages.dump();
    const auto tachometers = next(fan, "CIM_AssociatedSensor", "CIM_NumericSensor");
    ASSERT_EQ(tachometers.size(), 1U) << tachometers.dump();
    EXPECT_THAT(tachometers[0], HasSubstr(":FAN2"));
    EXPECT_EQ(next(tachometers[0], "CIM_AssociatedSensor", "CIM_Fan"), nlohmann::json::array({fan}));
    const auto sets = next(fan, "CIM_MemberOfCollection", "CIM_RedundancySet");
    ASSERT_EQ(sets.size(), 1U) << sets.dump();
    EXPECT_THAT(succeed({"gi", sets[0]}).out, HasSubstr("MinNumberNeeded       = 5\n"));
    EXPECT_EQ(next(sets[0], "CIM_MemberOfCollection", "CIM_ManagedElement").size(), 6U);
    // A fan that no association puts into the cooling unit belongs to no set.
    EXPECT_TRUE(next(path("CIM_Fan", "29.7"), "CIM_MemberOfCollection", "CIM_RedundancySet").empty());
    const auto supply = path("CIM_PowerSupply", "10.2");
    for (const auto& sensor : next(supply, "CIM_AssociatedSensor", "CIM_Sensor"))
        EXPECT_THAT(sensor, HasSubstr("PSU2"));
}

TEST_F(AssociationVerbs, printTablesOrJson) {
    const auto host = path("CIM_HostComputerSystem");
    const auto table =
        succeed({"ai", host, "--assoc-class", "CIM_SystemDevice", "--result-class", "CIM_NumericSensor",
                 "--properties", "ElementName,CurrentReading,BaseUnits,UnitModifier"})
            .out;
    EXPECT_THAT(table, StartsWith("ElementName "));
    EXPECT_THAT(table, ContainsRegex("Inlet Temp\\(1\\.32\\.0\\) +2400 +24 degrees C"));
    const auto json =
        succeed({"ai", host, "--result-role", "ServiceProvided", "--properties", "ElementName", "--json"})
            .json();
    ASSERT_EQ(json.size(), 1U);
    EXPECT_EQ(json[0]["properties"].size(), 5U) << json.dump();
    EXPECT_EQ(succeed({"ain", host, "--assoc-class", "CIM_UseOfLog"}).out, "");
    EXPECT_EQ(succeed({"ain", host, "--assoc-class", "CIM_UseOfLog", "--json"}).json(),
              nlohmann::json::array());
}

// A reference is a text in a path's text, and takes the same way back.
TEST_F(AssociationVerbs, referencesAreObjectPathsToo) {
    const auto log = path("CIM_RecordLog");
    const auto names = succeed({"rin", log, "--result-class", "CIM_UseOfLog"}).out;
    EXPECT_THAT(
        names,
        StartsWith("root/cimv2:CIM_UseOfLog.Antecedent=\"root/cimv2:CIM_RecordLog.InstanceID=\\\"IPMI:"));
    const auto name = names.substr(0, names.find('\n'));
    const auto found = succeed({"gi", name, "--json"}).json();
    EXPECT_EQ(found["path"], name);
    EXPECT_EQ(found["properties"]["Antecedent"], log);
    EXPECT_EQ(succeed({"ri", log, "--assoc-class", "CIM_UseOfLog", "--role", "Antecedent", "--json"}).json(),
              nlohmann::json::array({found}));
    EXPECT_THAT(fail({"gi", "CIM_UseOfLog.Antecedent=\"no path\""}, 2), HasSubstr("object path no path"));
    EXPECT_THAT(fail({"di", name}, 1), HasSubstr("DeleteInstance not supported"));
}

TEST_F(AssociationVerbs, associationsAreDescribed) {
    const auto text = succeed({"classes", "CIM_ElementConformsToProfile"}).out;
    EXPECT_THAT(text, ContainsRegex("ConformantStandard +reference \\(CIM_RegisteredProfile\\) +key"));
    EXPECT_THAT(text, HasSubstr("Namespaces: root/cimv2 root/interop\n"));
    EXPECT_THAT(succeed({"classes"}).out, ContainsRegex("CIM_SystemDevice +CIM_SystemComponent +get"));
}

} // namespace
