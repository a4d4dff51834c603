// CIM_AccountManagementCapabilities: what the account management service allows.
#include "provider_helper/accounts.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

constexpr const char* const g_AccountManagementCapabilitiesKeyList[1] = {"InstanceID"};

namespace ph::account_management_capabilities {
namespace {

using Record = AccountManagementCapabilitiesRecord;

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, ElementName),
    PH_PROPERTY(Record, ElementNameEditSupported),
    PH_PROPERTY(Record, MaximumAccountsSupported),
    PH_PROPERTY(Record, OperationsSupported),
    PH_PROPERTY(Record, SupportedUserPasswordEncryptionAlgorithms),
};

int enumerate(RecordArray<Record>& all, Detail detail) {
    Record* capabilities = all.append();
    if (capabilities == nullptr)
        return -1;
    copyText(capabilities->InstanceID, "trz:AccountManagementCapabilities");
    if (detail == Detail::Names)
        return 0;
    IpmiSession session;
    return session.open() ? PH_Fill_AccountManagementCapabilities(session.get(), capabilities) : -1;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_AccountManagementCapabilities",
                                             .superclass = "CIM_EnabledLogicalElementCapabilities",
                                             .source = "one fixed instance; Get User Access",
                                             .keys = g_AccountManagementCapabilitiesKeyList,
                                             .properties = properties,
                                             .enumerate = enumerate};

} // namespace
} // namespace ph::account_management_capabilities

int PH_Fill_AccountManagementCapabilities(IPMI20_SESSION_T* session,
                                          AccountManagementCapabilitiesRecord* record) {
    const int slots = PH_Get_Max_Users_Count(session);
    if (slots < 0)
        return -1;
    ph::copyText(record->ElementName, "Account Management Capabilities");
    record->MaximumAccountsSupported = static_cast<std::uint16_t>(slots);
    ph::setList(record->OperationsSupported, {ph::AccountOperations::Create, ph::AccountOperations::Modify,
                                              ph::AccountOperations::Delete});
    ph::setList(record->SupportedUserPasswordEncryptionAlgorithms, {ph::PasswordEncryption::None});
    return 0;
}

PH_EXPORT_CLASS_FAMILY(AccountManagementCapabilities, AccountManagementCapabilitiesRecord,
                       ph::account_management_capabilities::definition)
