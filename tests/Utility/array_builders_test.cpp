// Native lists and tables as CMPI arrays.
#include "broker_fixture.h"
#include "provider_helper/utility.h"

namespace {

class ArrayBuilders : public BrokerFixture {
protected:
    // Type and elements, "NULL" for no array.
    static std::string describe(CMPIArray* array) {
        if (array == nullptr)
            return "NULL";
        CMPIData data{.type = static_cast<CMPIType>(CMGetArrayType(array, nullptr) | CMPI_ARRAY),
                      .state = CMPI_goodValue,
                      .value = {}};
        data.value.array = array;
        return broker::typeName(data.type) + toText(broker::toValue(data));
    }

    // The same list whatever its width; all bits set end it.
    template <class Native>
    void expectSentinelRules(CMPIArray* (*dup)(const CMPIBroker*, const Native*, int),
                             const std::string& type) {
        SCOPED_TRACE(type);
        constexpr auto end = static_cast<Native>(-1);
        const Native list[] = {3, 0, end, 2, end};
        EXPECT_EQ(describe(dup(handle, list, 0)), type + "[]{3, 0}");
        EXPECT_EQ(describe(dup(handle, list, 1)), type + "[]{3}");
        EXPECT_EQ(describe(dup(handle, list, 4)), type + "[]{3, 0, NULL, NULL}");
        EXPECT_EQ(describe(dup(handle, list + 2, 0)), "NULL");
        EXPECT_EQ(describe(dup(handle, list + 2, 2)), type + "[]{NULL, NULL}");
        EXPECT_EQ(describe(dup(handle, list, -1)), "NULL");
        EXPECT_EQ(describe(dup(handle, nullptr, 1)), "NULL");
    }
};

TEST_F(ArrayBuilders, sentinelLists) {
    expectSentinelRules(PH_DupArray_uint8, "uint8");
    expectSentinelRules(PH_DupArray_uint16, "uint16");
    expectSentinelRules(PH_DupArray_uint64, "uint64");
    expectSentinelRules(PH_DupArray_sint32, "sint32");
    const int32_t negatives[] = {-2, -1};
    EXPECT_EQ(describe(PH_DupArray_sint32(handle, negatives, 0)), "sint32[]{-2}");
}

TEST_F(ArrayBuilders, uint16Lists) {
    const int list[] = {2, 0x10003, 0, -5, 4};
    EXPECT_EQ(describe(PH_Dup_uint16_Array(handle, list)), "uint16[]{2, 3, 0}");
    EXPECT_EQ(describe(PH_Dup_uint16_Array(handle, list + 3)), "uint16[]{}");
    EXPECT_EQ(describe(PH_Dup_uint16_Array(handle, nullptr)), "NULL");

    const uint16_t numbers[] = {1, 0xFFFF, 2};
    EXPECT_EQ(describe(Dup_uint16_Array(handle, 3, numbers)), "uint16[]{1, 65535, 2}");
    EXPECT_EQ(describe(Dup_uint16_Array(handle, 0, numbers)), "uint16[]{}");
    EXPECT_EQ(describe(Dup_uint16_Array(handle, -1, numbers)), "NULL");
    EXPECT_EQ(describe(Dup_uint16_Array(handle, 1, nullptr)), "NULL");
}

TEST_F(ArrayBuilders, textTables) {
    const char table[3][8] = {"one", "two", ""};
    EXPECT_EQ(describe(Dup_const_string_Array(handle, 2, table, 8)), "string[]{\"one\", \"two\"}");
    EXPECT_EQ(describe(Dup_const_string_Array(handle, 0, table, 8)), "string[]{}");
    EXPECT_EQ(describe(Dup_const_string_Array(handle, -1, table, 8)), "NULL");
    EXPECT_EQ(describe(Dup_const_string_Array(handle, 1, nullptr, 8)), "NULL");

    // Words are counted, not rows: three before the zero word, at a stride of four.
    alignas(4) const char words[5][4] = {"ab", "cd", "ef", "", "gh"};
    EXPECT_EQ(describe(PH_Dup_const_string_Array(handle, words, 4)), "string[]{\"ab\", \"cd\", \"ef\"}");
    alignas(4) const char rows[4][8] = {"phrase", "longer", "", "x"}; // two words a row
    EXPECT_EQ(describe(PH_Dup_const_string_Array(handle, rows, 8)),
              "string[]{\"phrase\", \"longer\", \"\", \"x\"}");
    EXPECT_EQ(describe(PH_Dup_const_string_Array(handle, words[3], 4)), "NULL");
    EXPECT_EQ(describe(PH_Dup_const_string_Array(handle, nullptr, 4)), "NULL");
}

TEST_F(ArrayBuilders, textPointers) {
    char one[] = "one";
    char two[] = "two";
    char* texts[] = {one, two, nullptr};
    EXPECT_EQ(describe(Dup_variable_string_Array(handle, 1, texts)), "string[]{\"one\"}");
    EXPECT_EQ(describe(Dup_variable_string_Array(handle, 0, texts)), "string[]{}");
    EXPECT_EQ(describe(Dup_variable_string_Array(handle, -1, texts)), "NULL");
    EXPECT_EQ(describe(PH_Dup_variable_string_Array(handle, texts)), "string[]{\"one\", \"two\"}");
    EXPECT_EQ(describe(PH_Dup_variable_string_Array(handle, texts + 2)), "NULL");
    EXPECT_EQ(describe(PH_Dup_variable_string_Array(handle, nullptr)), "NULL");
}

TEST_F(ArrayBuilders, brokerFailuresLeaveNothing) {
    const int list[] = {1, 2, -1};
    broker.failCall("newArray", 1);
    EXPECT_EQ(PH_Dup_uint16_Array(handle, list), nullptr);
    broker.failCall("setElementAt", 2);
    EXPECT_EQ(PH_Dup_uint16_Array(handle, list), nullptr);
    EXPECT_EQ(broker.liveObjects(), 0U);
}

// Their arrays may refer to the strings that they hold.
TEST_F(ArrayBuilders, stringsOfAStrictBrokerStay) {
    broker.beStrict([](const std::string&, std::string_view) { return CMPI_null; });
    char one[] = "one";
    char* const texts[] = {one, one, nullptr};
    CMPIArray* const array = PH_Dup_variable_string_Array(handle, texts);
    EXPECT_EQ(describe(array), "string[]{\"one\", \"one\"}");
    EXPECT_EQ(broker.calls("release"), 0U);
    broker.failCall("newString", 2);
    EXPECT_EQ(describe(PH_Dup_variable_string_Array(handle, texts)), "NULL");
}

} // namespace
