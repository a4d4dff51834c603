// Creating, modifying, deleting, enabling and disabling accounts.
#include "account_fixture.h"

#include <cstring>
#include <malloc.h>
#include <sstream>

namespace {

// A text that no memory given back may hold. Compilers know that free() changes no variable: these it does.
const char* volatile secret = nullptr;
volatile bool wasFreed = false;

} // namespace

extern "C" {
void __real_free(void* block);

// The linker's name, see ld --wrap: the library's own objects call it, and under the sanitizers shared ones.
__attribute__((visibility("default"))) void __wrap_free(void* block) {
    const char* const text = secret;
    if (text != nullptr && block != nullptr &&
        memmem(block, malloc_usable_size(block), text, std::strlen(text)) != nullptr)
        wasFreed = true;
    __real_free(block);
}
}

namespace {

using broker::NamedValues;
using broker::Reply;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr const char* notModified = "Unable to modify property\n";
constexpr const char* badValue = "Invalid property values \n";
constexpr const char* notCreated = "Unable to create account";
constexpr const char* notFilled = "Failed to fill account struct";

class AccountChanges : public AccountFixture {
protected:
    Reply modify(int slot, NamedValues values, const broker::PropertyList& properties = {}) const {
        return accounts.modify({path(slot), std::move(values)}, properties);
    }
    Reply setPassword(int slot, const std::string& password) const {
        return modify(slot, {{"UserPassword", texts({password})}}, {{"UserPassword"}});
    }
    Reply requestState(int slot, const NamedValues& in) const {
        return accounts.invoke(path(slot), "requeststatechange", in);
    }

    static broker::Value accountTemplate(NamedValues properties) {
        return {CMPI_instance, std::make_shared<const broker::Instance>(broker::Instance{
                                   {{}, "root/cimv2", "CIM_Account", {}}, std::move(properties)})};
    }
    static NamedValues newAccount(const std::string& name, const std::string& userId,
                                  const std::string& password) {
        return {{"System", reference({{}, "root/cimv2", "CIM_SPComputerSystem", {}})},
                {"AccountTemplate",
                 accountTemplate(
                     {{"Name", text(name)}, {"UserID", text(userId)}, {"UserPassword", texts({password})}})}};
    }
    Reply create(const NamedValues& in) const { return service.invoke(service.path(), "createaccount", in); }

    // Whether memory with the text is freed while `work` runs.
    template <class Work>
    static bool frees(const std::string& text, Work work) {
        platformCalls.records = false;
        wasFreed = false;
        secret = text.c_str();
        work();
        secret = nullptr;
        platformCalls.records = true;
        return wasFreed;
    }
};

TEST_F(AccountChanges, takePasswordsUpToTheirLimit) {
    const std::pair<std::string, bool> cases[] = {
        {std::string(16, 'a'), true},  {std::string(17, 'b'), true},   {std::string(20, 'c'), true},
        {std::string(21, 'd'), false}, {std::string(255, 'e'), false}, {"", true},
        {"a\"b'c`$(d)\\", true},       {"pässwörd-mit-14", true}, // 17 bytes
    };
    for (const auto& [password, isAccepted] : cases) {
        ASSERT_TRUE(setPassword(3, "before").ok());
        ASSERT_TRUE(hasPassword(3, "before"));
        EXPECT_EQ(setPassword(3, password).message, isAccepted ? "" : notModified) << password;
        EXPECT_TRUE(hasPassword(3, isAccepted ? password : "before")) << password;
    }
    EXPECT_FALSE(hasPassword(3, "before"));
    EXPECT_EQ(user(3)["name"], "operator");
    EXPECT_EQ(user(3)["privilege"], "operator");
}

TEST_F(AccountChanges, takeUserIdsUpToTheirLimit) {
    const std::pair<std::string, const char*> cases[] = {
        {"eva", ""},
        {"sixteen-letters-", ""},
        {"Ünïcode", ""},
        {"o'neil \"bob\"", ""},
        {std::string(17, 'n'), notModified},
        {std::string(256, 'n'), badValue},
        {"", badValue},
    };
    for (const auto& [userId, message] : cases) {
        EXPECT_EQ(modify(3, {{"UserID", text(userId)}}, {{"UserID"}}).message, message) << userId;
        EXPECT_EQ(get(3, "UserID") == userId, *message == '\0');
    }
    EXPECT_TRUE(setPassword(8, "word").ok()) << "the name that stays is not written";
    EXPECT_TRUE(setPassword(1, "word").ok());
    EXPECT_EQ(user(1)["name"], "");
    EXPECT_EQ(modify(8, {{"UserID", text("loose")}}, {{"UserID"}}).message, notModified);
}

TEST_F(AccountChanges, takeAWholeInstanceBack) {
    auto instance = accounts.get(path(6)).instances.at(0);
    broker::set(instance.properties, "UserID", text("unlocked"));
    broker::set(instance.properties, "UserPassword", texts({"word"}));
    EXPECT_EQ(accounts.modify(instance).message, "");
    EXPECT_EQ(user(6)["name"], "unlocked");
    EXPECT_EQ(user(6)["enabled"], true) << "a modified account is enabled";
    EXPECT_TRUE(hasPassword(6, "word"));

    // Names that stand twice in the list are no second password to keep.
    broker::set(instance.properties, "UserPassword", texts({"other word"}));
    EXPECT_FALSE(frees("other word", [&] {
        EXPECT_EQ(accounts.modify(instance, {{"UserPassword", "UserPassword"}}).message, "");
    }));
    EXPECT_TRUE(hasPassword(6, "other word"));
}

TEST_F(AccountChanges, refuseWrongModifications) {
    constexpr const char* nothing = "Invalid parameters / No modifyable properties";
    const NamedValues word{{"UserPassword", texts({"word"})}};
    const std::tuple<broker::ObjectPath, NamedValues, broker::PropertyList, const char*> cases[] = {
        {accounts.path(), word, {{"UserPassword"}}, "Invalid input Object Path\n"},
        {path(4), word, {{"UserPassword"}}, "Given instance does not exit\n"},
        {path(3), {{"ElementName", text("x")}}, {{"ElementName"}}, "Invalid Property(s): ElementName"},
        {path(3),
         {{"ElementName", text("x")}, {"EnabledState", number(3)}, word[0]},
         {},
         "Invalid Property(s): ElementName, EnabledState"},
        {path(3), {}, {}, nothing},
        {path(3), {{"UserID", text("operator")}}, {}, nothing},
        {path(3), {{"UserPassword", text("word")}}, {{"UserPassword"}}, badValue},
        {path(3), {{"UserPassword", texts({})}}, {{"UserPassword"}}, badValue},
        {path(3), {{"UserID", number(3)}}, {{"UserID"}}, badValue},
        {path(3), {}, {{"UserPassword"}}, badValue},
    };
    ASSERT_TRUE(setPassword(3, "before").ok());
    for (const auto& [path, values, properties, message] : cases)
        EXPECT_THAT(accounts.modify({path, values}, properties), Refuses(CMPI_RC_ERR_FAILED, message));
    EXPECT_TRUE(hasPassword(3, "before"));
}

TEST_F(AccountChanges, deletionFreesTheSlot) {
    ASSERT_TRUE(setPassword(3, "word").ok());
    for (const int slot : {1, 2})
        EXPECT_EQ(accounts.remove(path(slot)).message, "Cannot delete default users");
    for (const int slot : {4, 8}) // free, of a fixed name
        EXPECT_EQ(accounts.remove(path(slot)).message, "DeleteInstance Failed");
    platformCalls.clear();
    EXPECT_TRUE(accounts.remove(path(3)).ok());
    EXPECT_EQ(platformCalls.hooks().back(), "CIM_DelUser(3, 30)");
    EXPECT_TRUE(user(3).is_null());
    EXPECT_FALSE(hasPassword(3, "word"));
    EXPECT_FALSE(accounts.get(path(3)).ok());
}

TEST_F(AccountChanges, stateOfAnAccount) {
    const auto reply = requestState(3, {{"RequestedState", number(3)}});
    EXPECT_EQ(reply.values, std::vector{number(0, CMPI_uint32)}) << reply.message;
    EXPECT_EQ(get(3, "EnabledState"), "3");
    EXPECT_EQ(user(3)["privilege"], "operator");
    for (const int slot : {3, 5, 6}) { // 5 could not send messages
        EXPECT_TRUE(requestState(slot, {{"RequestedState", text("2")}}).ok());
        EXPECT_EQ(get(slot, "EnabledState"), "2") << slot;
    }
    EXPECT_EQ(user(5)["privilege"], "user");

    const NamedValues two{{"RequestedState", number(2)}};
    EXPECT_EQ(requestState(3, {{"RequestedState", number(11)}}).message, "Invalid Parameter value");
    EXPECT_EQ(requestState(3, {}).message, "RequestedState Parameter is Invalid");
    EXPECT_EQ(requestState(4, two).message, "Given instance does not exit\n");
    EXPECT_EQ(accounts.invoke(path(3), "StartService").message, "Method Not Supported");
    EXPECT_EQ(accounts.invoke(accounts.path(), "RequestStateChange", two).message,
              "Invalid input Object Path\n");
}

TEST_F(AccountChanges, changeNothingElse) {
    const auto change = [&](const Reply& reply) {
        EXPECT_TRUE(reply.ok()) << reply.message;
        const auto hooks = platformCalls.hooks();
        platformCalls.clear();
        return hooks.back();
    };
    EXPECT_EQ(change(setPassword(3, "word")), R"(CIM_ModUser(3, 14, null, "word", 2, 255, 255, 255, 1, 30))");
    EXPECT_EQ(change(modify(3, {{"UserID", text("eva")}, {"UserPassword", texts({"seventeen letters"})}},
                            {{"UserID", "UserPassword"}})),
              R"(CIM_ModUser(131, 14, "eva", "seventeen letters", 2, 255, 255, 255, 1, 30))");
    EXPECT_EQ(change(requestState(3, {{"RequestedState", number(2)}})),
              "CIM_ModUser(3, 14, null, null, 255, 255, 1, 255, 1, 30)");
    EXPECT_EQ(change(requestState(3, {{"RequestedState", number(3)}})),
              "CIM_ModUser(3, 14, null, null, 255, 255, 255, 255, 0, 30)");
    EXPECT_EQ(change(create(newAccount("IPMI User-4", "ada", "word"))),
              R"(CIM_ModUser(4, 1, "ada", "word", 2, 2, 1, 1, 1, 30))");
}

TEST_F(AccountChanges, failWithTheirCommands) {
    const NamedValues both{{"UserID", text("eva")}, {"UserPassword", texts({"word"})}};
    for (const auto code : {command::setUserName, command::setUserPassword}) {
        failCommand(code);
        EXPECT_EQ(modify(3, both, {{"UserID", "UserPassword"}}).message, notModified);
    }
    for (const auto code : {command::setUserAccess, command::setUserPassword}) {
        failCommand(code);
        EXPECT_EQ(accounts.remove(path(3)).message, "DeleteInstance Failed");
        EXPECT_EQ(requestState(3, {{"RequestedState", number(2)}}).message, "Unable to change state\n");
    }
    failCommand(command::getUserAccess);
    EXPECT_EQ(accounts.remove(path(3)).message, "DeleteInstance Failed");
    EXPECT_EQ(modify(3, both).message, "Given instance does not exit\n");
}

TEST_F(AccountChanges, creationMakesAnEnabledUser) {
    const auto reply = create(newAccount("IPMI User-4", "eva", "word"));
    EXPECT_EQ(reply.values, std::vector{number(0, CMPI_uint32)}) << reply.message;
    ASSERT_EQ(reply.arguments.size(), 1U);
    EXPECT_EQ(reply.arguments[0].name, "Account");
    EXPECT_EQ(**reply.arguments[0].value.as<broker::Value::Reference>(), path(4));
    EXPECT_EQ(user(4)["name"], "eva");
    EXPECT_EQ(user(4)["privilege"], "user");
    EXPECT_TRUE(hasPassword(4, "word"));
    EXPECT_EQ(get(4, "EnabledState"), "2");
}

TEST_F(AccountChanges, creationHasLimits) {
    const std::tuple<std::string, std::string, const char*> cases[] = {
        {std::string(16, 'u'), std::string(20, 'p'), ""},
        {"eva", "", notFilled},
        {"eva", std::string(21, 'p'), notCreated},
        {std::string(17, 'u'), "word", notCreated},
        {"", "word", notFilled},
        {std::string(256, 'u'), "word", notFilled},
    };
    for (const auto& [userId, password, message] : cases) {
        const auto reply = create(newAccount("IPMI User-9", userId, password));
        EXPECT_EQ(reply.message, message) << userId << '/' << password;
        if (reply.ok()) {
            EXPECT_TRUE(hasPassword(9, password));
            EXPECT_TRUE(accounts.remove(path(9)).ok());
        }
        EXPECT_TRUE(user(9).is_null());
    }
}

TEST_F(AccountChanges, creationRefusesWrongArguments) {
    const auto valid = newAccount("IPMI User-4", "eva", "word");
    const NamedValues other{{"System", reference({{}, "root/cimv2", "CIM_HostComputerSystem", {}})},
                            valid[1]};
    const NamedValues noPassword{
        valid[0],
        {"AccountTemplate", accountTemplate({{"Name", text("IPMI User-4")}, {"UserID", text("eva")}})}};
    constexpr const char *noTemplate = "Failed to get input param AccountTemplate ",
                         *noSystem = "Failed to get input param System ",
                         *badName = "Invalid parameter UserID", *badSlot = "Invalid parameter user slot";
    const std::pair<NamedValues, const char*> cases[] = {
        {{}, noTemplate},
        {{valid[0]}, noTemplate},
        {{valid[0], {"AccountTemplate", text("IPMI User-4")}}, noTemplate},
        {other, noSystem},
        {{{"System", text("CIM_SPComputerSystem")}, valid[1]}, noSystem},
        {noPassword, notFilled},
        {newAccount("User-4", "eva", "word"), badName},
        {newAccount("IPMI User-x", "eva", "word"), badName},
        {newAccount("IPMI User-4x", "eva", "word"), badName},
        {newAccount("IPMI User-4", "sixteen letters!", "word"), badName}, // as slot 7 has it
        {newAccount("IPMI User-4", "anonymous", "word"), badName},
        {newAccount("IPMI User-0", "eva", "word"), badSlot},
        {newAccount("IPMI User-1", "eva", "word"), badSlot},
        {newAccount("IPMI User-17", "eva", "word"), badSlot},
        {newAccount("IPMI User--3", "eva", "word"), badSlot},
        {newAccount("IPMI User-260", "eva", "word"), badSlot},
        {newAccount("IPMI User-3", "eva", "word"),
         "Invalid parameter user slot: Available slots -  4 9 10 11 12 13 14 15 16"},
    };
    for (const auto& [in, message] : cases)
        EXPECT_THAT(create(in), Refuses(CMPI_RC_ERR_FAILED, message));
    EXPECT_TRUE(user(4).is_null());
    EXPECT_EQ(user(3)["name"], "operator");
}

TEST_F(AccountChanges, creationThatFailsLeavesTheSlotFree) {
    const auto in = newAccount("IPMI User-4", "eva", "word");
    for (const auto& [code, message] : {std::pair{command::getUserAccess, "Failed to create account"},
                                        {command::getUserName, notCreated},
                                        {command::setUserName, notCreated}}) {
        failCommand(code);
        EXPECT_EQ(create(in).message, message);
        bmc().clearFaults();
        EXPECT_FALSE(accounts.get(path(4)).ok());
    }
    // Once: what frees the slot again works.
    for (const auto& [code, skip] : {std::pair{command::getUserAccess, 1U},
                                     {command::setUserAccess, 0U},
                                     {command::setUserPassword, 0U},
                                     {command::setUserPassword, 1U}}) {
        addFault(code, skip, 1);
        EXPECT_EQ(create(in).message, notCreated);
        bmc().clearFaults();
        EXPECT_TRUE(user(4).is_null()) << +code.number;
    }
    EXPECT_TRUE(create(in).ok());
}

TEST_F(AccountChanges, noPasswordStaysBehind) {
    const std::string word = "Xy7-unmistakable", longWord = "Zq9-unmistakable-xyz", tooLong = longWord + "!";
    bmc().recordMessages(1000);
    for (const auto& password : {word, longWord, tooLong})
        EXPECT_FALSE(frees(password, [&] {
            EXPECT_THAT(setPassword(3, password).message, Not(HasSubstr("unmistakable")));
        }));
    EXPECT_FALSE(frees(word, [&] {
        EXPECT_TRUE(create(newAccount("IPMI User-4", "eva", word)).ok());
        EXPECT_THAT(create(newAccount("IPMI User-3", "eva", word)).message, Not(HasSubstr("unmistakable")));
    }));
    EXPECT_GT(bmc().recordedMessages().size(), 2U);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sysroot.place("/"))) {
        std::ostringstream content;
        content << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        EXPECT_THAT(content.str(), Not(HasSubstr("unmistakable")));
    }
    EXPECT_EQ(std::filesystem::status(stateFile).permissions(), std::filesystem::perms(0600));
    char* leak = strdup(word.c_str());
    EXPECT_TRUE(frees(word, [&] { free(leak); })) << "the watch itself works";
}

} // namespace
