// Object paths: their text form, and CMPIObjectPath.
#include "broker/broker.h"
#include "chars.h"

#include <cmpimacs.h>
#include <gmock/gmock.h>

namespace {

using broker::Broker;
using broker::ObjectPath;
using broker::PathSyntaxError;
using broker::Scope;
using broker::Value;
using testing::HasSubstr;

Value text(const char* chars) {
    return {CMPI_string, std::string(chars)};
}

struct TextCase {
    const char* text;
    ObjectPath path;
};

const TextCase texts[] = {
    {"CIM_X", {"", "", "CIM_X", {}}},
    {"root/cimv2:CIM_X", {"", "root/cimv2", "CIM_X", {}}},
    {"//bmc.example:5989/root/cimv2:CIM_X.Name=\"a\"",
     {"bmc.example:5989", "root/cimv2", "CIM_X", {{"Name", text("a")}}}},
    {"CIM_X.Name=\"\"", {"", "", "CIM_X", {{"Name", text("")}}}},
    {"CIM_X.A=\"1, B=\\\"2\\\" \\\\ .:=\",B=\"x\"",
     {"", "", "CIM_X", {{"A", text("1, B=\"2\" \\ .:=")}, {"B", text("x")}}}},
    {"CIM_X.A=3,B=-4,C=TRUE,D=FALSE",
     {"",
      "",
      "CIM_X",
      {{"A", {CMPI_uint64, std::uint64_t{3}}},
       {"B", {CMPI_sint64, std::int64_t{-4}}},
       {"C", {CMPI_boolean, true}},
       {"D", {CMPI_boolean, false}}}}},
    {"CIM_X.A=18446744073709551615", {"", "", "CIM_X", {{"A", {CMPI_uint64, ~std::uint64_t{0}}}}}},
};

TEST(ObjectPathText, roundTrip) {
    for (const TextCase& row : texts) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(broker::parseObjectPath(row.text), row.path);
        EXPECT_EQ(toText(row.path), row.text);
    }
}

TEST(ObjectPathText, referenceKeyIsWrittenAsText) {
    const auto inner = std::make_shared<const ObjectPath>(ObjectPath{"", "", "CIM_Y", {{"K", text("v")}}});
    const ObjectPath outer{"", "", "CIM_X", {{"Ref", {CMPI_ref, inner}}}};
    EXPECT_EQ(toText(outer), "CIM_X.Ref=\"CIM_Y.K=\\\"v\\\"\"");
    EXPECT_EQ(broker::parseObjectPath(toText(outer)).keys[0].value, text("CIM_Y.K=\"v\""));
}

struct ErrorCase {
    const char* text;
    size_t position;
    const char* message;
};

constexpr ErrorCase errors[] = {
    {"", 0, "a class name"},
    {"1X", 0, "a class name"},
    {"//host", 0, "a host name"},
    {"///root:CIM_X", 0, "a host name"},
    {"//host/CIM_X", 7, "a namespace"},
    {"root//cimv2:CIM_X", 5, "a name in the namespace"},
    {"root cimv2:CIM_X", 4, "namespace"},
    {":CIM_X", 0, "a name in the namespace"},
    {"root:", 5, "a class name"},
    {"CIM_X Y", 5, "after the class name"},
    {"CIM_X.", 6, "a key name"},
    {"CIM_X.Name", 10, "after key name \"Name\""},
    {"CIM_X.Name=", 11, "expected a quoted text"},
    {"CIM_X.Name=a", 11, "expected a quoted text"},
    {"CIM_X.Name=3x", 11, "expected a quoted text"},
    {"CIM_X.Name=\"a", 13, "missing '\"'"},
    {"CIM_X.Name=\"a\\n\"", 14, "after a backslash"},
    {"CIM_X.Name=\"a\"b", 14, "expected ','"},
    {"CIM_X.Name=\"a\",", 15, "a key name"},
    {"CIM_X.Name=\"a\",name=\"b\"", 15, "given twice"},
    {"CIM_X.Name=18446744073709551616", 11, "64 bits"},
    {"CIM_X.Name=-9223372036854775809", 11, "64 bits"},
};

TEST(ObjectPathText, syntaxErrorsSayWhere) {
    for (const ErrorCase& row : errors) {
        SCOPED_TRACE(row.text);
        try {
            broker::parseObjectPath(row.text);
            ADD_FAILURE() << "accepted";
        } catch (const PathSyntaxError& error) {
            EXPECT_EQ(error.position, row.position) << error.what();
            EXPECT_THAT(error.what(), HasSubstr(row.message));
            EXPECT_THAT(error.what(), HasSubstr("position " + std::to_string(row.position + 1)));
        }
    }
}

TEST(ObjectPath, partsThroughCmpi) {
    Broker broker;
    Scope scope(broker);
    CMPIObjectPath* path = CMNewObjectPath(broker.handle(), nullptr, nullptr, nullptr);
    EXPECT_STREQ(CMGetCharPtr(CMGetNameSpace(path, nullptr)), "");
    CMSetClassName(path, "CIM_X");
    CMSetHostname(path, "host");
    CMSetNameSpace(path, "root/a");
    EXPECT_STREQ(CMGetCharPtr(CMGetClassName(path, nullptr)), "CIM_X");
    EXPECT_STREQ(CMGetCharPtr(CMGetHostname(path, nullptr)), "host");
    EXPECT_STREQ(CMGetCharPtr(CMGetNameSpace(path, nullptr)), "root/a");

    CMPIObjectPath* other = scope.make(ObjectPath{"other", "root/b", "CIM_Y", {}});
    CMSetNameSpaceFromObjectPath(path, other);
    EXPECT_EQ(broker::toObjectPath(path), (ObjectPath{"host", "root/b", "CIM_X", {}}));
    CMSetNameSpace(other, "root/c");
    CMSetHostAndNameSpaceFromObjectPath(path, other);
    EXPECT_EQ(broker::toObjectPath(path), (ObjectPath{"other", "root/c", "CIM_X", {}}));
    EXPECT_STREQ(CMGetCharPtr(path->ft->toString(path, nullptr)), "//other/root/c:CIM_X");
}

TEST(ObjectPath, keysThroughCmpi) {
    Broker broker;
    Scope scope(broker);
    CMPIObjectPath* path = scope.make(ObjectPath{"", "", "CIM_X", {}});
    const CMPIValue number{.uint16 = 3};
    EXPECT_EQ(CMAddKey(path, "Name", chars("a"), CMPI_chars).rc, CMPI_RC_OK);
    EXPECT_EQ(CMAddKey(path, "Index", &number, CMPI_uint16).rc, CMPI_RC_OK);
    EXPECT_EQ(CMAddKey(path, "NAME", chars("b"), CMPI_chars).rc, CMPI_RC_OK) << "replaces Name";
    ASSERT_EQ(CMGetKeyCount(path, nullptr), 2U);

    CMPIString* name = nullptr;
    const CMPIData first = CMGetKeyAt(path, 0, &name, nullptr);
    EXPECT_STREQ(CMGetCharPtr(name), "Name");
    EXPECT_EQ(first.type, CMPI_string);
    EXPECT_EQ(first.state, CMPI_keyValue);
    EXPECT_STREQ(CMGetCharPtr(first.value.string), "b");
    EXPECT_EQ(CMGetKey(path, "index", nullptr).value.uint16, 3);

    CMPIStatus status{};
    EXPECT_TRUE(CMIsNullValue(CMGetKey(path, "Other", &status)));
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMGetKeyAt(path, 2, nullptr, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);

    EXPECT_EQ(CMAddKey(path, "List", nullptr, CMPI_stringA).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(CMAddKey(path, "Embedded", nullptr, CMPI_instance).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(CMAddKey(path, nullptr, chars("a"), CMPI_chars).rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CMAddKey(path, "Missing", nullptr, CMPI_string).rc, CMPI_RC_OK);
    EXPECT_EQ(CMGetKey(path, "Missing", nullptr).state, CMPI_keyValue | CMPI_nullValue);
}

} // namespace
