// Reading declarations, and putting together what is declared and what is served.
#include "merged_classes.h"

#include <gmock/gmock.h>
#include <sstream>
#include <stdexcept>

namespace {

using schema::DeclaredClass;
using schema::DeclaredClasses;
using schema::DeclaredElement;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::SizeIs;

DeclaredClasses read(const std::string& text) {
    std::istringstream file(text);
    DeclaredClasses classes;
    schema::readClasses(file, classes);
    return classes;
}

const char* const declarations = R"(# A comment.
abstract class CIM_Base
    string Name key max 64
    uint16[] States required writable {0=Off; 1=On, or nearly;
        2..=Others}
    uint32 Speed units hertz * 10^6

class CIM_Derived : CIM_Base
    uint32 Start(in uint16 State {1=On}; inout CIM_Base REF[] Bases; out CIM_Base INSTANCE Base)
        {0=Done; ...}
association CIM_Link
    CIM_Base REF First key
)";

TEST(Declarations, areReadAsTheyAreWritten) {
    const auto classes = read(declarations);
    ASSERT_THAT(classes, SizeIs(3));
    const DeclaredClass& base = classes.at("cim_base");
    EXPECT_TRUE(base.isAbstract);
    ASSERT_THAT(base.properties, SizeIs(3));
    EXPECT_TRUE(base.properties[0].isKey);
    EXPECT_EQ(base.properties[0].maxLength, 64U);
    const DeclaredElement& states = base.properties[1];
    EXPECT_EQ(states.type, CMPI_uint16A);
    EXPECT_TRUE(states.isRequired && states.isWritable && !states.isKey);
    EXPECT_THAT(states.values,
                ElementsAre(Pair("0", "Off"), Pair("1", "On, or nearly"), Pair("2..", "Others")));
    EXPECT_EQ(base.properties[2].units, "hertz * 10^6");
    const DeclaredClass& derived = classes.at("CIM_Derived");
    EXPECT_EQ(derived.superclass, "CIM_Base");
    ASSERT_THAT(derived.methods, SizeIs(1));
    EXPECT_THAT(derived.methods[0].values, ElementsAre(Pair("0", "Done"), Pair("...", "")));
    const auto& parameters = derived.methods[0].parameters;
    ASSERT_THAT(parameters, SizeIs(3));
    EXPECT_THAT(parameters[0].values, ElementsAre(Pair("1", "On")));
    EXPECT_TRUE(parameters[1].isIn && parameters[1].isOut);
    EXPECT_EQ(parameters[1].type, CMPI_refA);
    EXPECT_EQ(parameters[1].className, "CIM_Base");
    EXPECT_TRUE(!parameters[2].isIn && parameters[2].isOut);
    EXPECT_EQ(parameters[2].type, CMPI_instance);
    EXPECT_TRUE(classes.at("CIM_Link").isAssociation);
}

TEST(Declarations, thatAreWrongAreNamed) {
    const struct {
        const char* text;
        const char* error;
    } cases[] = {
        {"klass CIM_A", "line 1: \"class \" is missing"},
        {"\n    string Name", "line 2: this feature belongs to no class"},
        {"class CIM_A\n    uint17 Number", "line 2: there is no type uint17"},
        {"class CIM_A\n    string Name, Other", "line 2: \", Other\" is too much"},
        {"class CIM_A\n    string Name {a=b\n        ; c", "line 2: \"}\" is missing"},
        {"class CIM_A\n    uint32 Do(uint16 State)", "line 2: \"in \" is missing"},
        {"class CIM_A\n\nclass cim_a", "line 3: cim_a is declared already"},
    };
    for (const auto& each : cases)
        try {
            read(each.text);
            ADD_FAILURE() << each.text;
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr(each.error));
        }
}

TEST(Declarations, takeUpWhatIsServed) {
    auto classes = read(declarations);
    const DeclaredElement name{.name = "Name", .type = CMPI_string, .isKey = true};
    const DeclaredElement state{.name = "State", .type = CMPI_uint16};
    merge(
        {{.name = "CIM_Ours",
          .superclass = "CIM_Derived",
          .properties = {name, {.name = "Load", .type = CMPI_uint8}},
          .nameSpaces = {"root/cimv2"}},
         {.name = "CIM_Derived",
          .superclass = "CIM_Base",
          .properties = {name, {.name = "Speed", .type = CMPI_uint64}, {.name = "Load", .type = CMPI_uint8}},
          .methods = {{.name = "Start", .parameters = {state}}},
          .enumerates = true,
          .nameSpaces = {"root/cimv2"}}},
        classes);
    const DeclaredClass& derived = classes.at("CIM_Derived");
    EXPECT_FALSE(derived.isOurs);
    EXPECT_TRUE(derived.enumerates);
    EXPECT_THAT(derived.servedProperties, ElementsAre("Name", "Speed", "Load"));
    // DMTF's Name serves; the others are declared anew, with what DMTF says of them.
    ASSERT_THAT(derived.properties, SizeIs(2));
    EXPECT_TRUE(derived.properties[0].isOurs);
    EXPECT_EQ(derived.properties[0].type, CMPI_uint64);
    EXPECT_EQ(derived.properties[0].units, "hertz * 10^6");
    EXPECT_EQ(derived.properties[1].name, "Load");
    ASSERT_THAT(derived.methods, SizeIs(1));
    EXPECT_TRUE(derived.methods[0].isOurs);
    ASSERT_THAT(derived.methods[0].parameters, SizeIs(1));
    EXPECT_FALSE(derived.methods[0].parameters[0].isOurs);
    EXPECT_THAT(derived.methods[0].parameters[0].values, ElementsAre(Pair("1", "On")));
    // Load is inherited.
    const DeclaredClass& ours = classes.at("CIM_Ours");
    EXPECT_TRUE(ours.isOurs);
    EXPECT_THAT(ours.properties, SizeIs(0));

    EXPECT_THROW(merge({{.name = "CIM_Derived", .superclass = "CIM_Link"}}, classes), std::runtime_error);
    EXPECT_THROW(merge({{.name = "CIM_Other", .superclass = "CIM_Missing"}}, classes), std::runtime_error);
}

} // namespace
