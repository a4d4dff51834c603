// The operations of a class family, on a class made for it.
#include "broker_fixture.h"
#include "class_requests.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"

#include <cstdlib>
#include <cstring>

// A property of every kind. A Note that is empty is not published, a Skipped one has no instance.
struct TestItemRecord {
    char Name[256];
    char CreationClassName[256];
    char ElementName[128];
    bool Flag;
    uint8_t Tiny;
    uint16_t State;
    uint32_t Size;
    uint64_t Total;
    int8_t Low;
    int16_t Lower;
    int32_t Lowest;
    int64_t Deep;
    float Ratio;
    double Share;
    int OperationalStatus[4];
    uint16_t Slots[3];
    char* Texts[4];
    char Note[16];
    bool skipped;
};

extern "C" {
PH_DECLARE_CLASS_FAMILY(TestItem, TestItemRecord);
}

namespace {

using broker::NamedValues;
using broker::Reply;
using broker::Value;
using testing::SizeIs;

struct TestSource {
    int items = 2;      // to enumerate
    int failAfter = -1; // so many are appended before it fails
    std::optional<ph::Detail> detail;
} source;

bool hasNote(const TestItemRecord& record) {
    return record.Note[0] != '\0';
}
const char* caption(const TestItemRecord& record) {
    return record.Tiny == 0 ? nullptr : record.Name;
}

struct TestPartRecord {
    char ElementName[128];
};
constexpr ph::Property partProperties[] = {PH_PROPERTY(TestPartRecord, ElementName)};
constexpr ph::ClassDefinition<TestPartRecord> partDefinition{
    .name = "CIM_TestPart", .superclass = nullptr, .source = "", .keys = {}, .properties = partProperties};
constexpr ph::ClassFamily partFamily = ph::detail::eraseTypes<TestPartRecord, partDefinition>();

// The first item has an owner, and a part that is named as it is.
ph::Reference owner(const TestItemRecord& record) {
    if (record.Tiny == 0)
        return {};
    return {"CIM_TestOwner", {{"Name", record.Name}, {"SystemName", "system"}}};
}
ph::EmbeddedInstance part(const TestItemRecord& record) {
    static TestPartRecord made;
    ph::copyText(made.ElementName, record.Name);
    return {&partFamily, record.Tiny == 0 ? nullptr : &made};
}

constexpr const char* itemKeys[] = {"CreationClassName", "Name"};
constexpr ph::Property itemProperties[] = {
    PH_KEY(TestItemRecord, Name),
    PH_KEY(TestItemRecord, CreationClassName),
    PH_PROPERTY(TestItemRecord, ElementName),
    PH_PROPERTY(TestItemRecord, Flag),
    PH_PROPERTY(TestItemRecord, Tiny),
    PH_PROPERTY(TestItemRecord, State),
    PH_PROPERTY(TestItemRecord, Size),
    PH_PROPERTY(TestItemRecord, Total),
    PH_PROPERTY(TestItemRecord, Low),
    PH_PROPERTY(TestItemRecord, Lower),
    PH_PROPERTY(TestItemRecord, Lowest),
    PH_PROPERTY(TestItemRecord, Deep),
    PH_PROPERTY(TestItemRecord, Ratio),
    PH_PROPERTY(TestItemRecord, Share),
    PH_PROPERTY(TestItemRecord, OperationalStatus),
    PH_PROPERTY(TestItemRecord, Slots),
    PH_PROPERTY(TestItemRecord, Texts),
    PH_PROPERTY_IF(TestItemRecord, Note, hasNote),
    PH_COMPUTED("Caption", caption),
    PH_TO_CLASS("Owner", "CIM_TestOwner", owner),
    PH_TO_CLASS("Part", "CIM_TestPart", part),
};

// Items "1", "2", …; the first one has everything at its limits, the second is as empty as can be.
int fill(TestItemRecord& record, int number, ph::Detail detail) {
    std::snprintf(record.Name, sizeof(record.Name), "%d", number);
    ph::copyText(record.CreationClassName, "CIM_TestItem");
    if (detail == ph::Detail::Names)
        return 0;
    ph::copyText(record.ElementName, record.Name);
    ph::setList(record.OperationalStatus, {});
    record.Slots[0] = record.Slots[1] = record.Slots[2] = 0xFFFF;
    record.skipped = number == 3;
    if (number != 1)
        return 0;
    record.Flag = true;
    record.Tiny = 0xFF;
    record.State = 0xFFFF;
    record.Size = 0xFFFFFFFF;
    record.Total = ~uint64_t{0};
    record.Low = INT8_MIN;
    record.Lower = INT16_MIN;
    record.Lowest = INT32_MIN;
    record.Deep = INT64_MIN;
    record.Ratio = 0.5F;
    record.Share = -0.25;
    ph::setList(record.OperationalStatus, {2, 17});
    record.Slots[0] = 5;
    record.Slots[1] = 0;
    ph::copyText(record.Note, "note");
    for (int i = 0; i < 2; ++i) {
        record.Texts[i] = strdup(i == 0 ? "a" : "b");
        if (record.Texts[i] == nullptr)
            return -1;
    }
    return 0;
}

int enumerate(ph::RecordArray<TestItemRecord>& records, ph::Detail detail) {
    source.detail = detail;
    for (int i = 0; i < source.items; ++i) {
        if (i == source.failAfter)
            return -1;
        TestItemRecord* record = records.append();
        if (record == nullptr || fill(*record, i + 1, detail) != 0)
            return -1;
    }
    return 0;
}

bool skip(const TestItemRecord& record) {
    return record.skipped;
}

CMPIStatus remove(const ph::Request&) {
    throw std::bad_alloc();
}

constexpr ph::ClassDefinition<TestItemRecord> definition{.name = "CIM_TestItem",
                                                         .superclass = nullptr,
                                                         .source = "",
                                                         .keys = itemKeys,
                                                         .properties = itemProperties,
                                                         .enumerate = enumerate,
                                                         .skip = skip,
                                                         .remove = remove};

} // namespace

PH_EXPORT_CLASS_FAMILY(TestItem, TestItemRecord, definition)

namespace {

NamedValues keysOf(const char* name) {
    return {{"Name", text(name)}, {"CreationClassName", text("CIM_TestItem")}};
}

class ClassEngine : public BrokerFixture {
protected:
    void SetUp() override {
        source = {};
        scope.reset(); // requests have their own
    }

    ClassRequests requests{broker, PH_CLASS_FUNCTIONS(TestItem)};
};

TEST_F(ClassEngine, publishesEveryKindOfProperty) {
    const Reply reply = requests.enumerate();
    ASSERT_THAT(reply.instances, SizeIs(2)) << reply.message;
    EXPECT_EQ(reply.instances[0].path, requests.path(keysOf("1")));
    EXPECT_EQ(
        reply.instances[0].properties,
        (NamedValues{
            {"Name", text("1")},
            {"CreationClassName", text("CIM_TestItem")},
            {"ElementName", text("1")},
            {"Flag", {CMPI_boolean, true}},
            {"Tiny", number(255, CMPI_uint8)},
            {"State", number(65535)},
            {"Size", number(4294967295, CMPI_uint32)},
            {"Total", number(UINT64_MAX, CMPI_uint64)},
            {"Low", negative(CMPI_sint8, INT8_MIN)},
            {"Lower", negative(CMPI_sint16, INT16_MIN)},
            {"Lowest", negative(CMPI_sint32, INT32_MIN)},
            {"Deep", negative(CMPI_sint64, INT64_MIN)},
            {"Ratio", {CMPI_real32, 0.5}},
            {"Share", {CMPI_real64, -0.25}},
            {"OperationalStatus", arrayOf(CMPI_uint16, {number(2), number(17)})},
            {"Slots", arrayOf(CMPI_uint16, {number(5), number(0)})},
            {"Texts", arrayOf(CMPI_string, {text("a"), text("b")})},
            {"Note", text("note")},
            {"Caption", text("1")},
            {"Owner",
             reference(
                 {"", "root/cimv2", "CIM_TestOwner", {{"Name", text("1")}, {"SystemName", text("system")}}})},
            {"Part", embedded({{"", "root/cimv2", "CIM_TestPart", {}}, {{"ElementName", text("1")}}})}}));
    // Without a value these are left out; numbers always have one, and a list may be empty.
    const NamedValues& empty = reply.instances[1].properties;
    for (const char* name : {"Slots", "Texts", "Note", "Caption", "Owner", "Part"})
        EXPECT_EQ(find(empty, name), nullptr) << name;
    EXPECT_EQ(*find(empty, "OperationalStatus"), arrayOf(CMPI_uint16, {}));
    EXPECT_EQ(*find(empty, "Total"), number(0, CMPI_uint64));
}

TEST_F(ClassEngine, skippedRecordsHaveAPathButNoInstance) {
    source.items = 3;
    EXPECT_THAT(requests.names().paths, SizeIs(3));
    EXPECT_EQ(source.detail, ph::Detail::Names) << "keys only";
    EXPECT_THAT(requests.enumerate().instances, SizeIs(2));
    EXPECT_EQ(source.detail, ph::Detail::All);
    EXPECT_THAT(*requests.instanceArray(), SizeIs(2));
}

// ---- Records, as a caller of the C functions has them

TEST_F(ClassEngine, recordsAreAppendedOrLeftAlone) {
    TestItemRecord* records = nullptr;
    int count = 0;
    ASSERT_EQ(PH_Enum_All_TestItem(&records, &count, 0), 0);
    ASSERT_EQ(PH_Enum_All_TestItem(&records, &count, 1), 0);
    ASSERT_EQ(count, 4);
    EXPECT_STREQ(records[2].Name, "1");
    EXPECT_STREQ(records[2].ElementName, "") << "names only";

    source.items = 40; // the array grows before it fails
    source.failAfter = 30;
    EXPECT_EQ(PH_Enum_All_TestItem(&records, &count, 0), -1);
    ASSERT_EQ(count, 4);
    EXPECT_STREQ(records[0].Texts[1], "b");
    PH_Clean_TestItem(&records, count);
    EXPECT_EQ(records, nullptr);
    PH_Clean_TestItem(&records, 0);

    source.failAfter = 0;
    count = 0;
    EXPECT_EQ(PH_Enum_All_TestItem(&records, &count, 0), -1);
    EXPECT_EQ(records, nullptr);
    EXPECT_EQ(count, 0);
}

TEST_F(ClassEngine, getHandsOutTheRecord) {
    scope.emplace(broker);
    const auto string = [&](const char* chars) { return data(text(chars)).value.string; };
    CMPIString* values[] = {string("CIM_TestItem"), string("1")}; // as in the key list
    TestItemRecord* record = nullptr;
    EXPECT_EQ(PH_Get_TestItem(&record, values), 0);
    ASSERT_NE(record, nullptr);
    EXPECT_STREQ(record->Name, "1");
    PH_Clean_TestItem(&record, 1);

    values[1] = string("9");
    EXPECT_EQ(PH_Get_TestItem(&record, values), -1);
    EXPECT_NE(record, nullptr) << "what was built is the caller's to clean";
    PH_Clean_TestItem(&record, 1);

    values[1] = nullptr;
    EXPECT_EQ(PH_Get_TestItem(&record, values), -1);
    PH_Clean_TestItem(&record, 1);
}

TEST_F(ClassEngine, makersFailWithTheirOwnText) {
    scope.emplace(broker);
    const CMPIObjectPath* ref = scope->make(requests.path());
    TestItemRecord record{};
    ASSERT_EQ(fill(record, 2, ph::Detail::All), 0);
    record.CreationClassName[0] = '\0';
    CMPIStatus status{};
    EXPECT_EQ(PH_MakePath_TestItem(handle, nullptr, ref, &record, &status), nullptr) << "a key is empty";
    EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(broker::toString(status.msg), "Make ObjectPath failed.");
    status = {};
    EXPECT_EQ(PH_MakeInst_TestItem(handle, nullptr, ref, nullptr, &record, 0, 0, &status), nullptr);
    EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(broker::toString(status.msg), "Make instance failed.");
    EXPECT_EQ(PH_MakeInst_TestItem(handle, nullptr, ref, nullptr, &record, 0, 0, nullptr), nullptr);

    ph::copyText(record.CreationClassName, "CIM_TestItem");
    const CMPIObjectPath* path = PH_MakePath_TestItem(handle, nullptr, ref, &record, &status);
    EXPECT_EQ(broker::toObjectPath(path), requests.path(keysOf("2")));
    const CMPIInstance* instance =
        PH_MakeInst_TestItem(handle, nullptr, ref, nullptr, &record, 0, 0, &status);
    EXPECT_EQ(broker::toInstance(instance).path, requests.path(keysOf("2")));
}

// ---- Failing broker calls

// Whoever asked for the whole array has nothing of it then: what was made is released.
TEST_F(ClassEngine, everyFailingBrokerCallFailsTheArray) {
    for (const char* call : {"getNameSpace", "newObjectPath", "addKey", "newInstance", "setProperty",
                             "newArray", "setElementAt"}) {
        broker.resetCalls();
        ASSERT_TRUE(requests.instanceArray());
        const unsigned count = broker.calls(call);
        EXPECT_GT(count, 0U) << call;
        for (unsigned nth = 1; nth <= count; ++nth) {
            broker.resetCalls();
            broker.failCall(call, nth);
            EXPECT_FALSE(requests.instanceArray()) << call << ' ' << nth;
            const unsigned failed = call == std::string("newArray") ? 1 : 0;
            EXPECT_EQ(broker.calls("release"), broker.calls("newArray") - failed) << call << ' ' << nth;
        }
    }
}

TEST_F(ClassEngine, handlersThatThrowFail) {
    scope.emplace(broker);
    EXPECT_EQ(PH_DI_TestItem(handle, nullptr, nullptr, nullptr).rc, CMPI_RC_ERR_FAILED);
}

TEST_F(ClassEngine, failureWithoutMemoryForItsTextKeepsTheCode) {
    source.failAfter = 0;
    broker.failCall("newString", 1);
    const Reply reply = requests.enumerate();
    EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED);
    EXPECT_EQ(reply.message, "");
}

} // namespace
