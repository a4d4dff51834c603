// Modifying, deleting, enabling and disabling an account.
#include "accounts/account.h"
#include "accounts/user_slots.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/requests/changes.h"
#include "Utility/values/dmtf_values.h"

#include <cstring>

namespace ph {
namespace {

constexpr const char* invalidPath = "Invalid input Object Path\n";
constexpr const char* noSuchAccount = "Given instance does not exit\n";
constexpr const char* noSession = "Unable to create IPMI session\n";

PHPropertyList modifiableProperties() {
    PHPropertyList list{};
    for (const char* name : {"UserPassword", "UserID"})
        AddTo_DefaultList(list.rows, name, list.count++);
    return list;
}

// Finds what the request changes, or sets a status with the reason why it must not.
CMPIStatus readChanges(const Request& request, const AccountRecord& record, PHPropertyList& changes) {
    CMPIStatus status = success;
    const CMPIInstance* current =
        PH_MakeInst_Account(request.broker, request.context, request.ref, nullptr, &record, 0, 2, &status);
    if (current == nullptr)
        return status;
    status = ph::readChanges(request, current, modifiableProperties(), changes, CMPI_RC_ERR_FAILED);
    if (status.rc != CMPI_RC_OK)
        return status;
    return changes.count > 0 ? success
                             : fail(request.broker, "Invalid parameters / No modifyable properties");
}

} // namespace

CMPIStatus modifyAccount(const Request& request) {
    Account account;
    switch (account.find(request.broker, request.ref)) {
    case Account::Found::InvalidPath:
        return fail(request.broker, invalidPath);
    case Account::Found::No:
        return fail(request.broker, noSuchAccount);
    case Account::Found::Yes:
        break;
    }
    PHPropertyList changes;
    if (const CMPIStatus status = readChanges(request, *account.get(), changes); status.rc != CMPI_RC_OK)
        return status;

    const std::string formerUserId = account->UserID;
    if (PH_Fill_Account_Struct_for_MI(&changes, account.get()) != 0)
        return fail(request.broker, "Invalid property values \n");
    // A name that stays is not written again: "anonymous" is none that slot 1 has, and BMCs refuse to name
    // their fixed users.
    const char* newName = account->UserID != formerUserId ? account->UserID : nullptr;

    IpmiSession session;
    if (!session.open())
        return fail(request.broker, noSession);
    constexpr std::uint8_t setPassword = 2, enable = 1;
    if (CIM_ModUser(session.get(), slotWithPasswordForm(*account.get()), CIM_USER_PRESENT_CHANNEL, newName,
                    account->UserPassword[0], setPassword, CIM_USER_KEEP, CIM_USER_KEEP, CIM_USER_KEEP,
                    enable, hookTimeout) != 0)
        return fail(request.broker, "Unable to modify property\n");
    return success;
}

CMPIStatus deleteAccount(const Request& request) {
    Account account;
    if (account.find(request.broker, request.ref) != Account::Found::Yes)
        return fail(request.broker, "DeleteInstance Failed");
    if (account->slot <= lastDefaultSlot)
        return fail(request.broker, "Cannot delete default users");
    IpmiSession session;
    if (!session.open() || CIM_DelUser(session.get(), account->slot, hookTimeout) != 0)
        return fail(request.broker, "DeleteInstance Failed");
    return success;
}

MethodAnswer changeAccountState(MethodCall& call) {
    std::uint16_t requestedState = 0;
    if (!call.readRequestedState(requestedState))
        return std::nullopt;
    call.status = PH_RequestStateChange(call.request.broker, call.request.ref, requestedState);
    return call.status.rc == CMPI_RC_OK ? MethodAnswer(methodDone) : std::nullopt;
}

} // namespace ph

CMPIStatus PH_RequestStateChange(const CMPIBroker* broker, const CMPIObjectPath* ref,
                                 uint16_t requestedState) {
    using namespace ph::RequestedState;
    if (requestedState != Enabled && requestedState != Disabled)
        return ph::fail(broker, "Invalid Parameter value");
    ph::Account account;
    switch (account.find(broker, ref)) {
    case ph::Account::Found::InvalidPath:
        return ph::fail(broker, ph::invalidPath);
    case ph::Account::Found::No:
        return ph::fail(broker, ph::noSuchAccount);
    case ph::Account::Found::Yes:
        break;
    }
    ph::IpmiSession session;
    if (!session.open())
        return ph::fail(broker, ph::noSession);
    const bool enable = requestedState == Enabled;
    if (CIM_ModUser(session.get(), account->slot, CIM_USER_PRESENT_CHANNEL, nullptr, nullptr, CIM_USER_KEEP,
                    CIM_USER_KEEP, enable ? 1 : CIM_USER_KEEP, CIM_USER_KEEP, enable, ph::hookTimeout) != 0)
        return ph::fail(broker, "Unable to change state\n");
    return ph::success;
}
