// What the account classes show of the BMC's users.
#include "account_fixture.h"
#include "failing_allocation.h"

#include <ctime>
#include <dlfcn.h>

namespace {

const char* nameOfSlot3 = nullptr;

} // namespace

// A hook that gives a name of 17 bytes gives no end.
extern "C" __attribute__((visibility("default"))) int CIM_GetUser(IPMI20_SESSION_T* session, uint8_t slot,
                                                                  char* name, int timeout) {
    static const auto real = reinterpret_cast<decltype(&CIM_GetUser)>(dlsym(RTLD_NEXT, "CIM_GetUser"));
    if (slot != 3 || nameOfSlot3 == nullptr)
        return real(session, slot, name, timeout);
    std::memcpy(name, nameOfSlot3, std::min<std::size_t>(std::strlen(nameOfSlot3) + 1, CIM_USER_NAME_SIZE));
    return 0;
}

namespace {

using testing::IsEmpty;

using Accounts = AccountFixture;

TEST_F(Accounts, areTheUsedSlots) {
    const struct {
        const char* name;
        const char* userId;
        const char* enabledState;
    } expected[] = {
        {"IPMI User-1", "anonymous", "3"}, {"IPMI User-2", "root", "2"},
        {"IPMI User-3", "operator", "2"},  {"IPMI User-5", "silent", "3"},
        {"IPMI User-6", "locked", "3"},    {"IPMI User-7", "sixteen letters!", "2"},
        {"IPMI User-8", "fixed", "2"},
    };
    const auto reply = accounts.enumerate();
    ASSERT_EQ(reply.instances.size(), std::size(expected)) << reply.message;
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const auto& account = reply.instances[i];
        EXPECT_EQ(textOf(account, "Name"), expected[i].name);
        EXPECT_EQ(textOf(account, "UserID"), expected[i].userId);
        EXPECT_EQ(textOf(account, "ElementName"), expected[i].userId);
        EXPECT_EQ(textOf(account, "EnabledState"), expected[i].enabledState);
        EXPECT_EQ(textOf(account, "SystemName"), "controller");
        EXPECT_EQ(textOf(account, "RequestedState"), "12");
        EXPECT_EQ(textOf(account, "OrganizationName"), "{\"trz\"}");
        EXPECT_EQ(textOf(account, "UserPassword"), "<none>");
        EXPECT_EQ(textOf(account, "UserPasswordEncryptionAlgorithm"), "1");
        EXPECT_EQ(textOf(account, "OtherUserPasswordEncryptionAlgorithm"), "BlowFish");
        EXPECT_EQ(textOf(account, "UserPasswordEncoding"), "2");
        EXPECT_EQ(accounts.get(account.path).instances, std::vector{account});
    }
    const auto names = accounts.names();
    ASSERT_EQ(names.paths.size(), std::size(expected));
    EXPECT_EQ(names.paths[4], path("IPMI User-6"));
}

TEST_F(Accounts, otherNamesAreNone) {
    for (const char* name : {"IPMI User-4", "IPMI User-17", "IPMI User-0", "IPMI User-258", "IPMI User-02",
                             "IPMI User-2x", "IPMI User-", "root", ""}) {
        const auto reply = accounts.get(path(name));
        EXPECT_EQ(reply.code, CMPI_RC_ERR_FAILED) << name;
        EXPECT_EQ(reply.message, "Failed to Get Instance") << name;
    }
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

    vbmc::createFromText(stateFile, R"({"users": [{"id": 1, "name": "somebody"}]})", "model",
                         vbmc::Existing::Replace);
    EXPECT_EQ(textOf(accounts.enumerate().instances.at(0), "UserID"), "anonymous");
    EXPECT_EQ(find("anonymous"), -1);
    EXPECT_EQ(find("somebody"), 1);
}

TEST_F(Accounts, namesAreTextsWhateverTheBmcHolds) {
    const struct {
        const char* given;
        const char* published;
    } cases[] = {
        {"J\xC3\xBCrgen \xF0\x9F\x98\x80", "J\xC3\xBCrgen \xF0\x9F\x98\x80"},
        {"J\xFCrgen", "J\xC3\xBCrgen"},
        {"\xC3\xBC\xC3", "\xC3\x83\xC2\xBC\xC3\x83"},             // cut short
        {"\xC0\xAF", "\xC3\x80\xC2\xAF"},                         // longer than need be
        {"\xED\xA0\x80", "\xC3\xAD\xC2\xA0\xC2\x80"},             // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80"}, // beyond Unicode
        {"\x80\xF8", "\xC2\x80\xC3\xB8"},                         // no lead bytes
        {"tab\t\x7F", "tab__"},
        {"seventeen letters", "seventeen letter"}, // without an end
    };
    for (const auto& [given, published] : cases) {
        nameOfSlot3 = given;
        EXPECT_EQ(textOf(accounts.get(path("IPMI User-3")).instances.at(0), "UserID"), published);
    }
    nameOfSlot3 = nullptr;
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

constexpr std::uint8_t app = 0x06, getUserAccess = 0x44, getUserName = 0x46;

TEST_F(Accounts, aSlotThatCannotBeReadIsLeftOut) {
    failCommand(app, getUserAccess, 1); // the first asks for the number of slots
    const auto reply = accounts.enumerate();
    EXPECT_TRUE(reply.ok()) << reply.message;
    EXPECT_THAT(reply.instances, IsEmpty());
    failCommand(app, getUserAccess);
    EXPECT_EQ(accounts.enumerate().message, "Failed to Enumerate Instance");
    failCommand(app, getUserName, 3);
    EXPECT_EQ(accounts.names().paths.size(), 3U);
    failCommand(app, getUserName);
    EXPECT_EQ(accounts.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(accounts.names().message, "Failed to Enumerate Instance Names");
    EXPECT_EQ(accounts.instanceArray(), std::nullopt);
}

TEST_F(Accounts, theBmcIsNotAskedWithoutASystemName) {
    std::filesystem::remove(sysroot.place("/conf/system_names.ini"));
    vbmc::VirtualBmc(stateFile).recordMessages(100);
    EXPECT_EQ(accounts.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(accounts.get(path("IPMI User-2")).message, "Failed to Get Instance");
    EXPECT_THAT(vbmc::VirtualBmc(stateFile).recordedMessages(), IsEmpty());
}

TEST_F(Accounts, everyAllocationMayFail) {
    unsigned nth = 0;
    do {
        failAllocation(++nth);
        const auto reply = accounts.enumerate();
        const bool failed = allocationFailed();
        failAllocation(0);
        EXPECT_EQ(reply.ok(), !failed) << nth;
        if (!failed)
            break;
    } while (nth < 100);
    EXPECT_GT(nth, 3U);
}

TEST(PasswordExpiry, isAMidnight) {
    constexpr std::uint64_t day = 86400;
    const auto before = static_cast<std::uint64_t>(std::time(nullptr));
    const auto expiry = PH_GetPasswordExpiry(0);
    EXPECT_EQ(expiry % day, 0U);
    EXPECT_GT(expiry, before);
    EXPECT_LE(expiry, before + day + 1);
    EXPECT_EQ(PH_GetPasswordExpiry(60000) % day, 0U); // beyond 32 bits of seconds
    EXPECT_GE(PH_GetPasswordExpiry(60000), expiry + 60000 * day);
}

TEST_F(Accounts, anExpiryIsPublishedInMicroseconds) {
    AccountRecord record{};
    const PHUserEntry user{"eva", 4, 1, 0x54};
    ASSERT_EQ(PH_Fill_Account(&user, &record), 0);
    EXPECT_EQ(record.privilege, 4);
    std::snprintf(record.Name, sizeof record.Name, "IPMI User-4");
    for (char* key : {record.SystemCreationClassName, record.SystemName, record.CreationClassName})
        std::snprintf(key, 8, "key");
    record.passwordExpiryDays = 2;
    {
        broker::Scope scope(broker);
        const auto* instance = PH_MakeInst_Account(broker.handle(), nullptr, scope.make(accounts.path()),
                                                   nullptr, &record, 0, 0, nullptr);
        ASSERT_NE(instance, nullptr);
        const auto made = broker::toInstance(instance);
        const auto* expiration = broker::find(made.properties, "PasswordExpiration");
        ASSERT_NE(expiration, nullptr);
        EXPECT_EQ(expiration->as<broker::DateTime>()->microseconds, PH_GetPasswordExpiry(2) * 1'000'000);
    }
    free(record.OrganizationName[0]);
}

TEST_F(Accounts, capabilitiesAndServiceAreOneEach) {
    const ClassRequests capabilities{broker, PH_CLASS_FUNCTIONS(AccountManagementCapabilities)};
    const auto all = capabilities.enumerate().instances;
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(textOf(all[0], "MaximumAccountsSupported"), "16");
    EXPECT_EQ(textOf(all[0], "OperationsSupported"), "{2, 3, 4}");
    EXPECT_EQ(capabilities.get(all[0].path).instances, all);
    failCommand(app, getUserAccess);
    EXPECT_EQ(capabilities.enumerate().message, "Failed to Enumerate Instance");
    EXPECT_EQ(capabilities.names().paths.size(), 1U);

    const auto services = service.enumerate().instances;
    ASSERT_EQ(services.size(), 1U);
    EXPECT_EQ(textOf(services[0], "SystemName"), "controller");
    EXPECT_EQ(service.invoke(services[0].path, "StopService").message, "Method Not Supported");
    EXPECT_EQ(service.modify(services[0]).message, "SetInstance not supported");
}

} // namespace
