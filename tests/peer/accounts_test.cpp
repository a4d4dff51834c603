// The users of OpenIPMI's BMC simulator as accounts, changed by requests to the provider module in the
// broker. Whether a password holds is seen by opening an RMCP+ session with it, and what users there are by
// ipmitool.
#include "broker/broker.h"
#include "ipmi_sim.h"
#include "simulator_session.h"
#include "sysroot_fixture.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using broker::Instance;
using broker::ObjectPath;
using broker::Value;
using testing::HasSubstr;
using testing::Not;

Value text(std::string value) {
    return {CMPI_string, std::move(value)};
}
Value password(const std::string& value) {
    return {CMPI_stringA, Value::Array{text(value)}};
}

class PeerAccounts : public SysrootFixture {
protected:
    void SetUp() override {
        simulator = std::make_unique<ph_test::IpmiSim>(std::vector<ph_test::SimSensor>{});
        ph_test::storeSession(simulator->settings());
        write("/conf/system_names.ini", "[names]\nhost = server\nsp = controller\n");
        broker.loadProvider(PROVIDERS, "ProviderHelperProviders");
    }

    static ObjectPath path(const char* className, broker::NamedValues keys = {}) {
        return {.host = {}, .nameSpace = "root/cimv2", .className = className, .keys = std::move(keys)};
    }
    ObjectPath account(const std::string& name) const {
        return path("CIM_Account", {{"SystemCreationClassName", text("CIM_SPComputerSystem")},
                                    {"CreationClassName", text("CIM_Account")},
                                    {"SystemName", text("controller")},
                                    {"Name", text(name)}});
    }

    // "" or what is wrong.
    std::string create(const std::string& name, const std::string& userId, const std::string& word) {
        const Instance accountTemplate{
            path("CIM_Account"),
            {{"Name", text(name)}, {"UserID", text(userId)}, {"UserPassword", password(word)}}};
        const auto services = broker.enumerateInstanceNames(path("CIM_AccountManagementService"));
        const auto reply = broker.invokeMethod(
            services.paths.at(0), "CreateAccount",
            {{"System", {CMPI_ref, std::make_shared<const ObjectPath>(path("CIM_SPComputerSystem"))}},
             {"AccountTemplate", {CMPI_instance, std::make_shared<const Instance>(accountTemplate)}}});
        return reply.message;
    }
    std::string modify(const std::string& name, const char* property, const Value& value) {
        return broker.modifyInstance(account(name), {account(name), {{property, value}}}, {{property}})
            .message;
    }

    bool canLogIn(const std::string& user, const std::string& word) const {
        auto settings = simulator->settings();
        settings.userName = user;
        settings.password = word;
        settings.privilegeLevel = 2; // user
        settings.timeout = 5;
        try {
            ipmi::openTransport(settings);
            return true;
        } catch (const ipmi::TransportError&) {
            return false;
        }
    }

    // "<slot> <name> <may send messages>" of each user, as ipmitool prints them.
    std::vector<std::string> ipmitoolUsers() const {
        std::istringstream lines(simulator->ipmitool("-c user list 1"));
        std::vector<std::string> users;
        for (std::string line; std::getline(lines, line);) {
            std::vector<std::string> fields;
            std::istringstream cells(line);
            for (std::string cell; std::getline(cells, cell, ',');)
                fields.push_back(cell);
            if (fields.size() >= 6 && (fields[0] == "1" || !fields[1].empty()))
                users.push_back(fields[0] + " " + (fields[0] == "1" ? "anonymous" : fields[1]) + " " +
                                fields[4]);
        }
        return users;
    }
    // The same of each account. The simulator's users are enabled but for those that a test disables.
    std::vector<std::string> accountUsers() {
        std::vector<std::string> users;
        for (const auto& instance : broker.enumerateInstances(path("CIM_Account")).instances) {
            const auto value = [&](const char* name) {
                return broker::toText(*broker::find(instance.properties, name));
            };
            users.push_back(value("Name").substr(std::string("IPMI User-").size()) + " " + value("UserID") +
                            (value("EnabledState") == "2" ? " true" : " false"));
        }
        return users;
    }

    std::unique_ptr<ph_test::IpmiSim> simulator;
    broker::Broker broker;
};

TEST_F(PeerAccounts, areTheUsersThatIpmitoolLists) {
    EXPECT_EQ(accountUsers(), ipmitoolUsers());
    EXPECT_EQ(create("IPMI User-4", "eva", "word"), "");
    EXPECT_EQ(create("IPMI User-7", "sixteen-letters-", "word"), "");
    const auto users = ipmitoolUsers();
    EXPECT_THAT(users, testing::Contains("4 eva true"));
    EXPECT_EQ(accountUsers(), users);
}

TEST_F(PeerAccounts, passwordsOpenSessions) {
    EXPECT_EQ(create("IPMI User-4", "eva", "first word"), "");
    EXPECT_TRUE(canLogIn("eva", "first word"));
    EXPECT_FALSE(canLogIn("eva", "another word"));
    EXPECT_EQ(modify("IPMI User-4", "UserPassword", password("second word")), "");
    EXPECT_TRUE(canLogIn("eva", "second word"));
    EXPECT_FALSE(canLogIn("eva", "first word"));
    EXPECT_EQ(modify("IPMI User-4", "UserID", text("adam")), "");
    EXPECT_TRUE(canLogIn("adam", "second word"));
    EXPECT_FALSE(canLogIn("eva", "second word"));
}

// The simulator takes the 20-byte form, and compares and keeps 16 of them, whoever sets the password.
TEST_F(PeerAccounts, aLongPasswordHasTheLongForm) {
    EXPECT_EQ(create("IPMI User-4", "eva", "abcdefghijklmnopqrst"), "");
    EXPECT_THAT(simulator->ipmitool("user test 4 20 abcdefghijklmnopqrst"), HasSubstr("Success"));
    EXPECT_TRUE(canLogIn("eva", "abcdefghijklmnop"));
    EXPECT_EQ(modify("IPMI User-4", "UserPassword", password("abcdefghijklmnopqrstu")),
              "Unable to modify property\n");
}

TEST_F(PeerAccounts, disabledAndDeletedUsersCannotLogIn) {
    EXPECT_EQ(create("IPMI User-4", "eva", "word"), "");
    const auto request = [&](std::uint64_t state) {
        return broker
            .invokeMethod(account("IPMI User-4"), "RequestStateChange",
                          {{"RequestedState", {CMPI_uint16, state}}})
            .message;
    };
    EXPECT_EQ(request(3), "");
    EXPECT_FALSE(canLogIn("eva", "word"));
    EXPECT_EQ(request(2), "");
    EXPECT_TRUE(canLogIn("eva", "word"));
    EXPECT_EQ(broker.deleteInstance(account("IPMI User-4")).message, "");
    EXPECT_FALSE(canLogIn("eva", "word"));
    EXPECT_FALSE(canLogIn("", "word"));
    EXPECT_THAT(ipmitoolUsers(), Not(testing::Contains(HasSubstr("eva"))));
    EXPECT_EQ(create("IPMI User-4", "bob", "other"), "");
    EXPECT_FALSE(canLogIn("bob", "word"));
    EXPECT_TRUE(canLogIn("bob", "other"));
}

} // namespace
