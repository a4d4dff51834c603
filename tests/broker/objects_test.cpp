// Instances, arrays, arguments and contexts, and what every function table has in common.
#include "broker/broker.h"
#include "chars.h"

#include <cmpimacs.h>
#include <cstddef>
#include <cstring>
#include <gmock/gmock.h>

namespace {

using broker::Broker;
using broker::Instance;
using broker::NamedValues;
using broker::ObjectPath;
using broker::Scope;

class Objects : public testing::Test {
protected:
    Broker broker;
    Scope scope{broker};
    const CMPIBroker* handle = broker.handle();
    CMPIStatus status{};
    const CMPIValue seven{.uint16 = 7};
};

TEST_F(Objects, instanceBeginsWithThePathsKeys) {
    const ObjectPath path{
        "",
        "root",
        "CIM_X",
        {{"Name", {CMPI_string, std::string("a")}}, {"Index", {CMPI_uint64, std::uint64_t{3}}}}};
    CMPIInstance* instance = CMNewInstance(handle, scope.make(path), &status);
    EXPECT_EQ(broker::toInstance(instance), (Instance{path, path.keys}));
    EXPECT_EQ(broker::toObjectPath(CMGetObjectPath(instance, nullptr)), path);
    EXPECT_EQ(CMGetProperty(instance, "Name", nullptr).state, CMPI_goodValue);

    // An integer key of a text path has 64 bits; the provider knows the type.
    EXPECT_EQ(CMSetProperty(instance, "Index", &seven, CMPI_uint16).rc, CMPI_RC_OK);
    EXPECT_EQ(CMGetProperty(instance, "Index", nullptr).type, CMPI_uint16);

    CMPIObjectPath* other = scope.make(ObjectPath{"", "root", "CIM_Y", {}});
    EXPECT_EQ(CMSetObjectPath(instance, other).rc, CMPI_RC_OK);
    EXPECT_STREQ(CMGetCharPtr(CMGetClassName(CMGetObjectPath(instance, nullptr), nullptr)), "CIM_Y");
}

TEST_F(Objects, propertiesKeepTheirType) {
    CMPIInstance* instance = scope.make(Instance{});
    EXPECT_EQ(CMSetProperty(instance, "Size", &seven, CMPI_uint16).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "size", chars("7"), CMPI_chars).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(CMSetProperty(instance, "SIZE", nullptr, CMPI_uint16).rc, CMPI_RC_OK);
    EXPECT_EQ(broker::toInstance(instance).properties, (NamedValues{{"Size", {CMPI_uint16, {}}}}));

    CMPIArray* numbers = CMNewArray(handle, 1, CMPI_uint16, nullptr);
    CMPIValue value{.array = numbers};
    EXPECT_EQ(CMSetProperty(instance, "List", &value, CMPI_uint8A).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    EXPECT_EQ(CMSetProperty(instance, "List", &value, CMPI_uint16A).rc, CMPI_RC_OK);
    EXPECT_EQ(CMSetProperty(instance, "Data", &value, CMPI_ptr).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
    EXPECT_EQ(CMSetProperty(instance, "", &seven, CMPI_uint16).rc, CMPI_RC_ERR_INVALID_PARAMETER);

    // What is set stays as it was when the array changes afterwards.
    CMSetArrayElementAt(numbers, 0, &seven, CMPI_uint16);
    EXPECT_TRUE(
        CMIsNullValue(CMGetArrayElementAt(CMGetProperty(instance, "List", nullptr).value.array, 0, nullptr)));
}

TEST_F(Objects, filterPassesOverUnwantedProperties) {
    const ObjectPath path{"", "", "CIM_X", {{"Name", {CMPI_string, std::string("a")}}}};
    CMPIInstance* instance = CMNewInstance(handle, scope.make(path), nullptr);
    const char* wanted[] = {"SIZE", nullptr};
    const char* keys[] = {"Id", nullptr};
    EXPECT_EQ(CMSetPropertyFilter(instance, wanted, keys).rc, CMPI_RC_OK);
    for (const char* name : {"Name", "Size", "Id", "Weight"})
        EXPECT_EQ(CMSetProperty(instance, name, nullptr, CMPI_string).rc, CMPI_RC_OK);
    EXPECT_EQ(CMGetPropertyCount(instance, nullptr), 3U);
    CMGetProperty(instance, "Weight", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    CMSetPropertyFilter(instance, nullptr, nullptr);
    CMSetProperty(instance, "Weight", nullptr, CMPI_string);
    EXPECT_EQ(CMGetPropertyCount(instance, nullptr), 4U);
}

TEST_F(Objects, arrayElements) {
    CMPIArray* array = CMNewArray(handle, 2, CMPI_string, &status);
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(CMGetArrayCount(array, nullptr), 2U);
    EXPECT_EQ(CMGetArrayType(array, nullptr), CMPI_string);
    EXPECT_EQ(CMSetArrayElementAt(array, 1, chars("b"), CMPI_chars).rc, CMPI_RC_OK);
    const CMPIData unset = CMGetArrayElementAt(array, 0, &status);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
    EXPECT_EQ(unset.type, CMPI_string);
    EXPECT_EQ(unset.state, CMPI_nullValue);
    EXPECT_EQ(unset.value.string, nullptr);
    EXPECT_STREQ(CMGetCharPtr(CMGetArrayElementAt(array, 1, nullptr).value.string), "b");

    EXPECT_EQ(CMSetArrayElementAt(array, 2, chars("c"), CMPI_chars).rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    EXPECT_EQ(CMSetArrayElementAt(array, 0, &seven, CMPI_uint16).rc, CMPI_RC_ERR_TYPE_MISMATCH);
    CMGetArrayElementAt(array, 2, &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    for (const int code : {CMPI_stringA, CMPI_null, CMPI_ptr, CMPI_args}) {
        const auto type = static_cast<CMPIType>(code);
        EXPECT_EQ(CMNewArray(handle, 1, type, &status), nullptr) << type;
        EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
    }
    EXPECT_EQ(CMGetArrayType(CMNewArray(handle, 1, CMPI_chars, nullptr), nullptr), CMPI_string);
}

TEST_F(Objects, argumentsAndContext) {
    CMPIArgs* arguments = CMNewArgs(handle, nullptr);
    CMAddArg(arguments, "Number", &seven, CMPI_uint16);
    CMAddArg(arguments, "Text", chars("t"), CMPI_chars);
    EXPECT_EQ(broker::toNamedValues(arguments), (NamedValues{{"Number", {CMPI_uint16, std::uint64_t{7}}},
                                                             {"Text", {CMPI_string, std::string("t")}}}));
    CMPIString* name = nullptr;
    EXPECT_EQ(CMGetArgAt(arguments, 0, &name, nullptr).value.uint16, 7);
    EXPECT_STREQ(CMGetCharPtr(name), "Number");
    EXPECT_EQ(CMGetArgCount(arguments, nullptr), 2U);
    CMGetArg(arguments, "None", &status);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);

    CMPIContext* context = scope.makeContext({{CMPIPrincipal, {CMPI_string, std::string("admin")}}});
    CMAddContextEntry(context, CMPIRole, chars("operator"), CMPI_chars);
    EXPECT_STREQ(CMGetCharPtr(CMGetContextEntry(context, CMPIPrincipal, nullptr).value.string), "admin");
    EXPECT_EQ(CMGetContextEntryCount(context, nullptr), 2U);
}

TEST_F(Objects, tellWhatTheyAre) {
    const CMPIInstance* instance = scope.make(Instance{{"", "", "CIM_X", {}}, {}});
    EXPECT_STREQ(CMGetCharPtr(CDGetType(handle, instance, nullptr)), "CMPIInstance");
    EXPECT_STREQ(CMGetCharPtr(CDToString(handle, instance, nullptr)), "instance of CIM_X");
    EXPECT_TRUE(CMObjectIsA(handle, instance, "CMPIInstance", nullptr));
    EXPECT_FALSE(CMObjectIsA(handle, CMNewArgs(handle, nullptr), "CMPIInstance", nullptr));
    EXPECT_TRUE(CMClassPathIsA(handle, CMGetObjectPath(instance, nullptr), "cim_x", nullptr));
    EXPECT_FALSE(CMClassPathIsA(handle, CMGetObjectPath(instance, nullptr), "CIM_Base", nullptr));
}

TEST_F(Objects, logReachesTheHandler) {
    std::vector<std::string> lines;
    broker.setLogHandler([&](const auto& id, const auto& text) { lines.push_back(id + ':' + text); });
    CMLogMessage(handle, CMPI_SEV_ERROR, "id", "text", nullptr);
    CMTraceMessage(handle, CMPI_LEV_INFO, "component", "text", CMNewString(handle, "string", nullptr));
    EXPECT_THAT(lines, testing::ElementsAre("id:text", "component:string"));
}

TEST_F(Objects, missingArgumentsAreRefused) {
    EXPECT_EQ(CMNewString(handle, nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CMNewInstance(handle, nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(handle->eft->newArgs(nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
    const CMPIString* string = CMNewString(handle, "", nullptr);
    EXPECT_EQ(string->ft->getCharPtr(nullptr, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
    const CMPIResult* result = scope.makeResult();
    EXPECT_EQ(CMReturnInstance(result, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
    EXPECT_EQ(CMGetProperty(scope.make(Instance{}), nullptr, &status).state, CMPI_nullValue | CMPI_notFound);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(CBDeliverIndication(handle, nullptr, "root", nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
    const CMPIValue nothing{};
    EXPECT_EQ(CMSetProperty(scope.make(Instance{}), "P", &nothing, CMPI_string).rc, CMPI_RC_OK)
        << "a null string";
}

// Any member can be called: none is missing, and those that this broker does not have say so.
template <class Table>
bool hasEveryMember(const Table* table, size_t offset) {
    const auto* members = reinterpret_cast<const char*>(table);
    for (; offset < sizeof(Table); offset += sizeof(void*)) {
        void* member = nullptr;
        std::memcpy(&member, members + offset, sizeof(member));
        if (member == nullptr)
            return false;
    }
    return true;
}

TEST_F(Objects, tablesAreComplete) {
    EXPECT_TRUE(hasEveryMember(handle->bft, offsetof(CMPIBrokerFT, prepareAttachThread)));
    EXPECT_TRUE(hasEveryMember(handle->eft, offsetof(CMPIBrokerEncFT, newInstance)));
    EXPECT_TRUE(hasEveryMember(handle->xft, offsetof(CMPIBrokerExtFT, resolveFileName)));
    EXPECT_TRUE(hasEveryMember(handle->mft, offsetof(CMPIBrokerMemFT, mark)));
    EXPECT_TRUE(hasEveryMember(scope.make(Instance{})->ft, offsetof(CMPIInstanceFT, release)));
    EXPECT_TRUE(hasEveryMember(scope.make(ObjectPath{})->ft, offsetof(CMPIObjectPathFT, release)));
    EXPECT_TRUE(hasEveryMember(scope.makeArgs()->ft, offsetof(CMPIArgsFT, release)));
    EXPECT_TRUE(hasEveryMember(scope.makeContext()->ft, offsetof(CMPIContextFT, release)));
    EXPECT_TRUE(hasEveryMember(scope.makeResult()->ft, offsetof(CMPIResultFT, release)));
    EXPECT_TRUE(hasEveryMember(CMNewString(handle, "", nullptr)->ft, offsetof(CMPIStringFT, release)));
    EXPECT_TRUE(
        hasEveryMember(CMNewArray(handle, 0, CMPI_uint8, nullptr)->ft, offsetof(CMPIArrayFT, release)));
    EXPECT_TRUE(hasEveryMember(CMNewDateTime(handle, nullptr)->ft, offsetof(CMPIDateTimeFT, release)));

    EXPECT_EQ(handle->bft->execQuery(handle, nullptr, nullptr, "", "", &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_EQ(handle->bft->setProperty(handle, nullptr, nullptr, "", nullptr, 0).rc,
              CMPI_RC_ERR_NOT_SUPPORTED);
    EXPECT_TRUE(CMIsNullValue(handle->bft->getProperty(handle, nullptr, nullptr, "", nullptr)));
    EXPECT_EQ(handle->eft->getMessage(handle, "", "", &status, 0), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Objects, conversionsRefuseWhatNoValueHolds) {
    EXPECT_THROW(broker::toInstance(nullptr), std::runtime_error);
    EXPECT_THROW(broker::toObjectPath(nullptr), std::runtime_error);
    EXPECT_THROW(broker::toValue({.type = CMPI_ptr, .state = CMPI_goodValue, .value = {}}),
                 std::runtime_error);
    EXPECT_EQ(broker::toString(nullptr), "");
}

} // namespace
