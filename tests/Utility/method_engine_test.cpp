// How the frame answers requests for methods, on a class made for it whose rules vary.
#include "broker_fixture.h"
#include "Utility/engine/class_family.h"

#include <new>
#include <string>

namespace {

using broker::NamedValues;
using broker::Reply;
using Keys = ph::Invocation::Keys;
using Closes = ph::Invocation::Closes;

std::string calledWith; // the value of the key

ph::MethodAnswer start(ph::MethodCall& call) {
    calledWith = call.key(0) != nullptr ? call.key(0) : "nothing";
    return ph::methodDone;
}
ph::MethodAnswer refuse(ph::MethodCall& call) {
    return call.refuse(CMPI_RC_ERR_INVALID_PARAMETER, "not now");
}
ph::MethodAnswer fail(ph::MethodCall&) {
    return ph::methodFailed;
}
ph::MethodAnswer exhaust(ph::MethodCall&) {
    throw std::bad_alloc();
}

constexpr ph::Method methods[] = {
    {.name = "Start", .parameters = {}, .carryOut = start},
    {.name = "Refuse", .parameters = {}, .carryOut = refuse},
    {.name = "RefuseWithValue", .parameters = {}, .carryOut = refuse, .refusedValue = ph::methodDone},
    {.name = "Fail", .parameters = {}, .carryOut = fail, .valueType = CMPI_sint32},
    {.name = "Exhaust", .parameters = {}, .carryOut = exhaust}};
constexpr const char* keys[] = {"Name"};

class MethodEngine : public BrokerFixture {
protected:
    struct Answer {
        CMPIrc code;
        std::string message;
        Reply reply;
    };

    Answer invoke(const ph::Invocation& rules, const char* method, const NamedValues& keyValues,
                  const char* className = "CIM_TestSwitch") {
        ph::ClassFamily family{};
        family.name = "CIM_TestSwitch";
        family.keys = keys;
        family.methods = methods;
        family.invocation = rules;
        calledWith.clear();
        CMPIResult* result = scope->makeResult();
        const CMPIStatus status =
            ph::engine::invoke(family, handle, scope->makeContext(), result,
                               scope->make(broker::ObjectPath{"", "root/cimv2", className, keyValues}),
                               method, nullptr, scope->makeArgs());
        return {status.rc, broker::toString(status.msg), broker::toReply(result)};
    }

    const NamedValues one{{"Name", text("one")}};
    const NamedValues wrong{{"Other", text("one")}};
};

TEST_F(MethodEngine, findsMethodsByNameInAnyCase) {
    EXPECT_EQ(invoke({}, "start", one).reply.values, std::vector{number(0, CMPI_uint32)});
    EXPECT_EQ(calledWith, "one");
    EXPECT_EQ(invoke({}, "FAIL", one).reply.values, std::vector{negative(CMPI_sint32, 2)});
    for (const char* unknown : {"Star", "Starts", "", static_cast<const char*>(nullptr)}) {
        const Answer answer = invoke({}, unknown, one);
        EXPECT_EQ(answer.code, CMPI_RC_ERR_METHOD_NOT_FOUND);
        EXPECT_EQ(answer.message, "No such method available");
        EXPECT_TRUE(answer.reply.values.empty());
    }
}

TEST_F(MethodEngine, checksInTheOrderOfTheClass) {
    const ph::Refusal badKeys{CMPI_RC_ERR_INVALID_PARAMETER, "bad keys"};
    const auto isNone = [](CMPIString* const*) { return false; };
    const ph::Refusal missing{CMPI_RC_ERR_NOT_FOUND, "missing"};
    const struct {
        ph::Invocation rules;
        const char* method;
        const NamedValues& keyValues;
        const char* refusal; // empty: none
    } cases[] = {
        {{.keys = Keys::First}, "None", wrong, "No Such Key Property"},
        {{.keys = Keys::First, .badKeys = badKeys}, "None", wrong, "bad keys"},
        {{.keys = Keys::AfterName, .badKeys = badKeys}, "None", wrong, "No such method available"},
        {{.keys = Keys::AfterName, .badKeys = badKeys}, "Start", wrong, "bad keys"},
        {{.keys = Keys::ByMethod, .badKeys = badKeys}, "Start", wrong, ""},
        {{.keys = Keys::First, .exists = isNone, .missing = missing},
         "None",
         one,
         "No such method available"},
        {{.keys = Keys::First, .exists = isNone, .missing = missing}, "Refuse", one, "missing"},
        {{.keys = Keys::AfterName, .exists = isNone, .missing = missing}, "Refuse", one, "missing"},
        {{.unknownMethod = {CMPI_RC_ERR_FAILED, "unknown"}}, "None", one, "unknown"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(invoke(each.rules, each.method, each.keyValues).message, each.refusal) << each.refusal;
    EXPECT_EQ(invoke({.keys = Keys::None}, "Start", {}).message, "");
    EXPECT_EQ(invoke({.keys = Keys::None}, "Start", {}, "CIM_Other").message, "No such method available");

    broker.failCall("newObjectPath", 1);
    const Answer early = invoke({.isTakenUpFirst = true}, "None", wrong);
    EXPECT_EQ(early.message, "Create CMPIObjectPath failed.");
    EXPECT_EQ(early.reply.values, std::vector{number(2, CMPI_uint32)});
}

TEST_F(MethodEngine, refusalsHaveAValueWhereTheMethodSaysSo) {
    EXPECT_TRUE(invoke({}, "Refuse", one).reply.values.empty());
    const Answer answer = invoke({}, "RefuseWithValue", one);
    EXPECT_EQ(answer.code, CMPI_RC_ERR_INVALID_PARAMETER);
    EXPECT_EQ(answer.message, "not now");
    EXPECT_EQ(answer.reply.values, std::vector{number(0, CMPI_uint32)});
    EXPECT_EQ(invoke({}, "Exhaust", one).message, "Out of memory");
}

TEST_F(MethodEngine, closesTheResultOnceWhereTheClassDoes) {
    const std::tuple<Closes, const char*, unsigned> cases[] = {
        {Closes::Never, "Start", 0},  {Closes::WhenDone, "Start", 1}, {Closes::WhenDone, "Fail", 0},
        {Closes::Always, "Start", 1}, {Closes::Always, "Refuse", 1},  {Closes::Always, "None", 1},
    };
    for (const auto& [closes, method, times] : cases) {
        broker.resetCalls();
        invoke({.closes = closes}, method, one);
        EXPECT_EQ(broker.calls("returnDone"), times) << method;
    }
}

} // namespace
