// Indications as CIM-XML, read by a parser that nobody here wrote: that of the listener.
#include "interop_fixture.h"

#include <gmock/gmock.h>
#include <limits>

namespace {

using broker::Instance;
using broker::NamedValues;
using broker::ObjectPath;
using broker::Value;
using nlohmann::json;
using testing::HasSubstr;

class ExportMessage : public InteropFixture {
protected:
    ExportMessage() { startListener(); }

    // What the listener makes of an indication with these properties.
    json received(NamedValues properties) {
        const auto message =
            render(Instance{path("CIM_AlertIndication", {}, "root/interop"), std::move(properties)});
        if (!message || post(url(), message->c_str()) != 0)
            return "not sent";
        const auto requests = listener->records(++count_);
        return requests.size() == count_ ? requests.back() : json("not received");
    }

private:
    std::size_t count_ = 0;
};

TEST_F(ExportMessage, IsTheRequestOfTheProtocol) {
    const json request = received({{"EventID", text("0a")}});
    EXPECT_EQ(request["path"], "/cimom");
    EXPECT_EQ(request["headers"]["content-type"], "application/xml; charset=utf-8");
    EXPECT_EQ(request["headers"]["cimexport"], "MethodRequest");
    EXPECT_EQ(request["headers"]["cimexportmethod"], "ExportIndication");
    EXPECT_FALSE(request["headers"].contains("expect"));
    const auto id = request["message"].get<std::string>();
    EXPECT_EQ(request["body"],
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE "
              "ID=\"" +
                  id +
                  "\" PROTOCOLVERSION=\"1.0\"><SIMPLEEXPREQ><EXPMETHODCALL NAME=\"ExportIndication\">"
                  "<EXPPARAMVALUE NAME=\"NewIndication\"><INSTANCE CLASSNAME=\"CIM_AlertIndication\">"
                  "<PROPERTY NAME=\"EventID\" TYPE=\"string\"><VALUE>0a</VALUE></PROPERTY>"
                  "</INSTANCE></EXPPARAMVALUE></EXPMETHODCALL></SIMPLEEXPREQ></MESSAGE></CIM>");
    EXPECT_EQ(std::stoul(received({})["message"].get<std::string>()), std::stoul(id) + 1);
}

TEST_F(ExportMessage, HasAllTypesOfValues) {
    const auto unsignedNumber = [](CMPIType type, std::uint64_t value) { return Value{type, value}; };
    const auto signedNumber = [](CMPIType type, std::int64_t value) { return Value{type, value}; };
    const auto realNumber = [](CMPIType type, double value) { return Value{type, value}; };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    struct Case {
        Value value;
        const char* type;
        json arrives;
    };
    const std::vector<Case> cases{
        {{CMPI_boolean, true}, "boolean", "TRUE"},
        {{CMPI_boolean, false}, "boolean", "FALSE"},
        {unsignedNumber(CMPI_uint8, 255), "uint8", "255"},
        {unsignedNumber(CMPI_uint16, 65535), "uint16", "65535"},
        {unsignedNumber(CMPI_uint32, 4294967295), "uint32", "4294967295"},
        {unsignedNumber(CMPI_uint64, 18446744073709551615U), "uint64", "18446744073709551615"},
        {signedNumber(CMPI_sint8, -128), "sint8", "-128"},
        {signedNumber(CMPI_sint16, -32768), "sint16", "-32768"},
        {signedNumber(CMPI_sint32, -2147483648), "sint32", "-2147483648"},
        {signedNumber(CMPI_sint64, std::numeric_limits<std::int64_t>::min()), "sint64",
         "-9223372036854775808"},
        {realNumber(CMPI_real32, static_cast<double>(0.1F)), "real32", "0.1"},
        {realNumber(CMPI_real64, 5), "real64", "5.0"},
        {realNumber(CMPI_real64, 1e30), "real64", "1.0e+30"},
        {realNumber(CMPI_real64, -1.0 / 3), "real64", "-0.3333333333333333"},
        {realNumber(CMPI_real64, infinity), "real64", "INF"},
        {realNumber(CMPI_real64, -infinity), "real64", "-INF"},
        {realNumber(CMPI_real64, std::numeric_limits<double>::quiet_NaN()), "real64", "NaN"},
        {unsignedNumber(CMPI_char16, 0x6E29), "char16", "温"},
        {unsignedNumber(CMPI_char16, 0xD83D), "char16", "\uFFFD"}, // half a character
        {unsignedNumber(CMPI_char16, 0), "char16", "\uFFFD"},
        {text(""), "string", ""},
        {text("Fan 1(66)"), "string", "Fan 1(66)"},
        {{CMPI_dateTime, *broker::DateTime::parse("20260131235959.000000+060")},
         "datetime",
         "20260131235959.000000+060"},
        {{CMPI_dateTime, *broker::DateTime::parse("00000001020304.000000:000")},
         "datetime",
         "00000001020304.000000:000"},
        {{CMPI_uint16, {}}, "uint16", nullptr},
        {{CMPI_string, {}}, "string", nullptr},
        {{CMPI_dateTime, {}}, "datetime", nullptr},
        {arrayOf(CMPI_string, {text("a"), null(CMPI_string), text("")}), "string", {"a", nullptr, ""}},
        {texts({}), "string", json::array()},
        {{CMPI_stringA, {}}, "string", nullptr},
        {{CMPI_uint16A, Value::Array{unsignedNumber(CMPI_uint16, 1), unsignedNumber(CMPI_uint16, 2)}},
         "uint16",
         {"1", "2"}},
        {{CMPI_booleanA, Value::Array{{CMPI_boolean, true}}}, "boolean", {"TRUE"}},
    };
    NamedValues properties;
    for (std::size_t i = 0; i < cases.size(); ++i)
        properties.push_back({"P" + std::to_string(i), cases[i].value});
    const json request = received(properties);
    ASSERT_TRUE(request.contains("properties")) << request.dump(1);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        const json& property = request["properties"]["P" + std::to_string(i)];
        EXPECT_EQ(property["type"], cases[i].type) << i;
        EXPECT_EQ(property["value"], cases[i].arrives) << i << " " << cases[i].type;
        EXPECT_EQ(property["isArray"].get<bool>(), cases[i].value.isArray()) << i;
    }
}

TEST_F(ExportMessage, HasAnyText) {
    struct Case {
        std::string content, arrives;
    };
    const std::vector<Case> cases{
        {"<a href=\"x\">&amp;'</a> ]]> <!-- & -->", "<a href=\"x\">&amp;'</a> ]]> <!-- & -->"},
        {"  \tone\r\ntwo\rthree\n ", "  \tone\r\ntwo\rthree\n "},
        {"Gehäuse 温度 \U0001F525", "Gehäuse 温度 \U0001F525"},
        {"\x01\x08\x0B\x1F|\x7F", "\uFFFD\uFFFD\uFFFD\uFFFD|\x7F"},
        {"\xEF\xBF\xBE|\xEF\xBF\xBF", "\uFFFD|\uFFFD"},               // FFFEh and FFFFh are no characters
        {"\xC3|\xC3", "\uFFFD|\uFFFD"},                               // cut
        {"\xF0\x9F\x94|\x80", "\uFFFD\uFFFD\uFFFD|\uFFFD"},           //
        {"\xC0\xAF|\xE0\x80\xAF", "\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD"}, // longer than need be
        {"\xED\xA0\x80|\xF4\x90\x80\x80", "\uFFFD|\uFFFD"},           // a surrogate; beyond 10FFFFh
        {"\xF8\x88\x80\x80\x80|\xFF", "\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD|\uFFFD"},
    };
    NamedValues properties;
    for (const Case& c : cases)
        properties.push_back({"P" + std::to_string(properties.size()), text(c.content)});
    std::string everyByte;
    for (int lead = 1; lead < 256; ++lead)
        for (const char* next : {"", "\x80", "\xBF\x80", "a"})
            everyByte += static_cast<char>(lead) + std::string(next);
    properties.push_back({"Every<>&\"'\x02", text(everyByte)});
    const json request = received(properties);
    ASSERT_TRUE(request.contains("properties")) << request.dump(1);
    for (std::size_t i = 0; i < cases.size(); ++i)
        EXPECT_EQ(request["properties"]["P" + std::to_string(i)]["value"], cases[i].arrives) << i;
    EXPECT_TRUE(request["properties"].contains("Every<>&\"'\uFFFD"));
}

TEST_F(ExportMessage, HoldsInstances) {
    const Value inner = embedded({path("CIM_Inner"), {{"Text", text("<a>\r&")}}});
    const std::string xml = "<INSTANCE CLASSNAME=\"CIM_Inner\"><PROPERTY NAME=\"Text\" TYPE=\"string\">"
                            "<VALUE>&lt;a&gt;&#13;&amp;</VALUE></PROPERTY></INSTANCE>";
    const json request =
        received({{"One", inner}, {"Many", arrayOf(CMPI_instance, {inner})}, {"None", null(CMPI_instance)}});
    const json& one = request["properties"]["One"];
    EXPECT_EQ(one["type"], "string");
    EXPECT_EQ(one["embedded"], "instance");
    EXPECT_EQ(one["value"], xml);
    EXPECT_EQ(request["properties"]["Many"]["value"], json({xml}));
    EXPECT_EQ(request["properties"]["None"]["value"], nullptr);
}

TEST_F(ExportMessage, HoldsReferences) {
    const ObjectPath local = path("CIM_A", {{"Name", text("a&b")}}, "");
    const ObjectPath full{
        .host = "bmc",
        .nameSpace = "root/cimv2",
        .className = "CIM_B",
        .keys = {{"Number", number(7)}, {"Flag", {CMPI_boolean, true}}, {"Of", reference(local)}}};
    ObjectPath hostless = local;
    hostless.nameSpace = "root/cimv2";
    const json request = received({{"Local", reference(local)},
                                   {"Hostless", reference(hostless)},
                                   {"Full", reference(full)},
                                   {"None", null(CMPI_ref)}});
    const json& properties = request["properties"];
    const std::string inner = "<INSTANCENAME CLASSNAME=\"CIM_A\"><KEYBINDING NAME=\"Name\">"
                              "<KEYVALUE VALUETYPE=\"string\">a&amp;b</KEYVALUE></KEYBINDING></INSTANCENAME>";
    const std::string nameSpace =
        "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\" /><NAMESPACE NAME=\"cimv2\" /></LOCALNAMESPACEPATH>";
    const std::string value = "<VALUE.REFERENCE>", end = "</VALUE.REFERENCE>";
    EXPECT_EQ(properties["Local"]["value"], value + inner + end);
    EXPECT_EQ(properties["Hostless"]["value"],
              value + "<LOCALINSTANCEPATH>" + nameSpace + inner + "</LOCALINSTANCEPATH>" + end);
    EXPECT_EQ(properties["Full"]["value"],
              value + "<INSTANCEPATH><NAMESPACEPATH><HOST>bmc</HOST>" + nameSpace +
                  "</NAMESPACEPATH><INSTANCENAME CLASSNAME=\"CIM_B\"><KEYBINDING NAME=\"Number\">"
                  "<KEYVALUE VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING><KEYBINDING NAME=\"Flag\">"
                  "<KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE></KEYBINDING><KEYBINDING NAME=\"Of\">" +
                  value + inner + end + "</KEYBINDING></INSTANCENAME></INSTANCEPATH>" + end);
    EXPECT_EQ(properties["None"]["value"], nullptr);
}

TEST_F(ExportMessage, IsNotMadeOfWhatCannotBeExpressed) {
    EXPECT_EQ(render(nullptr), std::nullopt);
    const Instance references{path("CIM_A"), {{"P", arrayOf(CMPI_ref, {})}}};
    EXPECT_EQ(render(references), std::nullopt) << "CIM has no properties that are arrays of references";
}

// A thread that stays attached gives back what it asks for, whichever call fails.
TEST_F(ExportMessage, LeavesNothingBehind) {
    const Value time{CMPI_dateTime, *broker::DateTime::parse("20260131235959.000000+060")};
    const ObjectPath target{"bmc", "root", "CIM_A", {{"K", text("a")}}};
    const Instance instance{path("CIM_A"),
                            {{"Time", time},
                             {"Times", arrayOf(CMPI_dateTime, {time})},
                             {"Texts", texts({"a", "b"})},
                             {"None", null(CMPI_string)},
                             {"Inner", embedded({path("CIM_Inner"), {{"T", text("a")}}})},
                             {"Reference", reference(target)}}};
    broker::Scope scope(broker);
    const CMPIInstance* const indication = scope.make(instance);
    const std::size_t before = broker.liveObjects();
    EXPECT_NE(render(indication), std::nullopt);
    EXPECT_EQ(broker.liveObjects(), before);
    for (const auto& [call, nth] : {std::pair{"getObjectPath", 1},
                                    {"getPropertyCount", 1},
                                    {"getPropertyAt", 1},
                                    {"getPropertyAt", 4},
                                    {"getStringFormat", 1},
                                    {"getSize", 1},
                                    {"getElementAt", 1},
                                    {"getElementAt", 2}}) {
        broker.resetCalls();
        broker.failCall(call, nth);
        EXPECT_EQ(render(indication), std::nullopt) << call << ' ' << nth;
        EXPECT_EQ(broker.liveObjects(), before) << call << ' ' << nth;
    }
}

} // namespace
