// CreateAccount.
#include "account_fixture.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class AccountCreation : public AccountFixture {
protected:
    static broker::Value accountTemplate(broker::NamedValues properties) {
        broker::Instance instance{
            .path = {.host = {}, .nameSpace = "root/cimv2", .className = "CIM_Account", .keys = {}},
            .properties = std::move(properties)};
        return {CMPI_instance, std::make_shared<const broker::Instance>(std::move(instance))};
    }
    static broker::NamedValues arguments(const std::string& name, const std::string& userId,
                                         const std::string& password) {
        return {{"System", reference("CIM_SPComputerSystem")},
                {"AccountTemplate",
                 accountTemplate(
                     {{"Name", text(name)}, {"UserID", text(userId)}, {"UserPassword", texts({password})}})}};
    }
    broker::Reply create(const broker::NamedValues& in) const {
        auto path = service.path();
        return service.invoke(path, "createaccount", in);
    }
};

TEST_F(AccountCreation, makesAnEnabledUser) {
    const auto reply = create(arguments("IPMI User-4", "eva", "word"));
    ASSERT_EQ(reply.message, "");
    EXPECT_EQ(reply.values, (std::vector<broker::Value>{{CMPI_uint32, std::uint64_t{0}}}));
    const auto* account = broker::find(reply.arguments, "Account");
    ASSERT_NE(account, nullptr);
    ASSERT_NE(account->as<broker::Value::Reference>(), nullptr);
    EXPECT_EQ(**account->as<broker::Value::Reference>(), path("IPMI User-4"));
    EXPECT_EQ(user(4)["name"], "eva");
    EXPECT_EQ(user(4)["privilege"], "user");
    EXPECT_TRUE(hasPassword(4, "word"));
    EXPECT_EQ(textOf(accounts.get(path("IPMI User-4")).instances.at(0), "EnabledState"), "2");
}

TEST_F(AccountCreation, limitsOfNameAndPassword) {
    const struct {
        std::string userId, password;
        bool longForm;
        const char* message;
    } cases[] = {
        {std::string(16, 'u'), std::string(16, 'p'), false, ""},
        {"ü", std::string(17, 'p'), true, ""},
        {"'\"", std::string(20, 'p'), true, ""},
        {"eva", "", false, "Failed to fill account struct"},
        {"eva", std::string(21, 'p'), false, "Unable to create account"},
        {std::string(17, 'u'), "word", false, "Unable to create account"},
        {"", "word", false, "Failed to fill account struct"},
        {std::string(256, 'u'), "word", false, "Failed to fill account struct"},
    };
    for (const auto& item : cases) {
        const auto reply = create(arguments("IPMI User-9", item.userId, item.password));
        EXPECT_EQ(reply.message, item.message) << item.userId << '/' << item.password;
        if (reply.ok()) {
            EXPECT_TRUE(hasPassword(9, item.password, item.longForm));
            EXPECT_TRUE(accounts.remove(path("IPMI User-9")).ok());
        }
        EXPECT_TRUE(user(9).is_null());
    }
}

TEST_F(AccountCreation, refusals) {
    const auto valid = arguments("IPMI User-4", "eva", "word");
    auto otherSystem = valid, noReference = valid, noTemplate = valid, noInstance = valid, noPassword = valid;
    otherSystem[0].value = reference("CIM_HostComputerSystem");
    noReference[0].value = text("CIM_SPComputerSystem");
    noTemplate.pop_back();
    noInstance[1].value = text("IPMI User-4");
    noPassword[1].value = accountTemplate({{"Name", text("IPMI User-4")}, {"UserID", text("eva")}});
    const struct {
        const char* what;
        broker::NamedValues in;
        const char* message;
    } cases[] = {
        {"nothing", {}, "Failed to get input param AccountTemplate "},
        {"no template", noTemplate, "Failed to get input param AccountTemplate "},
        {"no instance", noInstance, "Failed to get input param AccountTemplate "},
        {"host", otherSystem, "Failed to get input param System "},
        {"text", noReference, "Failed to get input param System "},
        {"no password", noPassword, "Failed to fill account struct"},
        {"other name", arguments("User-4", "eva", "word"), "Invalid parameter UserID"},
        {"no number", arguments("IPMI User-x", "eva", "word"), "Invalid parameter UserID"},
        {"more than a number", arguments("IPMI User-4x", "eva", "word"), "Invalid parameter UserID"},
        {"name of slot 7", arguments("IPMI User-4", "sixteen letters!", "word"), "Invalid parameter UserID"},
        {"name of slot 1", arguments("IPMI User-4", "anonymous", "word"), "Invalid parameter UserID"},
        {"slot 0", arguments("IPMI User-0", "eva", "word"), "Invalid parameter user slot"},
        {"slot 1", arguments("IPMI User-1", "eva", "word"), "Invalid parameter user slot"},
        {"slot 17", arguments("IPMI User-17", "eva", "word"), "Invalid parameter user slot"},
        {"slot -3", arguments("IPMI User--3", "eva", "word"), "Invalid parameter user slot"},
        {"slot 260", arguments("IPMI User-260", "eva", "word"), "Invalid parameter user slot"},
        {"taken", arguments("IPMI User-3", "eva", "word"),
         "Invalid parameter user slot: Available slots -  4 9 10 11 12 13 14 15 16"},
    };
    for (const auto& item : cases) {
        const auto reply = create(item.in);
        EXPECT_EQ(reply.message, item.message) << item.what;
        EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED) << item.what;
    }
    EXPECT_TRUE(user(4).is_null());
    EXPECT_EQ(user(3)["name"], "operator");
}

// The number of slots, the slot's name, then name, password, access read and written, enabling.
TEST_F(AccountCreation, afterAFailureTheSlotIsFree) {
    constexpr std::uint8_t app = 0x06;
    const auto arguments4 = arguments("IPMI User-4", "eva", "word");
    for (const auto& [command, message] : {std::pair{0x44, "Failed to create account"},
                                           {0x46, "Unable to create account"},
                                           {0x45, "Unable to create account"}}) {
        failCommand(app, static_cast<std::uint8_t>(command));
        EXPECT_EQ(create(arguments4).message, message);
        mendCommands();
        EXPECT_FALSE(accounts.get(path("IPMI User-4")).ok()) << command;
    }
    // Once: what frees the slot again works.
    for (const auto& [command, skip] : {std::pair{0x44, 1U}, {0x43, 0U}, {0x47, 0U}, {0x47, 1U}}) {
        vbmc::VirtualBmc(stateFile).addFault({.netFn = app,
                                              .command = static_cast<std::uint8_t>(command),
                                              .value = 0xCC,
                                              .skip = skip,
                                              .calls = 1});
        EXPECT_EQ(create(arguments4).message, "Unable to create account");
        mendCommands();
        EXPECT_TRUE(user(4).is_null()) << command;
    }
    EXPECT_TRUE(create(arguments4).ok());
}

TEST_F(AccountCreation, noPasswordStaysBehind) {
    watchFreedMemory("unmistakable");
    EXPECT_TRUE(create(arguments("IPMI User-4", "eva", "unmistakable")).ok());
    EXPECT_THAT(create(arguments("IPMI User-3", "eva", "unmistakable")).message,
                Not(HasSubstr("unmistakable")));
    EXPECT_FALSE(secretWasFreed());
    watchFreedMemory(nullptr);
}

} // namespace
