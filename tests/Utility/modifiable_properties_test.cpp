// Which properties of a modify request are to be changed, and what the debug log says of it.
#include "broker_fixture.h"
#include "provider_helper/utility.h"

#include <cstring>
#include <memory>

namespace {

using broker::Instance;
using broker::NamedValues;
using broker::Value;
using testing::ElementsAre;
using testing::IsEmpty;

struct Outcome {
    int code;
    std::string refused;
    std::vector<std::string> rows; // "Name=value"
};

class ModifiableProperties : public BrokerFixture {
protected:
    void allow(const char* name,
               const CMPIData& value = {.type = CMPI_string, .state = CMPI_nullValue, .value = {}}) {
        PHPropertyRow& row = defaults->rows[defaults->count];
        AddTo_DefaultList(defaults->rows, name, defaults->count++);
        row.type = value.type;
        row.state = value.state;
        std::memcpy(&row.value, &value.value, sizeof(row.value));
    }

    Outcome check(const NamedValues& modified, const NamedValues& current,
                  const broker::PropertyList& properties = {}) {
        std::memset(modifiable.get(), 0xA5, sizeof(*modifiable));
        char refused[PH_REFUSED_NAMES_SIZE] = "old";
        const int code = getModifiableProperties(
            scope->make(Instance{{}, modified}), scope->make(Instance{{}, current}),
            broker::PropertyNames(properties).names(), defaults.get(), modifiable.get(), refused);
        Outcome outcome{code, refused, {}};
        for (int i = 0; i < modifiable->count; ++i) {
            const PHPropertyRow& row = modifiable->rows[i];
            CMPIData data{.type = row.type, .state = row.state, .value = {}};
            std::memcpy(&data.value, &row.value, sizeof(row.value));
            outcome.rows.push_back(std::string(row.name) + '=' + toText(broker::toValue(data)));
        }
        return outcome;
    }

    std::unique_ptr<PHPropertyList> defaults = std::make_unique<PHPropertyList>();
    std::unique_ptr<PHPropertyList> modifiable = std::make_unique<PHPropertyList>();
};

TEST_F(ModifiableProperties, everythingThatDiffersIsTaken) {
    const Value list = arrayOf(CMPI_uint16, {number(1), number(2)});
    const Value other = arrayOf(CMPI_uint16, {number(1), number(3)});
    const std::tuple<Value, Value, bool> cases[] = {
        {text("a"), text("a"), false}, {text("a"), text("b"), true}, {null(CMPI_string), text("a"), true},
        {list, list, false},           {list, other, true},
    };
    allow("P");
    for (const auto& [modified, current, changed] : cases) {
        SCOPED_TRACE(toText(modified) + " instead of " + toText(current));
        const Outcome outcome = check({{"P", modified}}, {{"P", current}});
        EXPECT_EQ(outcome.code, 0);
        EXPECT_EQ(outcome.refused, "");
        if (changed)
            EXPECT_THAT(outcome.rows, ElementsAre("P=" + toText(modified)));
        else
            EXPECT_THAT(outcome.rows, IsEmpty());
    }
}

TEST_F(ModifiableProperties, missingInTheCurrentInstanceCountsAsZero) {
    allow("P");
    for (const Value& zero : {number(0), null(CMPI_string), Value{CMPI_boolean, false}, null(CMPI_ref)})
        EXPECT_THAT(check({{"P", zero}}, {}).rows, IsEmpty()) << toText(zero);
    EXPECT_THAT(check({{"P", number(1)}}, {}).rows, ElementsAre("P=1"));
    EXPECT_THAT(check({{"P", text("")}}, {}).rows, ElementsAre("P="));
}

TEST_F(ModifiableProperties, refusedNamesAreJoinedAndDoNotFail) {
    allow("Size");
    const Outcome outcome =
        check({{"Size", number(2)}, {"size2", text("a")}, {"Colour", text("b")}}, {{"Size", number(1)}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.refused, "size2, Colour");
    EXPECT_THAT(outcome.rows, ElementsAre("Size=2"));
}

TEST_F(ModifiableProperties, propertyListTakesItsNamesWhateverTheirValue) {
    allow("Size", data(number(7)));
    allow("Colour", data(text("none")));
    const NamedValues modified = {{"Size", number(1)}, {"Other", text("x")}};
    const Outcome outcome = check(modified, {{"Size", number(1)}}, {{"Colour", "Size"}});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.refused, "");
    EXPECT_THAT(outcome.rows, ElementsAre("Colour=none", "Size=1"))
        << "in the list's order, the default where missing";
    EXPECT_THAT(check(modified, {}, {{}}).rows, IsEmpty());
}

TEST_F(ModifiableProperties, propertyListEndsAtAForeignName) {
    const Outcome none = check({{"ElementName", text("a")}}, {}, {{"ElementName"}});
    EXPECT_EQ(none.code, -1);
    EXPECT_EQ(none.refused, "ElementName");

    allow("Size");
    const Outcome outcome = check({{"Size", number(1)}}, {}, {{"Size", "size", "Colour"}});
    EXPECT_EQ(outcome.code, -1);
    EXPECT_EQ(outcome.refused, "size");
    EXPECT_THAT(outcome.rows, ElementsAre("Size=1"));
}

TEST_F(ModifiableProperties, fullListsAreNotOverrun) {
    NamedValues modified;
    for (int i = 0; i < 65; ++i) {
        const std::string name = "Property" + std::to_string(i);
        modified.push_back({name, number(1)});
        if (i < 64)
            allow(name.c_str());
    }
    const Outcome outcome = check(modified, {});
    EXPECT_EQ(outcome.rows.size(), 64U);
    EXPECT_EQ(outcome.refused, "Property64");

    // 64 names of 63 characters do not fit the text of the refused ones.
    defaults->count = 0;
    modified.clear();
    for (int i = 0; i < 64; ++i)
        modified.push_back({std::to_string(i + 100) + std::string(60, 'x'), number(1)});
    EXPECT_EQ(check(modified, {}).refused.size(), PH_REFUSED_NAMES_SIZE - 1U);
}

} // namespace
