// What clients say about an account.
#include "accounts/account.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/requests/changes.h"
#include "Utility/requests/request_texts.h"
#include "Utility/values/record_fields.h"

#include <cstring>
#include <utility>

namespace ph {
namespace {

template <std::size_t N>
bool takeText(const CMPIData& data, char (&field)[N]) {
    const char* text = textOf(data);
    if (text == nullptr || *text == '\0' || std::strlen(text) >= N)
        return false;
    copyText(field, text);
    return true;
}

} // namespace

bool takeUserId(const CMPIData& data, AccountRecord& record) {
    return takeText(data, record.UserID);
}

bool takeName(const CMPIData& data, AccountRecord& record) {
    return takeText(data, record.Name);
}

// The list has one password for each place where the account is known, and a BMC is one. It may be empty.
bool takePassword(const CMPIData& data, AccountRecord& record) {
    CMPIString** buffer = nullptr;
    CMPICount count = 0;
    const int result = GetStringAValue(data, &buffer, &count);
    const HeapPtr<CMPIString*> strings(buffer);
    const char* text = result == 0 && buffer != nullptr && count > 0 ? textOf(buffer[0]) : nullptr;
    if (text == nullptr || std::strlen(text) >= sizeof(record.UserID))
        return false;
    // A request may name the property twice: the last one counts.
    if (const HeapPtr<char> former(std::exchange(record.UserPassword[0], strdup(text))); former != nullptr)
        explicit_bzero(former.get(), std::strlen(former.get()));
    return record.UserPassword[0] != nullptr;
}

std::uint8_t slotWithPasswordForm(const AccountRecord& record) {
    const std::size_t length = record.UserPassword[0] != nullptr ? std::strlen(record.UserPassword[0]) : 0;
    return record.slot | (length >= 17 && length <= 20 ? CIM_USER_PASSWORD_20 : 0);
}

} // namespace ph

int PH_Fill_Account_Struct_for_MI(const PHPropertyList* modifiable, AccountRecord* record) {
    for (int i = 0; i < modifiable->count; ++i) {
        const PHPropertyRow& row = modifiable->rows[i];
        const CMPIData data = ph::valueOf(row);
        if (std::strcmp(row.name, "UserID") == 0 ? !ph::takeUserId(data, *record)
                                                 : !ph::takePassword(data, *record))
            return -1;
    }
    return 0;
}

// A new account needs a password: without one, everybody could log in.
int PH_Fill_Account_Struct_from_CMPI_Inst(const CMPIInstance* instance, AccountRecord* record) {
    const auto take = [&](const char* name, bool (*into)(const CMPIData&, AccountRecord&)) {
        CMPIStatus status{};
        const CMPIData data = CMGetProperty(instance, name, &status);
        return status.rc == CMPI_RC_OK && into(data, *record);
    };
    return take("UserID", ph::takeUserId) && take("Name", ph::takeName) &&
                   take("UserPassword", ph::takePassword) && *record->UserPassword[0] != '\0'
               ? 0
               : -1;
}
