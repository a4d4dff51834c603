// One account at a time: how requests find and hold it.
#pragma once

#include "provider_helper/accounts.h"
#include "Utility/engine/class_family.h"
#include "Utility/requests/request_status.h"

namespace ph {

// The record of a request, its password wiped when the request ends.
class Account {
public:
    Account() = default;
    ~Account() { PH_Clean_Account(&record_, record_ != nullptr); }
    Account(const Account&) = delete;
    Account& operator=(const Account&) = delete;

    // Makes a zeroed record; false when memory is short.
    bool allocate();
    // The account that the object path names.
    enum class Found { Yes, InvalidPath, No };
    Found find(const CMPIBroker* broker, const CMPIObjectPath* ref);

    AccountRecord* get() const { return record_; }
    AccountRecord* operator->() const { return record_; }

private:
    AccountRecord* record_ = nullptr;
};

// The keys of the account in a slot.
void fillAccountKeys(AccountRecord& record, const char* systemName, unsigned slot);

// Handlers of requests on CIM_Account.
CMPIStatus modifyAccount(const Request& request);
CMPIStatus deleteAccount(const Request& request);
// Methods of CIM_Account and CIM_AccountManagementService.
MethodAnswer changeAccountState(MethodCall& call);
MethodAnswer createAccount(MethodCall& call);

// Both classes refuse any other method in this way.
inline constexpr Refusal noSuchAccountMethod{CMPI_RC_ERR_FAILED, "Method Not Supported"};

// Takes a request's values into the record; false for a wrong type, and for a text that is empty or too long.
bool takeUserId(const CMPIData& data, AccountRecord& record);
bool takePassword(const CMPIData& data, AccountRecord& record);
bool takeName(const CMPIData& data, AccountRecord& record);

// The slot with the mark of the form that the record's password has.
std::uint8_t slotWithPasswordForm(const AccountRecord& record);

} // namespace ph
