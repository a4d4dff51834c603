// Modifying, deleting, enabling and disabling accounts.
#include "account_fixture.h"

#include <fstream>
#include <sstream>

namespace {

using testing::HasSubstr;
using testing::Not;

class AccountChanges : public AccountFixture {
protected:
    broker::Instance changed(const char* name, broker::NamedValues properties) const {
        return {path(name), std::move(properties)};
    }
    broker::Reply setPassword(const char* name, const std::string& password) const {
        return accounts.modify(changed(name, {{"UserPassword", texts({password})}}), {{"UserPassword"}});
    }
};

TEST_F(AccountChanges, aPasswordReplacesTheOld) {
    EXPECT_TRUE(setPassword("IPMI User-3", "first").ok());
    EXPECT_TRUE(hasPassword(3, "first"));
    EXPECT_TRUE(setPassword("IPMI User-3", "second").ok());
    EXPECT_TRUE(hasPassword(3, "second"));
    EXPECT_FALSE(hasPassword(3, "first"));
    EXPECT_EQ(user(3)["name"], "operator");
    EXPECT_EQ(user(3)["privilege"], "operator");
}

TEST_F(AccountChanges, passwordsAtTheirLimits) {
    const struct {
        const char* what;
        std::string password;
        bool longForm;
        bool accepted;
    } cases[] = {
        {"16 bytes", std::string(16, 'a'), false, true},
        {"17 bytes", std::string(17, 'b'), true, true},
        {"20 bytes", std::string(20, 'c'), true, true},
        {"21 bytes", std::string(21, 'd'), false, false},
        {"255 bytes", std::string(255, 'e'), false, false},
        {"empty", "", false, true},
        {"quotes", "a\"b'c`$(d)\\", false, true},
        {"not ASCII, 17 bytes", "pässwörd-mit-14", true, true},
    };
    for (const auto& item : cases) {
        SCOPED_TRACE(item.what);
        ASSERT_TRUE(setPassword("IPMI User-3", "before").ok());
        const auto reply = setPassword("IPMI User-3", item.password);
        EXPECT_EQ(reply.message, item.accepted ? "" : "Unable to modify property\n");
        EXPECT_TRUE(item.accepted ? hasPassword(3, item.password, item.longForm) : hasPassword(3, "before"));
    }
}

TEST_F(AccountChanges, userIdsAtTheirLimits) {
    const struct {
        std::string userId;
        const char* message;
    } cases[] = {
        {"eva", ""},
        {"sixteen-letters-", ""},
        {"Ünïcode", ""},
        {"o'neil \"bob\"", ""},
        {std::string(17, 'n'), "Unable to modify property\n"},
        {std::string(256, 'n'), "Invalid property values \n"},
        {"", "Invalid property values \n"},
    };
    for (const auto& [userId, message] : cases) {
        const auto reply = accounts.modify(changed("IPMI User-3", {{"UserID", text(userId)}}), {{"UserID"}});
        EXPECT_EQ(reply.message, message) << userId;
        if (reply.ok()) {
            EXPECT_EQ(textOf(accounts.get(path("IPMI User-3")).instances.at(0), "UserID"), userId);
        }
    }
    EXPECT_TRUE(setPassword("IPMI User-8", "word").ok()) << "the name that stays is not written";
    EXPECT_TRUE(setPassword("IPMI User-1", "word").ok());
    EXPECT_EQ(user(1)["name"], "");
    EXPECT_EQ(accounts.modify(changed("IPMI User-8", {{"UserID", text("loose")}}), {{"UserID"}}).message,
              "Unable to modify property\n");
}

TEST_F(AccountChanges, aWholeInstanceMayComeBackChanged) {
    auto instance = accounts.get(path("IPMI User-6")).instances.at(0);
    broker::set(instance.properties, "UserID", text("unlocked"));
    broker::set(instance.properties, "UserPassword", texts({"word"}));
    EXPECT_EQ(accounts.modify(instance).message, "");
    EXPECT_EQ(user(6)["name"], "unlocked");
    EXPECT_EQ(user(6)["enabled"], true) << "a modified account is enabled";
    EXPECT_TRUE(hasPassword(6, "word"));

    // Names that stand twice in the list are no second password to keep.
    broker::set(instance.properties, "UserPassword", texts({"other word"}));
    watchFreedMemory("other word");
    EXPECT_EQ(accounts.modify(instance, {{"UserPassword", "UserPassword"}}).message, "");
    EXPECT_FALSE(secretWasFreed());
    watchFreedMemory(nullptr);
    EXPECT_TRUE(hasPassword(6, "other word"));
}

TEST_F(AccountChanges, refusedModifications) {
    const broker::NamedValues word{{"UserPassword", texts({"word"})}};
    const struct {
        const char* what;
        broker::Instance instance;
        broker::PropertyList properties;
        const char* message;
    } cases[] = {
        {"no key", {accounts.path(), word}, {{"UserPassword"}}, "Invalid input Object Path\n"},
        {"free slot", {path("IPMI User-4"), word}, {{"UserPassword"}}, "Given instance does not exit\n"},
        {"other property",
         {path("IPMI User-3"), {{"ElementName", text("x")}}},
         {{"ElementName"}},
         "Invalid Property(s): ElementName"},
        {"other properties that differ",
         {path("IPMI User-3"), {{"ElementName", text("x")}, {"EnabledState", number(3)}, word[0]}},
         {},
         "Invalid Property(s): ElementName, EnabledState"},
        {"nothing", {path("IPMI User-3"), {}}, {}, "Invalid parameters / No modifyable properties"},
        {"no such change",
         {path("IPMI User-3"), {{"UserID", text("operator")}}},
         {},
         "Invalid parameters / No modifyable properties"},
        {"no list of texts",
         {path("IPMI User-3"), {{"UserPassword", text("word")}}},
         {{"UserPassword"}},
         "Invalid property values \n"},
        {"empty list",
         {path("IPMI User-3"), {{"UserPassword", texts({})}}},
         {{"UserPassword"}},
         "Invalid property values \n"},
        {"no text",
         {path("IPMI User-3"), {{"UserID", number(3)}}},
         {{"UserID"}},
         "Invalid property values \n"},
        {"named and missing", {path("IPMI User-3"), {}}, {{"UserPassword"}}, "Invalid property values \n"},
    };
    ASSERT_TRUE(setPassword("IPMI User-3", "before").ok());
    for (const auto& item : cases) {
        const auto reply = accounts.modify(item.instance, item.properties);
        EXPECT_EQ(reply.message, item.message) << item.what;
        EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED) << item.what;
    }
    EXPECT_TRUE(hasPassword(3, "before"));
}

TEST_F(AccountChanges, deletionFreesTheSlot) {
    ASSERT_TRUE(setPassword("IPMI User-3", "word").ok());
    EXPECT_EQ(accounts.remove(path("IPMI User-1")).message, "Cannot delete default users");
    EXPECT_EQ(accounts.remove(path("IPMI User-2")).message, "Cannot delete default users");
    EXPECT_EQ(accounts.remove(path("IPMI User-4")).message, "DeleteInstance Failed");
    EXPECT_EQ(accounts.remove(accounts.path()).message, "DeleteInstance Failed");
    EXPECT_EQ(accounts.remove(path("IPMI User-8")).message, "DeleteInstance Failed") << "a fixed name";
    EXPECT_TRUE(accounts.remove(path("IPMI User-3")).ok());
    EXPECT_TRUE(user(3).is_null());
    EXPECT_FALSE(hasPassword(3, "word"));
    EXPECT_FALSE(accounts.get(path("IPMI User-3")).ok());
}

TEST_F(AccountChanges, stateOfAnAccount) {
    const auto request = [&](const char* name, const broker::NamedValues& in) {
        return accounts.invoke(path(name), "requeststatechange", in);
    };
    const auto state = [&](const char* name) {
        return textOf(accounts.get(path(name)).instances.at(0), "EnabledState");
    };
    const auto reply = request("IPMI User-3", {{"RequestedState", number(3)}});
    EXPECT_TRUE(reply.ok()) << reply.message;
    EXPECT_EQ(reply.values, (std::vector<broker::Value>{{CMPI_uint32, std::uint64_t{0}}}));
    EXPECT_EQ(state("IPMI User-3"), "3");
    EXPECT_EQ(user(3)["privilege"], "operator");
    for (const char* name : {"IPMI User-3", "IPMI User-5", "IPMI User-6"}) { // 5 could not send messages
        EXPECT_TRUE(request(name, {{"RequestedState", text("2")}}).ok());
        EXPECT_EQ(state(name), "2") << name;
    }
    EXPECT_EQ(user(5)["privilege"], "user");

    EXPECT_EQ(request("IPMI User-3", {{"RequestedState", number(11)}}).message, "Invalid Parameter value");
    EXPECT_EQ(request("IPMI User-3", {}).message, "RequestedState Parameter is Invalid");
    EXPECT_EQ(request("IPMI User-4", {{"RequestedState", number(2)}}).message,
              "Given instance does not exit\n");
    EXPECT_EQ(accounts.invoke(path("IPMI User-3"), "StartService").message, "Method Not Supported");
    EXPECT_EQ(accounts.invoke(accounts.path(), "RequestStateChange", {{"RequestedState", number(2)}}).message,
              "Invalid input Object Path\n");
}

TEST_F(AccountChanges, aCommandThatFailsFailsTheRequest) {
    constexpr std::uint8_t app = 0x06;
    const broker::Instance both =
        changed("IPMI User-3", {{"UserID", text("eva")}, {"UserPassword", texts({"word"})}});
    for (const std::uint8_t command : {std::uint8_t{0x45}, std::uint8_t{0x47}}) {
        failCommand(app, command);
        EXPECT_EQ(accounts.modify(both, {{"UserID", "UserPassword"}}).message, "Unable to modify property\n");
    }
    for (const std::uint8_t command : {std::uint8_t{0x43}, std::uint8_t{0x47}}) {
        failCommand(app, command);
        EXPECT_EQ(accounts.remove(path("IPMI User-3")).message, "DeleteInstance Failed");
        EXPECT_EQ(accounts.invoke(path("IPMI User-3"), "RequestStateChange", {{"RequestedState", number(2)}})
                      .message,
                  "Unable to change state\n");
    }
    failCommand(app, 0x44);
    EXPECT_EQ(accounts.remove(path("IPMI User-3")).message, "DeleteInstance Failed");
    EXPECT_EQ(accounts.modify(both).message, "Given instance does not exit\n");
}

std::string everythingBelow(const std::filesystem::path& folder) {
    std::stringstream all;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        if (entry.is_regular_file())
            all << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    return all.str();
}

TEST_F(AccountChanges, noPasswordStaysBehind) {
    const std::string word = "Xy7-unmistakable", longWord = "Zq9-unmistakable-xyz", tooLong = longWord + "!";
    vbmc::VirtualBmc(stateFile).recordMessages(1000);
    for (const auto* password : {&word, &longWord, &tooLong}) {
        watchFreedMemory(password->c_str());
        const auto reply = setPassword("IPMI User-3", *password);
        EXPECT_FALSE(secretWasFreed());
        watchFreedMemory(nullptr);
        EXPECT_THAT(reply.message, Not(HasSubstr("unmistakable")));
    }
    EXPECT_GT(vbmc::VirtualBmc(stateFile).recordedMessages().size(), 2U);
    EXPECT_THAT(everythingBelow(sysroot.place("/")), Not(HasSubstr("unmistakable")));
    EXPECT_EQ(std::filesystem::status(stateFile).permissions(), std::filesystem::perms(0600));
    // The watch itself works.
    char* leak = strdup(word.c_str());
    watchFreedMemory(word.c_str());
    free(leak);
    EXPECT_TRUE(secretWasFreed());
    watchFreedMemory(nullptr);
}

} // namespace
