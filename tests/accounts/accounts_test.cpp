// What the account classes show of the BMC's users.
#include "account_fixture.h"

#include <cstring>
#include <ctime>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Accounts = AccountFixture;

TEST_F(Accounts, areTheUsedSlots) {
    const std::tuple<int, const char*, const char*> expected[] = {
        {1, "anonymous", "3"}, {2, "root", "2"},  {3, "operator", "2"},         {5, "silent", "3"},
        {6, "locked", "3"},    {8, "fixed", "2"}, {7, "sixteen letters!", "2"},
    };
    const auto all = accounts.enumerate().instances;
    ASSERT_EQ(all.size(), std::size(expected));
    for (const auto& [slot, userId, enabledState] : expected) {
        EXPECT_EQ(get(slot, "UserID"), userId);
        EXPECT_EQ(get(slot, "EnabledState"), enabledState) << userId;
    }
    EXPECT_THAT(propertiesOf(all[2]),
                ElementsAre("SystemCreationClassName=CIM_SPComputerSystem", "CreationClassName=CIM_Account",
                            "SystemName=controller", "Name=IPMI User-3", "UserID=operator",
                            "ElementName=operator", "RequestedState=12", "EnabledState=2",
                            "OtherEnabledState=", "OrganizationName={\"trz\"}",
                            "UserPasswordEncryptionAlgorithm=1", "UserPasswordEncoding=2",
                            "OtherUserPasswordEncryptionAlgorithm=BlowFish"));
    for (const char* name : {"IPMI User-4", "IPMI User-17", "IPMI User-0", "IPMI User-258", "IPMI User-02",
                             "IPMI User-2x", "IPMI User-", "root", ""})
        EXPECT_THAT(accounts.get(named(name)), Refuses(CMPI_RC_ERR_FAILED, "Failed to Get Instance")) << name;
}

TEST_F(Accounts, slotOneIsAnonymousWhateverItsName) {
    const auto find = [](const char* name) {
        PHUserEntry user{};
        return PH_Get_User(PH_USERS_WITH_ACCESS, name, &user) == 0 ? user.slot : -1;
    };
    EXPECT_EQ(find("anonymous"), 1);
    EXPECT_EQ(find("operator"), 3);
    EXPECT_EQ(find("nobody"), -1);
    EXPECT_EQ(find(""), -1);

    createBmc(R"({"users": [{"id": 1, "name": "somebody"}]})");
    EXPECT_EQ(get(1, "UserID"), "anonymous");
    EXPECT_EQ(find("anonymous"), -1);
    EXPECT_EQ(find("somebody"), 1);
}

TEST_F(Accounts, namesAreTextsWhateverTheBmcHolds) {
    const std::pair<const char*, const char*> cases[] = {
        {"J\xC3\xBCrgen \xF0\x9F\x98\x80", "J\xC3\xBCrgen \xF0\x9F\x98\x80"},
        {"J\xFCrgen", "J\xC3\xBCrgen"},
        {"\xC3\xBC\xC3", "\xC3\x83\xC2\xBC\xC3\x83"},             // cut short
        {"\xC0\xAF", "\xC3\x80\xC2\xAF"},                         // longer than need be
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},             // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"}, // beyond Unicode
        {"\x80\xF8", "\xC2\x80\xC3\xB8"},                         // no lead bytes
        {"tab\t\x7F", "tab__"},
        {"seventeen letters", "seventeen letter"}, // 17 bytes without an end
    };
    for (const auto& [given, published] : cases) {
        PH_STAND_IN(CIM_GetUser, [name = given](auto*, uint8_t, char* field, int) {
            std::memcpy(field, name, std::min<std::size_t>(std::strlen(name) + 1, CIM_USER_NAME_SIZE));
            return 0;
        });
        EXPECT_EQ(get(3, "UserID"), published);
    }
}

TEST_F(Accounts, accessIsReadOnlyInItsMode) {
    const auto read = [](int mode) {
        PHUserEntry* users = nullptr;
        int count = 0;
        EXPECT_EQ(PH_Get_All_Users(mode, &users, &count), 0);
        std::vector<PHUserEntry> list(users, users + count);
        free(users);
        return list;
    };
    for (const auto& user : read(0)) {
        EXPECT_EQ(user.access, 0xFF);
        EXPECT_EQ(user.isEnabled, 0);
    }
    const auto users = read(PH_USERS_WITH_ACCESS);
    ASSERT_EQ(users.size(), 7U);
    EXPECT_EQ(users[2].access, 0x73); // enabled, link authentication, messaging, operator
    EXPECT_EQ(users[4].access, 0x14);
    EXPECT_EQ(users[4].isEnabled, 0);
}

TEST_F(Accounts, aSlotThatCannotBeReadIsLeftOut) {
    failCommand(command::getUserAccess, 1); // the first asks for the number of slots
    const auto reply = accounts.enumerate();
    EXPECT_TRUE(reply.ok()) << reply.message;
    EXPECT_THAT(reply.instances, IsEmpty());
    failCommand(command::getUserAccess);
    EXPECT_EQ(accounts.enumerate().message, "Failed to Enumerate Instance");
    failCommand(command::getUserName, 3);
    EXPECT_EQ(accounts.names().paths.size(), 3U);
    failCommand(command::getUserName);
    EXPECT_EQ(accounts.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(accounts.names().message, "Failed to Enumerate Instance Names");
    EXPECT_EQ(accounts.instanceArray(), std::nullopt);
}

TEST_F(Accounts, passwordsExpireAtMidnight) {
    constexpr std::uint64_t day = 86400;
    const auto before = static_cast<std::uint64_t>(std::time(nullptr));
    const auto expiry = PH_GetPasswordExpiry(0);
    EXPECT_EQ(expiry % day, 0U);
    EXPECT_GT(expiry, before);
    EXPECT_LE(expiry, before + day + 1);
    EXPECT_EQ(PH_GetPasswordExpiry(60000) % day, 0U); // beyond 32 bits of seconds
    EXPECT_GE(PH_GetPasswordExpiry(60000), expiry + 60000 * day);

    AccountRecord record{};
    const PHUserEntry user{"eva", 4, 1, 0x54};
    ASSERT_EQ(PH_Fill_Account(&user, &record), 0);
    EXPECT_EQ(record.privilege, 4);
    record.passwordExpiryDays = 2;
    for (char* key :
         {record.SystemCreationClassName, record.SystemName, record.CreationClassName, record.Name})
        std::strcpy(key, "key");
    broker::Scope scope(broker);
    const auto made = broker::toInstance(PH_MakeInst_Account(
        broker.handle(), nullptr, scope.make(accounts.path()), nullptr, &record, 0, 0, nullptr));
    const auto* expiration = broker::find(made.properties, "PasswordExpiration");
    ASSERT_NE(expiration, nullptr);
    EXPECT_EQ(expiration->as<broker::DateTime>()->microseconds, PH_GetPasswordExpiry(2) * 1'000'000);
    free(record.OrganizationName[0]);
}

TEST_F(Accounts, capabilitiesNameTheSlots) {
    const ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(AccountManagementCapabilities)};
    const auto all = only(capabilities);
    EXPECT_EQ(textOf(all, "MaximumAccountsSupported"), "16");
    EXPECT_EQ(textOf(all, "OperationsSupported"), "{2, 3, 4}");
    failCommand(command::getUserAccess);
    EXPECT_EQ(capabilities.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(capabilities.names().paths.size(), 1U);
    EXPECT_EQ(textOf(only(service), "SystemName"), "controller");
    EXPECT_EQ(service.invoke(service.path(), "StopService").message, "Method Not Supported");
}

} // namespace
