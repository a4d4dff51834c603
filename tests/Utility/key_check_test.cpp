// The keys of a request's object path.
#include "broker_fixture.h"
#include "provider_helper/utility.h"

namespace {

using broker::NamedValues;
using broker::ObjectPath;

constexpr const char* expectedNames[] = {"CreationClassName", "Name"};

const broker::NamedValue creation{"CreationClassName", text("c")};

const std::tuple<const char*, NamedValues, CMPIrc, const char*> refusals[] = {
    {"one of two", {{"Name", text("a")}}, CMPI_RC_ERR_FAILED, "Key Property Missing"},
    {"none", {}, CMPI_RC_ERR_FAILED, "Key Property Missing"},
    {"boolean", {{"Name", {CMPI_boolean, true}}, creation}, CMPI_RC_ERR_TYPE_MISMATCH, "Invalid Data Type"},
    {"type comes first",
     {{"Other", {CMPI_real32, 1.0}}, creation},
     CMPI_RC_ERR_TYPE_MISMATCH,
     "Invalid Data Type"},
    {"character",
     {{"Name", number(65, CMPI_char16)}, creation},
     CMPI_RC_ERR_TYPE_MISMATCH,
     "Invalid Data Type"},
    {"foreign name", {creation, {"Other", text("a")}}, CMPI_RC_ERR_NO_SUCH_PROPERTY, "No Such Key Property"},
    {"another case", {creation, {"name", text("a")}}, CMPI_RC_ERR_NO_SUCH_PROPERTY, "No Such Key Property"},
    {"one more",
     {creation, {"Name", text("a")}, {"O", text("b")}},
     CMPI_RC_ERR_NO_SUCH_PROPERTY,
     "No Such Key Property"},
    {"no text", {creation, {"Name", null(CMPI_string)}}, CMPI_RC_ERR_INVALID_PARAMETER, "Key Value Missing"},
    {"double quote", {creation, {"Name", text("a\"b")}}, CMPI_RC_ERR_INVALID_PARAMETER, "Invalid Key Value"},
    {"quote at the end",
     {creation, {"Name", text("ab'")}},
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
    for (const auto& [what, keys, code, message] : refusals) {
        SCOPED_TRACE(what);
        EXPECT_EQ(check(keys), -1);
        EXPECT_EQ(status.rc, code);
        EXPECT_EQ(broker::toString(status.msg), message);
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
    EXPECT_EQ(check({{"Name", number(1, CMPI_uint8)}, {"CreationClassName", negative(CMPI_sint64, -1)}}), 0);
    EXPECT_EQ(values[0], nullptr);
    EXPECT_EQ(values[1], nullptr);
}

TEST_F(KeyCheck, withoutExpectedNamesOnlyAPathWithoutKeysPasses) {
    EXPECT_EQ(check({}, 0), 0);
    EXPECT_EQ(check({{"Name", text("a")}}, 0), -1);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

} // namespace
