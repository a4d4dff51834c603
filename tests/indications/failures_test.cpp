// Each platform call of each request fails in turn: the request is refused, unless the call does not decide.
#include "indications_fixture.h"

namespace {

using broker::Reply;

constexpr const char* enabled = "IndicationFilter:IPMIPEF-1-3";
constexpr const char* disabled = "IndicationFilter:IPMIPEF-1-4";
constexpr const char* stored = "IndicationFilter:CIMXML-7";

class IndicationFailures : public Indications {
protected:
    void prepare() const {
        createBmc(R"({
            "lans": [{"channel": 1, "name": "eth0"}],
            "alertDestinations": [{"channel": 1, "selector": 1, "kind": "e-mail", "user": 2},
                                  {"channel": 1, "selector": 2, "ipv4": "192.0.2.9"},
                                  {"channel": 1, "selector": 4, "isIpv6": true, "ipv6": "2001:db8::9"}],
            "pef": {"filters": [
                {"number": 3, "bytes": "80 01 01 10 ff ff 07 1a 01 ff ff 00 00 00 00 00 00 00 00 00"},
                {"number": 4, "bytes": "00 01 01 10 ff ff 07 1a 01 ff ff 00 00 00 00 00 00 00 00 00"}]}})");
        onDatabase([](SMASH_DB_HANDLE handle) {
            CimxmlFilterRow filter{};
            std::strcpy(filter.name, stored);
            CimxmlDestinationRow destination{};
            std::strcpy(destination.name, "CIMXML-7");
            EXPECT_EQ(db_set_indication_filter_cimxml(handle, &filter), 0);
            EXPECT_EQ(db_set_listener_destination(handle, &destination), 0);
        });
    }
    static broker::Instance filter(const char* name) {
        return instance(filterClass, name,
                        {{"Query", text("select * from CIM_AlertIndication where PerceivedSeverity=6")}});
    }
    static broker::Instance destination(const char* className, const char* name, const char* value) {
        return instance(className, name, {{"Destination", text(value)}});
    }
    // The last call whose failure refuses the request, and what the client is told.
    std::string lastRefusal(const std::function<Reply()>& request) const {
        std::string last;
        for (unsigned nth = 1;; ++nth) {
            prepare();
            platformCalls.clear();
            platformCalls.failing = nth;
            const Reply reply = request();
            platformCalls.failing = 0;
            EXPECT_EQ(platformCalls.openSessions, 0);
            EXPECT_EQ(platformCalls.openHandles, 0);
            if (!platformCalls.hasFailed) {
                EXPECT_THAT(reply, Succeeds());
                return last;
            }
            const std::string call = platformCalls.made[nth - 1];
            if (!reply.ok())
                last = call + ": " + reply.message;
            else
                EXPECT_THAT(call, testing::AnyOf("CIM_Create_IPMI20_Session", "CIM_Close_Session", "db_close",
                                                 "OEM_GetSPSystemName"));
        }
    }
};

TEST_F(IndicationFailures, areReported) {
    const std::tuple<const char*, std::function<Reply()>> cases[] = {
        {"db_close: Failed to Enumerate Instance", [&] { return classes.at(filterClass).enumerate(); }},
        {"db_get_all_listener_destination: Failed to Enumerate Instance",
         [&] { return classes.at(cimxml).enumerate(); }},
        {"CIM_TRZGetEmailDest: Failed to Enumerate Instance", [&] { return classes.at(smtp).enumerate(); }},
        {"CIM_GetLANDestinationV6Address: Failed to Enumerate Instance",
         [&] { return classes.at(snmp).enumerate(); }},
        {"CIM_SetPEFEntry: CreateInstance Failed \n", [&] { return create(filter(disabled)); }},
        {"CIM_TRZSetEmailDest: Create Instance Failed",
         [&] { return create(destination(smtp, "SMTP:01:3", "UID:2")); }},
        {"CIM_SetLANDestinationV6Address: Create Instance Failed",
         [&] { return create(destination(snmp, "SNMP:01:3", "2001:db8::3")); }},
        {"CIM_SetPEFEntry: ModifyInstance Failed \n", [&] { return modify(filter(enabled)); }},
        {"db_set_indication_filter_cimxml: ModifyInstance Failed \n", [&] { return modify(filter(stored)); }},
        {"db_set_listener_destination: SetInstance Failed",
         [&] { return modify(destination(cimxml, "CIMXML-7", "http://192.0.2.9:5988")); }},
        {"CIM_TRZSetEmailDest: SetInstance Failed",
         [&] { return modify(destination(smtp, "SMTP:01:1", "UID:3")); }},
        {"CIM_SetLANDestinationAddress: SetInstance Failed",
         [&] { return modify(destination(snmp, "SNMP:01:2", "192.0.2.3")); }},
        {"CIM_SetPEFEntry: Delete Instance Failed \n", [&] { return remove(path(filterClass, enabled)); }},
        {"db_delete_indication_filter_cimxml: Delete Instance Failed \n",
         [&] { return remove(path(filterClass, stored)); }},
        {"db_delete_listener_destination: Delete Instance Failed",
         [&] { return remove(path(cimxml, "CIMXML-7")); }},
        {"CIM_SetLANDestinationType: Delete Instance Failed",
         [&] { return remove(path(smtp, "SMTP:01:1")); }},
        {"CIM_SetLANDestinationType: Delete Instance Failed",
         [&] { return remove(path(snmp, "SNMP:01:4")); }},
    };
    for (const auto& [last, request] : cases)
        EXPECT_EQ(lastRefusal(request), last);
}

} // namespace
