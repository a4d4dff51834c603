// The keys of a request's object path.
#include "broker_fixture.h"
#include "provider_helper/utility.h"

namespace {

using broker::NamedValues;
using broker::ObjectPath;

constexpr const char* expectedNames[] = {"CreationClassName", "Name"};

struct KeyCase {
    const char* what;
    NamedValues keys;
    CMPIrc code;
    const char* message;
};

const KeyCase refusals[] = {
    {"one key of two", {{"Name", text("a")}}, CMPI_RC_ERR_FAILED, "Key Property Missing"},
    {"no key", {}, CMPI_RC_ERR_FAILED, "Key Property Missing"},
    {"a boolean",
     {{"Name", {CMPI_boolean, true}}, {"CreationClassName", text("c")}},
     CMPI_RC_ERR_TYPE_MISMATCH,
     "Invalid Data Type"},
    {"a boolean of a foreign name", // the type comes first
     {{"Other", {CMPI_boolean, true}}, {"Name", text("a")}},
     CMPI_RC_ERR_TYPE_MISMATCH,
     "Invalid Data Type"},
    {"a real",
     {{"Name", {CMPI_real32, 1.0}}, {"CreationClassName", text("c")}},
     CMPI_RC_ERR_TYPE_MISMATCH,
     "Invalid Data Type"},
    {"a character",
     {{"Name", number(CMPI_char16, 65)}, {"CreationClassName", text("c")}},
     CMPI_RC_ERR_TYPE_MISMATCH,
     "Invalid Data Type"},
    {"a foreign name",
     {{"CreationClassName", text("c")}, {"Other", text("a")}},
     CMPI_RC_ERR_NO_SUCH_PROPERTY,
     "No Such Key Property"},
    {"a name in another case",
     {{"CreationClassName", text("c")}, {"name", text("a")}},
     CMPI_RC_ERR_NO_SUCH_PROPERTY,
     "No Such Key Property"},
    {"one key more",
     {{"CreationClassName", text("c")}, {"Name", text("a")}, {"Other", text("b")}},
     CMPI_RC_ERR_NO_SUCH_PROPERTY,
     "No Such Key Property"},
    {"no text",
     {{"CreationClassName", text("c")}, {"Name", null(CMPI_string)}},
     CMPI_RC_ERR_INVALID_PARAMETER,
     "Key Value Missing"},
    {"a double quote",
     {{"CreationClassName", text("c")}, {"Name", text("a\"b")}},
     CMPI_RC_ERR_INVALID_PARAMETER,
     "Invalid Key Value"},
    {"a single quote at the end",
     {{"CreationClassName", text("c")}, {"Name", text("ab'")}},
     CMPI_RC_ERR_INVALID_PARAMETER,
     "Invalid Key Value"},
};

class KeyCheck : public BrokerFixture {
protected:
    int check(const NamedValues& keys, int count = 2) {
        values[0] = values[1] = nullptr;
        status = {};
        return CheckForValidObjectPath(handle, scope->make(ObjectPath{"", "root/cimv2", "CIM_X", keys}),
                                       expectedNames, values, count, &status);
    }
    std::string value(int index) const { return broker::toString(values[index]); }

    CMPIString* values[2] = {};
    CMPIStatus status{};
};

TEST_F(KeyCheck, refusesWithCodeAndText) {
    for (const KeyCase& row : refusals) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(check(row.keys), -1);
        EXPECT_EQ(status.rc, row.code);
        EXPECT_EQ(broker::toString(status.msg), row.message);
    }
}

TEST_F(KeyCheck, storesTextsUnderTheirNames) {
    EXPECT_EQ(check({{"Name", text("a")}, {"CreationClassName", text("")}}), 0);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    ASSERT_NE(values[0], nullptr);
    EXPECT_EQ(value(0), "");
    EXPECT_EQ(value(1), "a");
}

TEST_F(KeyCheck, integersAreAcceptedAndNotStored) {
    EXPECT_EQ(check({{"Name", number(CMPI_uint8, 1)}, {"CreationClassName", negative(CMPI_sint64, -1)}}), 0);
    EXPECT_EQ(values[0], nullptr);
    EXPECT_EQ(values[1], nullptr);
}

TEST_F(KeyCheck, withoutExpectedNamesOnlyAPathWithoutKeysPasses) {
    EXPECT_EQ(check({}, 0), 0);
    EXPECT_EQ(check({{"Name", text("a")}}, 0), -1);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

} // namespace
