// Method CreateAccount.
#include "accounts/account.h"
#include "accounts/user_slots.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/hosted_element.h"

#include <cstdio>

namespace ph {
namespace {

// The embedded instance, NULL when there is none.
const CMPIInstance* accountTemplate(const CMPIArgs* in) {
    const auto data = argument(in, "AccountTemplate");
    return data && data->type == CMPI_instance ? data->value.inst : nullptr;
}

int createUser(IPMI20_SESSION_T* session, const AccountRecord& record) {
    constexpr std::uint8_t lanChannel = 1, setPassword = 2, userPrivilege = 2;
    constexpr std::uint8_t messaging = 1, linkAuthentication = 1, enable = 1;
    return CIM_ModUser(session, slotWithPasswordForm(record), lanChannel, record.UserID,
                       record.UserPassword[0], setPassword, userPrivilege, messaging, linkAuthentication,
                       enable, hookTimeout);
}

} // namespace

MethodAnswer createAccount(MethodCall& call) {
    const auto refuse = [&](const char* message) { return call.refuse(CMPI_RC_ERR_FAILED, message); };
    const Request& request = call.request;
    const CMPIInstance* instance = accountTemplate(request.in);
    if (instance == nullptr)
        return refuse("Failed to get input param AccountTemplate ");
    if (referenceArgument(request.in, "System", processorClass) == nullptr)
        return refuse("Failed to get input param System ");
    Account account;
    if (!account.allocate())
        return refuse("Memory problem");
    if (PH_Fill_Account_Struct_from_CMPI_Inst(instance, account.get()) != 0)
        return refuse("Failed to fill account struct");
    char message[PH_ACCOUNT_MESSAGE_SIZE];
    if (create_account(account.get(), message) != 0)
        return refuse(message);

    char systemName[256] = "";
    CMPIValue value{};
    if (PH_GetSPSystemName(systemName) == 0) {
        fillAccountKeys(*account.get(), systemName, account->slot);
        value.ref = PH_MakePath_Account(request.broker, request.context, request.ref, account.get(), nullptr);
    }
    if (value.ref == nullptr || CMAddArg(request.out, "Account", &value, CMPI_ref).rc != CMPI_RC_OK)
        return refuse("Failed to make path for account");
    return methodDone;
}

} // namespace ph

int create_account(AccountRecord* record, char* message) {
    if (!ph::parseAccountName(record->Name, record->slot))
        return ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Invalid parameter UserID");
    ph::IpmiSession session;
    const int slots = session.open() ? PH_Get_Max_Users_Count(session.get()) : -1;
    if (slots < 0)
        return ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Failed to create account");
    if (record->slot <= ph::anonymousSlot || record->slot > slots)
        return ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Invalid parameter user slot");
    PHUserEntry user;
    switch (ph::readSlot(session.get(), 0, record->slot, user)) {
    case ph::Slot::Free:
        break;
    case ph::Slot::Failed:
        return ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Unable to create account");
    default:
        ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Invalid parameter user slot");
        PH_Get_Empty_Slots(session.get(), message);
        return -1;
    }
    // Two users of one name could not be told apart when they log in.
    if (ph::findUser(session.get(), slots, 0, record->UserID, user) == 0)
        return ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Invalid parameter UserID");
    if (ph::createUser(session.get(), *record) != 0) {
        CIM_DelUser(session.get(), record->slot, ph::hookTimeout); // what was done of it
        return ph::explain(message, PH_ACCOUNT_MESSAGE_SIZE, "Unable to create account");
    }
    return 0;
}
