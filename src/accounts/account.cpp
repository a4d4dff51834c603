// CIM_Account: one for each used slot of the BMC's user table.
#include "accounts/account.h"

#include "accounts/user_slots.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/hosted_element.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <ctime>

constexpr const char* const g_AccountKeyList[4] = {"SystemCreationClassName", "CreationClassName",
                                                   "SystemName", "Name"};

namespace ph::account {
namespace {

using Record = AccountRecord;

constexpr const char* className = "CIM_Account";
constexpr std::size_t nameKey = 3;
constexpr std::uint32_t neverExpires = 99999; // days

DateTime passwordExpiration(const Record& record) {
    constexpr std::uint64_t microseconds = 1'000'000;
    return {record.passwordExpiryDays == neverExpires
                ? DateTime::none
                : PH_GetPasswordExpiry(record.passwordExpiryDays) * microseconds};
}

constexpr Property properties[] = {
    PH_KEY(Record, SystemCreationClassName),
    PH_KEY(Record, CreationClassName),
    PH_KEY(Record, SystemName),
    PH_KEY(Record, Name),
    PH_PROPERTY(Record, UserID),
    PH_PROPERTY(Record, UserPassword),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, RequestedState),
    PH_PROPERTY(Record, EnabledState),
    PH_PROPERTY(Record, OtherEnabledState),
    PH_PROPERTY(Record, OrganizationName),
    PH_COMPUTED("PasswordExpiration", passwordExpiration),
    PH_PROPERTY(Record, Descriptions),
    PH_PROPERTY(Record, UserPasswordEncryptionAlgorithm),
    PH_PROPERTY(Record, UserPasswordEncoding),
    PH_PROPERTY(Record, OtherUserPasswordEncryptionAlgorithm),
};

int append(RecordArray<Record>& accounts, const char* systemName, const PHUserEntry& user, Detail detail) {
    Record* record = accounts.append();
    if (record == nullptr)
        return -1;
    fillAccountKeys(*record, systemName, user.slot);
    return detail == Detail::Names ? 0 : PH_Fill_Account(&user, record);
}

int enumerate(RecordArray<Record>& accounts, Detail detail) {
    char systemName[256] = "";
    PHUserEntry* list = nullptr;
    int count = 0;
    if (PH_GetSPSystemName(systemName) != 0 || PH_Get_All_Users(PH_USERS_WITH_ACCESS, &list, &count) != 0)
        return -1;
    const HeapPtr<PHUserEntry> users(list);
    for (int i = 0; i < count; ++i)
        if (append(accounts, systemName, list[i], detail) != 0)
            return -1;
    return 0;
}

// Reads the one slot that the Name numbers.
int get(RecordArray<Record>& accounts, CMPIString** keyValues) {
    const char* name = textOf(keyValues[nameKey]);
    char systemName[256] = "";
    std::uint8_t slot = 0;
    PHUserEntry user;
    IpmiSession session;
    if (name == nullptr || !parseAccountName(name, slot) || PH_GetSPSystemName(systemName) != 0 ||
        !session.open() || slot > PH_Get_Max_Users_Count(session.get()) ||
        readSlot(session.get(), PH_USERS_WITH_ACCESS, slot, user) != Slot::Used)
        return -1;
    return append(accounts, systemName, user, Detail::All);
}

constexpr Method methods[] = {
    {.name = requestStateChange, .parameters = requestStateChangeParameters, .carryOut = changeAccountState}};

constexpr ClassDefinition<Record> definition{
    .name = className,
    .superclass = "CIM_EnabledLogicalElement",
    .source = "Get and Set User Name, Get and Set User Access, Set User Password",
    .keys = g_AccountKeyList,
    .properties = properties,
    .enumerate = enumerate,
    .get = get,
    .modify = modifyAccount,
    .remove = deleteAccount,
    .methods = methods,
    .invocation = {.keys = Invocation::Keys::ByMethod, .unknownMethod = noSuchAccountMethod}};

} // namespace
} // namespace ph::account

namespace ph {

bool Account::allocate() {
    record_ = static_cast<AccountRecord*>(std::calloc(1, sizeof(AccountRecord)));
    return record_ != nullptr;
}

Account::Found Account::find(const CMPIBroker* broker, const CMPIObjectPath* ref) {
    KeyValues keyValues;
    if (!keyValues.areRead(broker, ref, g_AccountKeyList))
        return Found::InvalidPath;
    return PH_Get_Account(&record_, keyValues) == 0 ? Found::Yes : Found::No;
}

void fillAccountKeys(AccountRecord& record, const char* systemName, unsigned slot) {
    setHostedKeys(record, processorClass, systemName, account::className);
    std::snprintf(record.Name, sizeof(record.Name), "IPMI User-%u", slot);
}

} // namespace ph

int PH_Fill_Account(const PHUserEntry* user, AccountRecord* record) {
    ph::copyText(record->UserID, user->userName);
    ph::copyText(record->ElementName, user->userName);
    record->OrganizationName[0] = strdup("trz");
    record->RequestedState = ph::RequestedState::NotApplicable;
    record->EnabledState = user->isEnabled != 0 && (user->access & ph::mayMessage) != 0
                               ? ph::EnabledState::Enabled
                               : ph::EnabledState::Disabled;
    record->passwordExpiryDays = ph::account::neverExpires;
    record->slot = user->slot;
    record->privilege = user->access & 0x0F;
    record->UserPasswordEncryptionAlgorithm = ph::PasswordEncryption::Other;
    ph::copyText(record->OtherUserPasswordEncryptionAlgorithm, "BlowFish");
    record->UserPasswordEncoding = ph::PasswordEncoding::Ascii;
    return record->OrganizationName[0] != nullptr ? 0 : -1;
}

uint64_t PH_GetPasswordExpiry(uint32_t days) {
    constexpr std::uint64_t day = 86400;
    const std::time_t now = std::time(nullptr);
    std::tm utc{};
    gmtime_r(&now, &utc);
    const std::uint64_t sinceMidnight = std::uint64_t{60} * (60 * utc.tm_hour + utc.tm_min) + utc.tm_sec;
    return static_cast<std::uint64_t>(now) + day - sinceMidnight + days * day;
}

PH_EXPORT_CLASS_FAMILY(Account, AccountRecord, ph::account::definition)
