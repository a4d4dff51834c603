// Values of a client's request as native numbers, booleans and strings.
#include "broker_fixture.h"
#include "provider_helper/utility.h"

#include <cstdlib>
#include <memory>
#include <span>

namespace {

using broker::Value;
using Text = std::optional<std::string>; // of the result; none when the getter failed

template <auto getter, class Native>
Text get(CMPIData data) {
    constexpr Native untouched = 77;
    Native result = untouched;
    const int code = getter(data, &result);
    if (code == 0)
        return std::to_string(result);
    EXPECT_EQ(code, -1);
    EXPECT_EQ(result, untouched);
    return std::nullopt;
}

struct Getter {
    const char* name;
    Text (*get)(CMPIData);
    CMPIType native;
    Value extreme; // of the native type
    // Strings at the ends of the accepted range, and just beyond.
    const char* lowest;
    const char* highest;
    const char* tooLow;
    const char* tooHigh;
};

const Getter unsignedGetters[] = {
    {"UINT8", get<GetUINT8Value, uint8_t>, CMPI_uint8, number(255, CMPI_uint8), "0", "255", "-1", "256"},
    {"UINT16", get<GetUINT16Value, uint16_t>, CMPI_uint16, number(65535), "0", "65535", "-1", "65536"},
    {"UINT32", get<GetUINT32Value, uint32_t>, CMPI_uint32, number(UINT32_MAX, CMPI_uint32), "0", "4294967295",
     "-1", "4294967296"},
    {"UINT64", get<GetUINT64Value, uint64_t>, CMPI_uint64, number(UINT64_MAX, CMPI_uint64), "0", "4294967295",
     "-1", "4294967296"},
};

const Getter signedGetters[] = {
    {"SINT8", get<GetSINT8Value, int8_t>, CMPI_sint8, negative(CMPI_sint8, INT8_MIN), "-128", "+127", "-129",
     "+128"},
    {"SINT16", get<GetSINT16Value, int16_t>, CMPI_sint16, negative(CMPI_sint16, INT16_MIN), "-32768",
     "+32767", "-32769", "+32768"},
    {"SINT32", get<GetSINT32Value, int32_t>, CMPI_sint32, negative(CMPI_sint32, INT32_MIN), "-2147483648",
     "+2147483647", "-2147483649", "+2147483648"},
    {"SINT64", get<GetSINT64Value, int64_t>, CMPI_sint64, negative(CMPI_sint64, INT64_MIN), "-2147483648",
     "+2147483647", "-2147483649", "+2147483648"},
};

constexpr CMPIType otherTypes[] = {CMPI_null,    CMPI_boolean, CMPI_char16,  CMPI_real32,   CMPI_real64,
                                   CMPI_uint8,   CMPI_uint16,  CMPI_uint32,  CMPI_uint64,   CMPI_sint8,
                                   CMPI_sint16,  CMPI_sint32,  CMPI_sint64,  CMPI_dateTime, CMPI_chars,
                                   CMPI_uint16A, CMPI_stringA, CMPI_booleanA};

class TypedValues : public BrokerFixture {
protected:
    void expectRangeAndTypes(const Getter& getter) {
        SCOPED_TRACE(getter.name);
        const auto fromText = [&](const char* chars) { return getter.get(data(text(chars))); };
        const auto plain = [](const char* chars) { return *chars == '+' ? chars + 1 : chars; };
        EXPECT_EQ(getter.get(data(getter.extreme)), toText(getter.extreme));
        EXPECT_EQ(fromText(getter.lowest), plain(getter.lowest));
        EXPECT_EQ(fromText(getter.highest), plain(getter.highest));
        EXPECT_EQ(fromText(getter.tooLow), std::nullopt);
        EXPECT_EQ(fromText(getter.tooHigh), std::nullopt);
        EXPECT_EQ(fromText("+99999999999999999999999"), std::nullopt);
        EXPECT_EQ(fromText("99999999999999999999999"), std::nullopt);
        EXPECT_EQ(getter.get(stringData(nullptr)), "0");
        EXPECT_EQ(getter.get(stringData(stringWithoutText())), "0");
        for (const CMPIType type : otherTypes) {
            const Text expected = type == getter.native ? Text("0") : std::nullopt;
            EXPECT_EQ(getter.get({.type = type, .state = CMPI_goodValue, .value = {}}), expected) << type;
        }
    }
};

TEST_F(TypedValues, integerRangesAndTypes) {
    for (const Getter& getter : unsignedGetters)
        expectRangeAndTypes(getter);
    for (const Getter& getter : signedGetters)
        expectRangeAndTypes(getter);
}

TEST_F(TypedValues, textsOfNumbers) {
    struct Texts {
        std::span<const Getter> getters;
        std::vector<std::pair<const char*, const char*>> numbers;
        std::vector<const char*> others;
    };
    const Texts kinds[] = {
        {unsignedGetters,
         {{"7", "7"},
          {"007", "7"},
          {"010", "8"},
          {"0x1f", "31"},
          {"0XaB", "171"},
          {"0x", "0"},
          {"", "0"},
          {"08", "0"}},
         {"+5", " 5", "5 ", "1.5", "0x1g", "1f", "x1", "0b1", "true"}},
        // A signed one wants a sign.
        {signedGetters,
         {{"+5", "5"}, {"-5", "-5"}, {"-0x10", "-16"}, {"+010", "8"}, {"+", "0"}, {"-", "0"}, {"+0x", "0"}},
         {"5", "0x5", "--5", "+ 5", "-5a", "-0x1g"}}};
    for (const auto& [getters, numbers, others] : kinds) {
        const int isSigned = getters.data() == signedGetters;
        for (const Getter& getter : getters) {
            SCOPED_TRACE(getter.name);
            for (const auto& [chars, expected] : numbers)
                EXPECT_EQ(getter.get(data(text(chars))), expected) << chars;
            for (const char* chars : others)
                EXPECT_EQ(getter.get(data(text(chars))), std::nullopt) << chars;
        }
        for (const auto& [chars, expected] : numbers)
            EXPECT_TRUE(IsValidIntValue(chars, isSigned)) << chars;
        for (const char* chars : others)
            EXPECT_FALSE(IsValidIntValue(chars, isSigned)) << chars;
    }
    EXPECT_EQ((get<ParseToUnsignedInt, uint64_t>(data(text("0xFFFFFFFFFF")))), "1099511627775");
    EXPECT_EQ((get<ParseToUnsignedInt, uint64_t>(data(number(1, CMPI_uint64)))), std::nullopt);
    EXPECT_EQ((get<ParseToSignedInt, int64_t>(data(text("-0xFFFFFFFFFF")))), "-1099511627775");
}

TEST_F(TypedValues, booleans) {
    constexpr auto getBool = get<GetBoolValue, CMPIBoolean>;
    EXPECT_EQ(getBool(data({CMPI_boolean, true})), "1");
    EXPECT_EQ(getBool(data({CMPI_boolean, false})), "0");
    const std::pair<const char*, Text> texts[] = {
        {"TRUE", "1"},       {"true", "1"},      {"False", "0"},         {"yes", std::nullopt},
        {"1", std::nullopt}, {"", std::nullopt}, {"true ", std::nullopt}};
    for (const auto& [chars, expected] : texts)
        EXPECT_EQ(getBool(data(text(chars))), expected) << chars;
    EXPECT_EQ(getBool(stringData(nullptr)), "0");
    EXPECT_EQ(getBool(stringData(stringWithoutText())), "0");
    EXPECT_EQ(getBool(data(number(1, CMPI_uint8))), std::nullopt);
}

TEST_F(TypedValues, strings) {
    const CMPIData given = data(text("a"));
    CMPIString* result = nullptr;
    EXPECT_EQ(GetStringValue(given, &result), 0);
    EXPECT_EQ(result, given.value.string);
    for (CMPIString* none : {static_cast<CMPIString*>(nullptr), stringWithoutText()}) {
        result = given.value.string;
        EXPECT_EQ(GetStringValue(stringData(none), &result), 0);
        EXPECT_EQ(result, nullptr);
    }
    result = given.value.string;
    EXPECT_EQ(GetStringValue(data(number(1)), &result), -1);
    EXPECT_EQ(result, nullptr);
}

template <class Element>
struct ArrayResult {
    int code;
    std::unique_ptr<Element, decltype(&std::free)> buffer{nullptr, std::free};
    CMPICount count = 77;
    bool touched = true;
};

template <class Element>
ArrayResult<Element> getArray(int (*getter)(CMPIData, Element**, CMPICount*), const CMPIData& data) {
    Element untouched{};
    Element* buffer = &untouched;
    ArrayResult<Element> result{};
    result.code = getter(data, &buffer, &result.count);
    result.touched = buffer != &untouched;
    if (result.touched)
        result.buffer.reset(buffer);
    return result;
}

TEST_F(TypedValues, uint16Arrays) {
    using Numbers = std::vector<uint16_t>;
    const std::pair<Value, std::optional<Numbers>> cases[] = {
        {arrayOf(CMPI_uint16, {number(7), number(65535)}), Numbers{7, 65535}},
        {arrayOf(CMPI_uint16, {null(CMPI_uint16)}), Numbers{0}},
        {arrayOf(CMPI_uint16, {}), Numbers{}},
        {arrayOf(CMPI_string, {text("7"), text("0x10")}), Numbers{7, 16}},
        {arrayOf(CMPI_string, {text("7"), text("seven")}), std::nullopt},
        {arrayOf(CMPI_string, {text("65536")}), std::nullopt},
        {arrayOf(CMPI_uint64, {number(0x1'0005, CMPI_uint64)}), Numbers{5}}, // low 16 bits as they are
        {arrayOf(CMPI_uint32, {number(5, CMPI_uint32)}), std::nullopt},
    };
    for (const auto& [value, expected] : cases) {
        SCOPED_TRACE(toText(value));
        const auto result = getArray(GetUINT16AValue, data(value));
        EXPECT_EQ(result.code, expected ? 0 : -1);
        EXPECT_TRUE(result.touched);
        if (expected) {
            ASSERT_NE(result.buffer, nullptr);
            EXPECT_EQ(Numbers(result.buffer.get(), result.buffer.get() + result.count), *expected);
        } else {
            EXPECT_EQ(result.buffer, nullptr);
        }
    }
    const auto none = getArray(GetUINT16AValue, {.type = CMPI_uint16A, .state = CMPI_nullValue, .value = {}});
    EXPECT_EQ(none.code, 0);
    EXPECT_FALSE(none.touched);
    EXPECT_EQ(none.count, 77U);
    EXPECT_EQ(getArray(GetUINT16AValue, data(number(1))).code, -1);
}

TEST_F(TypedValues, stringArrays) {
    const Value strings = arrayOf(CMPI_string, {text("a"), null(CMPI_string), text("b")});
    for (const int type : {CMPI_stringA, CMPI_ARRAY}) {
        CMPIData given = data(strings);
        given.type = static_cast<CMPIType>(type);
        const auto result = getArray(GetStringAValue, given);
        ASSERT_EQ(result.code, 0);
        ASSERT_EQ(result.count, 3U);
        CMPIString** slots = result.buffer.get();
        EXPECT_STREQ(CMGetCharPtr(slots[0]), "a");
        EXPECT_EQ(slots[1], nullptr);
        EXPECT_STREQ(CMGetCharPtr(slots[2]), "b");
    }
    CMPIData numbers = data(arrayOf(CMPI_uint16, {number(1)}));
    EXPECT_EQ(getArray(GetStringAValue, numbers).code, -1) << "neither of the two type codes";
    numbers.type = CMPI_ARRAY;
    const auto result = getArray(GetStringAValue, numbers);
    EXPECT_EQ(result.code, -1);
    EXPECT_EQ(result.buffer, nullptr);
    const auto none = getArray(GetStringAValue, {.type = CMPI_stringA, .state = CMPI_nullValue, .value = {}});
    EXPECT_EQ(none.code, 0);
    EXPECT_FALSE(none.touched);
    EXPECT_EQ(none.count, 77U);
}

} // namespace
