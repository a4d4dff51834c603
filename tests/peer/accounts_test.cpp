// The users of OpenIPMI's BMC simulator as accounts, changed by requests to the provider module in the
// broker. Whether a password holds is seen by opening an RMCP+ session with it, and what users there are by
// ipmitool.
#include "provider_on_simulator.h"

#include <algorithm>
#include <cctype>
#include <sstream>

namespace {

using broker::Value;
using testing::HasSubstr;
using testing::Not;

class PeerAccounts : public ProviderOnSimulator {
protected:
    static broker::ObjectPath account(const std::string& name) {
        return pathOnProcessor("CIM_Account", "sim", name);
    }

    // "" or what is wrong.
    std::string create(const std::string& name, const std::string& userId, const std::string& word) {
        const broker::NamedValues properties{
            {"Name", text(name)}, {"UserID", text(userId)}, {"UserPassword", texts({word})}};
        const auto reply =
            broker.invokeMethod(only("CIM_AccountManagementService").path, "CreateAccount",
                                {{"System", reference(path("CIM_SPComputerSystem"))},
                                 {"AccountTemplate", embedded({path("CIM_Account"), properties})}});
        return reply.message;
    }
    std::string modify(const std::string& name, const char* property, const Value& value) {
        return broker.modifyInstance(account(name), {account(name), {{property, value}}}, {{property}})
            .message;
    }

    bool canLogIn(const std::string& user, const std::string& word) const {
        auto settings = bmc.settings();
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

    // "<slot> <name> <field>" of each user, as ipmitool prints them.
    std::vector<std::string> ipmitoolUsers(std::size_t field = mayMessage) const {
        std::istringstream lines(ipmitool("-c user list 1"));
        std::vector<std::string> users;
        for (std::string line; std::getline(lines, line);) {
            std::vector<std::string> fields;
            std::istringstream cells(line);
            for (std::string cell; std::getline(cells, cell, ',');)
                fields.push_back(cell);
            if (fields.size() >= 6 && (fields[0] == "1" || !fields[1].empty()))
                users.push_back(fields[0] + " " + (fields[0] == "1" ? "anonymous" : fields[1]) + " " +
                                fields[field]);
        }
        return users;
    }
    static constexpr std::size_t mayMessage = 4, privilegeLimit = 5;
    // The same of each account. The simulator's users are enabled but for those that a test disables.
    std::vector<std::string> accountUsers() {
        std::vector<std::string> users;
        for (const auto& instance : list(path("CIM_Account")))
            users.push_back(textOf(instance, "Name").substr(std::string("IPMI User-").size()) + " " +
                            textOf(instance, "UserID") +
                            (textOf(instance, "EnabledState") == "2" ? " true" : " false"));
        return users;
    }
    // The same of each identity, with its role in capitals.
    std::vector<std::string> identityRoles() {
        std::vector<std::string> users;
        for (const auto& identity : list(path("CIM_Identity"))) {
            std::string role = "NO ACCESS";
            for (const auto& each : broker
                                        .associators(identity.path, {.assocClass = "CIM_MemberOfCollection",
                                                                    .resultClass = "CIM_Role"})
                                        .instances)
                std::ranges::transform(role = textOf(each, "Name"), role.begin(), ::toupper);
            const std::string id = textOf(identity, "InstanceID");
            users.push_back(id.substr(id.rfind('-') + 1) + " " + textOf(identity, "ElementName") + " " +
                            role);
        }
        return users;
    }
    // "" or what is wrong.
    std::string assign(int slot, const std::vector<std::string>& names) {
        broker::Value::Array roles;
        for (const std::string& name : names)
            roles.push_back(
                reference(path("CIM_Role", {{"CreationClassName", text("CIM_Role")}, {"Name", text(name)}})));
        const auto identity =
            path("CIM_Identity", {{"InstanceID", text("Identity:IPMI User-" + std::to_string(slot))}});
        return broker
            .invokeMethod(only("CIM_RoleBasedAuthorizationService").path, "AssignRoles",
                          {{"Identity", reference(identity)}, {"Roles", arrayOf(CMPI_ref, roles)}})
            .message;
    }
};

TEST_F(PeerAccounts, areTheUsersThatIpmitoolLists) {
    EXPECT_EQ(accountUsers(), ipmitoolUsers());
    EXPECT_EQ(create("IPMI User-4", "eva", "word"), "");
    EXPECT_EQ(create("IPMI User-7", "sixteen-letters-", "word"), "");
    const auto users = ipmitoolUsers();
    EXPECT_THAT(users, testing::Contains("4 eva true"));
    EXPECT_EQ(accountUsers(), users);
}

TEST_F(PeerAccounts, haveTheRolesThatIpmitoolListsAsLimits) {
    EXPECT_EQ(identityRoles(), ipmitoolUsers(privilegeLimit));
    EXPECT_EQ(create("IPMI User-4", "eva", "word"), "");
    for (const auto& [role, limit] :
         {std::pair{"operator", "OPERATOR"}, {"callback", "CALLBACK"}, {"administrator", "ADMINISTRATOR"}}) {
        EXPECT_EQ(assign(4, {role}), "");
        EXPECT_THAT(ipmitoolUsers(privilegeLimit), testing::Contains(std::string("4 eva ") + limit));
    }
    EXPECT_EQ(identityRoles(), ipmitoolUsers(privilegeLimit));
    EXPECT_EQ(assign(4, {}), "");
    EXPECT_THAT(ipmitoolUsers(privilegeLimit), testing::Contains("4 eva NO ACCESS"));
    EXPECT_EQ(identityRoles(), ipmitoolUsers(privilegeLimit));
}

TEST_F(PeerAccounts, passwordsOpenSessions) {
    EXPECT_EQ(create("IPMI User-4", "eva", "first word"), "");
    EXPECT_TRUE(canLogIn("eva", "first word"));
    EXPECT_FALSE(canLogIn("eva", "another word"));
    EXPECT_EQ(modify("IPMI User-4", "UserPassword", texts({"second word"})), "");
    EXPECT_TRUE(canLogIn("eva", "second word"));
    EXPECT_FALSE(canLogIn("eva", "first word"));
    EXPECT_EQ(modify("IPMI User-4", "UserID", text("adam")), "");
    EXPECT_TRUE(canLogIn("adam", "second word"));
    EXPECT_FALSE(canLogIn("eva", "second word"));
}

// The simulator takes the 20-byte form, and compares and keeps 16 of them, whoever sets the password.
TEST_F(PeerAccounts, aLongPasswordHasTheLongForm) {
    EXPECT_EQ(create("IPMI User-4", "eva", "abcdefghijklmnopqrst"), "");
    EXPECT_THAT(ipmitool("user test 4 20 abcdefghijklmnopqrst"), HasSubstr("Success"));
    EXPECT_TRUE(canLogIn("eva", "abcdefghijklmnop"));
    EXPECT_EQ(modify("IPMI User-4", "UserPassword", texts({"abcdefghijklmnopqrstu"})),
              "Unable to modify property\n");
}

TEST_F(PeerAccounts, disabledAndDeletedUsersCannotLogIn) {
    EXPECT_EQ(create("IPMI User-4", "eva", "word"), "");
    const auto request = [&](std::uint64_t state) {
        return broker
            .invokeMethod(account("IPMI User-4"), "RequestStateChange", {{"RequestedState", number(state)}})
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
