// Identities and roles, against the user table of the virtual BMC.
#include "managed_bmc.h"
#include "provider_helper/roles.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Of two LANs, so that a user has access on two channels. The BMC keeps one access for both.
constexpr char model[] = R"({"users": [
    {"id": 1, "enabled": false, "privilege": "none", "messaging": false},
    {"id": 2, "name": "root"},
    {"id": 3, "name": "operator", "privilege": "operator", "linkAuthentication": true},
    {"id": 5, "name": "silent", "messaging": false},
    {"id": 6, "name": "locked", "enabled": false, "privilege": "oem"}],
    "sessions": [{"user": 3}, {"user": 3, "channel": 8}],
    "lans": [{"channel": 1, "name": "eth0", "mac": "02:00:5e:10:20:30"},
             {"channel": 8, "name": "eth1", "mac": "02:00:5e:10:20:31"}]})";

class Roles : public ManagedBmc {
protected:
    Roles() : ManagedBmc(model) {}

    static broker::Value identity(int slot) {
        return reference(
            path("CIM_Identity", {{"InstanceID", text("Identity:IPMI User-" + std::to_string(slot))}}));
    }
    static broker::Value role(const std::string& name) {
        return reference(path("CIM_Role", {{"CreationClassName", text("CIM_Role")}, {"Name", text(name)}}));
    }
    static broker::Value processor(const char* name = "controller") {
        return reference(path("CIM_SPComputerSystem",
                              {{"Name", text(name)}, {"CreationClassName", text("CIM_SPComputerSystem")}}));
    }
    broker::Reply call(const char* method, const broker::NamedValues& arguments) const {
        return service.invoke(only(service).path, method, arguments);
    }
    broker::Reply assign(int slot, const std::vector<std::string>& names) const {
        std::vector<broker::Value> roles;
        for (const std::string& name : names)
            roles.push_back(role(name));
        return call("AssignRoles", {{"Identity", identity(slot)}, {"Roles", arrayOf(CMPI_ref, roles)}});
    }
    std::string privilege(int slot) const { return row("users", "id", slot)["privilege"]; }

    // A text of each object in an out-argument.
    static std::vector<std::string> objects(const broker::Reply& reply, const char* argument,
                                            const char* property = nullptr) {
        std::vector<std::string> texts;
        const broker::Value* value = broker::find(reply.arguments, argument);
        if (value == nullptr)
            return {"<none>"};
        for (const auto& each : *value->as<broker::Value::Array>())
            texts.push_back(property == nullptr
                                ? toText(**each.as<broker::Value::Reference>())
                                : textOf(**each.as<std::shared_ptr<const broker::Instance>>(), property));
        return texts;
    }

    const ClassRequests identities{broker, PH_CLASS_FUNCTIONS(Identity)};
    const ClassRequests service{broker, PH_CLASS_FUNCTIONS(RoleBasedAuthorizationService)};
};

TEST_F(Roles, identitiesTellRolesAndSessions) {
    const auto rows = [&] {
        std::vector<std::string> all;
        for (const auto& each : identities.enumerate().instances)
            all.push_back(textOf(each, "ElementName") + ": " + textOf(each, "Description") + "; " +
                          textOf(each, "CurrentlyAuthenticated"));
        return all;
    };
    // A BMC may give a user another limit on each channel.
    PH_STAND_IN(CIM_GetUserAccess, [](auto*, uint8_t slot, uint8_t channel, uint8_t* access, int) {
        if (slot == 3 && channel == 8)
            *access = 0x51;
        else if (slot != 3)
            *access = slot == 2 ? 0x54 : 0x0F;
        else
            *access = 0x53;
        return 0;
    });
    EXPECT_THAT(rows(), ElementsAre("anonymous: no access; FALSE",
                                    "root: administrator on channel 1, administrator on channel 8; FALSE",
                                    "operator: operator on channel 1, callback on channel 8; TRUE",
                                    "silent: no access; FALSE", "locked: no access; FALSE"));
    // Without LANs there is the channel that carries the request; without Get Session Info nobody knows.
    failCommand(ipmi::command::getSessionInfo);
    PH_STAND_IN(CIM_GetLANCount, [](auto*, uint8_t*, uint8_t*, int) { return -1; });
    EXPECT_EQ(rows()[1], "root: administrator on channel 14; <none>");
}

TEST_F(Roles, assignmentSetsThePrivilegeLimitAndNothingElse) {
    const auto before = row("users", "id", 3);
    EXPECT_THAT(assign(3, {"user"}), Returns(0));
    EXPECT_EQ(privilege(3), "user");
    EXPECT_THAT(assign(3, {"administrator"}), Returns(0));
    EXPECT_THAT(assign(3, {}), Returns(0));
    EXPECT_EQ(privilege(3), "none");
    EXPECT_THAT(assign(3, {"operator"}), Returns(0)) << "it may still send messages on its channels";
    EXPECT_EQ(row("users", "id", 3), before);
    EXPECT_THAT(assign(1, {"user"}), Returns(0));
    EXPECT_EQ(privilege(1), "user") << "on the first channel, for a user that had none";
}

TEST_F(Roles, theLastAdministratorKeepsItsRole) {
    const auto keeps = Refuses(CMPI_RC_ERR_FAILED, "The last administrator keeps its role");
    for (const auto& roles : std::vector<std::vector<std::string>>{{"operator"}, {"OEM"}, {}})
        EXPECT_THAT(assign(2, roles), keeps);
    EXPECT_EQ(privilege(2), "administrator");
    EXPECT_THAT(assign(2, {"administrator"}), Returns(0));
    EXPECT_THAT(assign(5, {"user"}), Returns(0)) << "who cannot log in is no administrator";
    EXPECT_THAT(assign(6, {"administrator"}), Returns(0));
    EXPECT_THAT(assign(2, {"operator"}), keeps) << "nor does a disabled one count";
    EXPECT_THAT(assign(3, {"administrator"}), Returns(0));
    EXPECT_THAT(assign(2, {"operator"}), Returns(0));
    EXPECT_THAT(assign(3, {"operator"}), keeps);
}

TEST_F(Roles, aRefusedAssignmentHasChangedNothing) {
    const auto before = bmc().describe()["users"].dump();
    const struct {
        broker::NamedValues arguments;
        int code;
        const char* message;
    } cases[] = {
        {{}, CMPI_RC_ERR_INVALID_PARAMETER, "Identity is none of a user"},
        {{{"Identity", role("user")}, {"Roles", arrayOf(CMPI_ref, {})}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "Identity is none of a user"},
        {{{"Identity", identity(4)}, {"Roles", arrayOf(CMPI_ref, {})}},
         CMPI_RC_ERR_NOT_FOUND,
         "There is no such user, or it cannot be read"},
        {{{"Identity", identity(3)}}, CMPI_RC_ERR_INVALID_PARAMETER, "Roles is no array of references"},
        {{{"Identity", identity(3)}, {"Roles", role("user")}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "Roles is no array of references"},
        {{{"Identity", identity(3)}, {"Roles", arrayOf(CMPI_ref, {role("user"), role("operator")})}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "A user has one role at most"},
        {{{"Identity", identity(3)}, {"Roles", arrayOf(CMPI_ref, {role("king")})}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "There is no such role"},
        {{{"Identity", identity(3)}, {"Roles", arrayOf(CMPI_ref, {identity(2)})}},
         CMPI_RC_ERR_INVALID_PARAMETER,
         "There is no such role"},
    };
    for (const auto& [arguments, code, message] : cases)
        EXPECT_THAT(call("AssignRoles", arguments), Refuses(code, message));

    // The second channel refuses; the first gets its limit back.
    vbmc::Fault fault{.netFn = ipmi::command::setUserAccess.netFn,
                      .command = ipmi::command::setUserAccess.number,
                      .value = 0xCC,
                      .skip = 1,
                      .calls = 1};
    bmc().addFault(fault);
    EXPECT_THAT(assign(3, {"user"}), Refuses(CMPI_RC_ERR_FAILED, "The BMC does not take the role"));
    // One that falls silent ends the session: it is undone in another one.
    fault.kind = vbmc::Fault::Silent;
    bmc().addFault(fault);
    EXPECT_THAT(assign(3, {"user"}), Refuses(CMPI_RC_ERR_FAILED, "The BMC does not take the role"));
    EXPECT_EQ(bmc().describe()["users"].dump(), before);

    for (const char* method : {"CreateRole", "ModifyRole", "DeleteRole"})
        EXPECT_THAT(call(method, {{"Role", role("user")}}), Returns(1)) << method;
}

TEST_F(Roles, rolesAreShownWithTheirPrivileges) {
    const auto shown = [&](const broker::NamedValues& arguments) {
        const auto reply = call("ShowRoles", arguments);
        EXPECT_THAT(reply, Returns(0));
        EXPECT_EQ(objects(reply, "Roles", "ElementName"), objects(reply, "Privileges", "ElementName"));
        return objects(reply, "Roles", "Name");
    };
    EXPECT_THAT(shown({{"Subject", identity(3)}}), ElementsAre("operator"));
    EXPECT_THAT(shown({{"Subject", identity(3)}, {"Target", processor()}}), ElementsAre("operator"));
    EXPECT_THAT(shown({{"Subject", identity(3)}, {"Target", processor("other")}}), IsEmpty());
    EXPECT_THAT(shown({{"Subject", identity(1)}}), IsEmpty());
    EXPECT_THAT(shown({{"Target", processor()}}),
                ElementsAre("callback", "user", "operator", "administrator", "OEM"));
    EXPECT_THAT(objects(call("ShowRoles", {{"Subject", identity(3)}}), "Privileges", "Activities"),
                ElementsAre("{4, 5, 6, 7}"));
    EXPECT_THAT(call("ShowRoles", {}), Refuses(CMPI_RC_ERR_INVALID_PARAMETER, "Subject or Target is needed"));
    EXPECT_FALSE(call("ShowRoles", {{"Subject", identity(4)}}).ok());
}

TEST_F(Roles, accessIsWhatUsersCanLogInFor) {
    const auto all = call("ShowAccess", {{"Target", processor()}});
    EXPECT_THAT(all, Returns(0));
    EXPECT_THAT(objects(all, "OutSubjects"),
                ElementsAre(toText(**identity(2).as<broker::Value::Reference>()),
                            toText(**identity(3).as<broker::Value::Reference>())));
    EXPECT_THAT(objects(all, "Privileges", "ElementName"), ElementsAre("Administrator", "Operator"));
    EXPECT_EQ(objects(all, "OutTargets"),
              std::vector(2, toText(**processor().as<broker::Value::Reference>())));
    EXPECT_THAT(objects(call("ShowAccess", {{"Subject", identity(6)}}), "OutSubjects"), IsEmpty());
    EXPECT_THAT(call("ShowAccess", {}), Returns(16004));
    EXPECT_THAT(call("ShowAccess", {{"Subject", role("user")}}), Returns(16000));
    EXPECT_THAT(call("ShowAccess", {{"Target", processor("other")}}), Returns(16002));
}

} // namespace
