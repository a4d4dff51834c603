// CIM_ListenerDestinationSMTP and CIM_ListenerDestinationSNMP on the alert destinations of the BMC's LANs.
#include "indications_fixture.h"

#include "ipmi/command.h"
#include "ipmi/lan_configuration.h"

namespace {

using broker::Instance;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* invalidName = "Name Format Error / Index threshold error - Check the requested Name \n";
constexpr const char* active = "Requested Destination Index already active\n";

class LanDestinations : public Indications {
protected:
    LanDestinations() { createBmc(model); }

    // Channel 1: 1 mails user 2, 2 sends traps to an IPv4 address, 4 to an IPv6 address, 5 to none, 6 is of a
    // third kind. Channel 8: 15 mails user 3.
    static constexpr char model[] = R"({
        "lans": [{"channel": 1, "name": "eth0"}, {"channel": 8, "name": "eth1"}],
        "alertDestinations": [
            {"channel": 1, "selector": 1, "kind": "e-mail", "acknowledged": true, "timeout": 3, "user": 2},
            {"channel": 1, "selector": 2, "ipv4": "192.0.2.9"},
            {"channel": 1, "selector": 4, "isIpv6": true, "ipv6": "2001:db8::9"},
            {"channel": 1, "selector": 6, "kind": "listener", "ipv4": "192.0.2.6"},
            {"channel": 8, "selector": 15, "kind": "e-mail", "user": 3}]})";

    static Instance destination(const char* className, const std::string& name, const std::string& value) {
        return instance(className, name, {{"Destination", text(value)}});
    }
    std::vector<std::string> all(const char* className) {
        std::vector<std::string> rows;
        for (const auto& each : list(className))
            rows.push_back(textOf(each, "Name") + " " + textOf(each, "Destination"));
        return rows;
    }
    Bytes parameter(std::uint8_t number, std::uint8_t selector) const {
        const Bytes answer = ask(ipmi::command::getLanConfiguration, {1, number, selector, 0});
        return {answer.begin() + 1, answer.end()};
    }
    // Type and address as the BMC has them, behind the selector.
    Bytes type(std::uint8_t selector) const { return parameter(18, selector); }
    Bytes address(std::uint8_t selector) const { return parameter(19, selector); }
    // Whom a destination of channel 1 mails, and with what.
    std::string mail(std::uint8_t selector) {
        IPMI20_SESSION_T session;
        std::uint8_t user = 0;
        char subject[CIM_EMAIL_SUBJECT_SIZE + 1], message[CIM_EMAIL_MESSAGE_SIZE + 1];
        EXPECT_EQ(CreateIPMISession(&session), 0);
        EXPECT_EQ(CIM_TRZGetEmailDest(&session, selector, &user, subject, message, 1, 30), 0);
        EXPECT_EQ(CloseIPMISession(&session), 0);
        return std::to_string(user) + "|" + subject + "|" + message;
    }
};

TEST_F(LanDestinations, areTheBmcs) {
    EXPECT_THAT(all(smtp), ElementsAre("SMTP:01:1 UID:2", "SMTP:08:15 UID:3"));
    EXPECT_THAT(all(snmp), ElementsAre("SNMP:01:2 192.0.2.9", "SNMP:01:4 2001:db8::9"));
    for (const auto& [className, elementName] :
         {std::pair{smtp, "SMTP LAN Listener Destination"}, {snmp, "SNMP LAN Listener Destination"}}) {
        const Instance first = list(className).front();
        EXPECT_EQ(textOf(first, "SystemCreationClassName"), "CIM_SPComputerSystem");
        EXPECT_EQ(textOf(first, "CreationClassName"), className);
        EXPECT_EQ(textOf(first, "SystemName"), "controller");
        EXPECT_EQ(textOf(first, "ElementName"), elementName);
        EXPECT_EQ(textOf(first, "Protocol"), "1");
        EXPECT_EQ(textOf(first, "PersistenceType"), "3");
        EXPECT_EQ(textOf(first, "ProtocolText"), "<none>");
    }
    ListenerDestinationRecord* records = nullptr;
    int count = 0;
    ASSERT_EQ(PH_Enum_All_ListenerDestinationSNMP(&records, &count, 1), 0);
    EXPECT_STREQ(records[0].Name, "SNMP:01:2");
    EXPECT_STREQ(records[0].Destination, "");
    PH_Clean_ListenerDestinationSNMP(&records, count);

    createBmc("{}"); // no LAN at all
    EXPECT_THAT(list(smtp), IsEmpty());
    EXPECT_THAT(list(snmp), IsEmpty());
}

TEST_F(LanDestinations, mailDestinationsAreWrittenToTheBmc) {
    const broker::Reply created = create(destination(smtp, "SMTP:01:3", "UID:258"));
    ASSERT_THAT(created, Succeeds());
    EXPECT_THAT(created.paths, ElementsAre(path(smtp, "SMTP:01:3")));
    EXPECT_EQ(type(3), Bytes({3, 6, 0, 0}));
    EXPECT_EQ(mail(3), "2|Alert Event Occurred|Following event occurred in the BMC");
    EXPECT_THAT(create(destination(smtp, "SMTP:01:3", "UID:4")), Refuses(1, active));

    EXPECT_THAT(modify(destination(smtp, "SMTP:01:1", "UID:4")), Succeeds());
    EXPECT_EQ(type(1), Bytes({1, 0x86, 3, 0})) << "acknowledgement and time-out stay";
    EXPECT_EQ(mail(1), "4|Alert Event Occurred|Following event occurred in the BMC");
    EXPECT_THAT(remove(path(smtp, "SMTP:01:1")), Succeeds());
    EXPECT_EQ(type(1), Bytes({1, 0x80, 3, 0}));
    EXPECT_EQ(mail(1), "0||");
    EXPECT_THAT(all(smtp), ElementsAre("SMTP:01:3 UID:2", "SMTP:08:15 UID:3"));

    // Nobody to mail: a success that changes nothing.
    EXPECT_THAT(create(destination(smtp, "SMTP:01:7", "UID:0")), Succeeds());
    EXPECT_THAT(modify(destination(smtp, "SMTP:01:3", "UID:nobody")), Succeeds());
    EXPECT_THAT(all(smtp), ElementsAre("SMTP:01:3 UID:2", "SMTP:08:15 UID:3"));
}

TEST_F(LanDestinations, trapDestinationsAreWrittenToTheBmc) {
    ASSERT_THAT(create(destination(snmp, "SNMP:01:1", "198.51.100.7")), Succeeds())
        << "the mail one is taken over";
    EXPECT_EQ(type(1), Bytes({1, 0x80, 3, 0}));
    EXPECT_EQ(address(1), Bytes({1, 0, 0, 198, 51, 100, 7, 0, 0, 0, 0, 0, 0}));
    ASSERT_THAT(create(destination(snmp, "SNMP:01:5", "2001:db8::5")), Succeeds());
    EXPECT_EQ(address(5), Bytes({5, 0x10, 0x20, 0x01, 0x0D, 0xB8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 5}));
    for (const char* taken : {"SNMP:01:1", "SNMP:01:2", "SNMP:01:4", "SNMP:01:5"})
        EXPECT_THAT(create(destination(snmp, taken, "192.0.2.1")), Refuses(1, active)) << taken;

    EXPECT_THAT(modify(destination(snmp, "SNMP:01:2", "2001:db8::2")), Succeeds());
    EXPECT_THAT(modify(destination(snmp, "SNMP:01:4", "192.0.2.4")), Succeeds());
    EXPECT_THAT(all(snmp), ElementsAre("SNMP:01:1 198.51.100.7", "SNMP:01:2 2001:db8::2",
                                       "SNMP:01:4 192.0.2.4", "SNMP:01:5 2001:db8::5"));
    for (const char* name : {"SNMP:01:1", "SNMP:01:5"})
        EXPECT_THAT(remove(path(snmp, name)), Succeeds());
    EXPECT_EQ(address(5), Bytes({5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_THAT(all(snmp), ElementsAre("SNMP:01:2 2001:db8::2", "SNMP:01:4 192.0.2.4"));
}

TEST_F(LanDestinations, whatCannotBeCreatedIsRefusedWithItsReason) {
    const char* const notCreated = "Create Instance Failed";
    const char* const smtpFormat = "Invalid Destination format for SMTP \n";
    const std::tuple<const char*, const char*, const char*, int, const char*> cases[] = {
        {smtp, "SMTP", "UID:2", 1, invalidName},
        {smtp, "SMTP:01", "UID:2", 1, invalidName},
        {smtp, "SMTP:01:", "UID:2", 1, invalidName},
        {smtp, "SMTP:xx:3", "UID:2", 1, invalidName},
        {smtp, "SMTP:01:0", "UID:2", 1, invalidName},
        {smtp, "SMTP:01:16", "UID:2", 1, invalidName},
        {snmp, "SNMP:01:-1", "192.0.2.1", 1, invalidName},
        {smtp, "SNMP:01:3", "UID:2", 4, "Invalid protocol mentioned in  'Name' property \n"},
        {snmp, "SMTP:01:3", "192.0.2.1", 4, "Invalid protocol mentioned in Name property \n"},
        {smtp, "SMTP:01:3", "", 1, "Required Destination property"},
        {smtp, "SMTP:01:3", "2", 1, smtpFormat},
        {smtp, "SMTP:01:1", "2", 1, active},
        {smtp, "SMTP:02:3", "UID:2", 1, notCreated}, // no LAN
        {snmp, "SNMP:01:3", "0.0.0.0", 1, "Invalid Destination Address\n"},
        {snmp, "SNMP:01:3", "::", 1, "Invalid Destination Address\n"},
        {snmp, "SNMP:01:3", "host.example", 1, notCreated},
        {snmp, "SNMP:02:3", "192.0.2.1", 1, notCreated},
    };
    for (const auto& [className, name, value, code, message] : cases)
        EXPECT_THAT(create(destination(className, name, value)), Refuses(code, message))
            << name << ' ' << value;

    const char* const unknown = "Given instance does not exist";
    EXPECT_THAT(modify(destination(smtp, "SMTP:01:2", "UID:2")), Refuses(1, unknown));
    EXPECT_THAT(remove(path(snmp, "SNMP:01:1")), Refuses(1, unknown));
    EXPECT_THAT(modify(destination(smtp, "SMTP:01:1", "")), Refuses(1, "Required Destination property"));
    EXPECT_THAT(modify(destination(smtp, "SMTP:01:1", "2")), Refuses(1, smtpFormat));
    EXPECT_THAT(modify(destination(snmp, "SNMP:01:2", "::")), Refuses(1, "Invalid Destination Address\n"));
    EXPECT_THAT(modify(destination(snmp, "SNMP:01:2", "host.example")), Refuses(1, "SetInstance Failed"));
    for (const char* className : {smtp, snmp}) {
        Instance wrong = destination(className, "SMTP:01:3", "UID:2");
        wrong.path.keys[1].value = text("CIM_ListenerDestinationCIMXML");
        EXPECT_THAT(create(wrong), Refuses(4, "Invalid Key Properties : Only 'Name' prop is variable, refer "
                                              "other instances of LD"));
        wrong.properties.clear();
        wrong.path = path(className, "SMTP:01:3");
        EXPECT_THAT(create(wrong), Refuses(1, "Required Name property"));
        wrong.path.keys.pop_back();
        EXPECT_THAT(create(wrong), Refuses(1, "Key Properties missing"));
    }
}

} // namespace
