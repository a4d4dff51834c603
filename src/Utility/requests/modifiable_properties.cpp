// Which properties of a modify request are to be changed, and which must not.
#include "provider_helper/utility.h"
#include "Utility/back-ends/debug_log.h"
#include "Utility/values/value_comparison.h"

#include <algorithm>
#include <cmpimacs.h>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>

static_assert(sizeof(PHPropertyRow) == 80 && offsetof(PHPropertyRow, type) == 64 &&
              offsetof(PHPropertyRow, value) == 72);
static_assert(offsetof(PHPropertyList, count) == 64 * 80);

namespace ph {
namespace {

constexpr int maxRows = 64;
static_assert(std::size(decltype(PHPropertyList::rows){}) == maxRows);

const PHPropertyRow* findRow(const PHPropertyList& list, std::string_view name) {
    const PHPropertyRow* end = list.rows + std::clamp(list.count, 0, maxRows);
    const PHPropertyRow* row = std::find_if(list.rows, end, [&](const PHPropertyRow& candidate) {
        return name == std::string_view(candidate.name, strnlen(candidate.name, sizeof(candidate.name)));
    });
    return row != end ? row : nullptr;
}

bool lacks(const CMPIStatus& status) {
    return status.rc == CMPI_RC_ERR_NO_SUCH_PROPERTY || status.rc == CMPI_RC_ERR_NOT_FOUND;
}

PHPropertyRow* append(PHPropertyList& list, const char* name) {
    if (list.count >= maxRows)
        return nullptr;
    AddTo_DefaultList(list.rows, name, list.count);
    return &list.rows[list.count++];
}

bool append(PHPropertyList& list, const char* name, const CMPIData& data) {
    PHPropertyRow* row = append(list, name);
    if (row == nullptr)
        return false;
    row->type = data.type;
    row->state = data.state;
    std::memcpy(&row->value, &data.value, sizeof(row->value));
    return true;
}

// The text is refusedNames[PH_REFUSED_NAMES_SIZE], cut where it is full.
void refuse(char* refusedNames, const char* name) {
    const std::size_t used = strnlen(refusedNames, PH_REFUSED_NAMES_SIZE - 1);
    std::snprintf(refusedNames + used, PH_REFUSED_NAMES_SIZE - used, "%s%s", used > 0 ? ", " : "", name);
}

// Why a property is to be changed, nullptr when it stays as it is.
const char* changeReason(const CMPIInstance* current, const char* name, const CMPIData& wanted) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    const CMPIData present = CMGetProperty(current, name, &status);
    if (lacks(status))
        return isZero(wanted) ? nullptr : "prop not in current instance";
    if (status.rc == CMPI_RC_OK && sameValue(wanted, present))
        return nullptr;
    return "prop diff from current instance";
}

int handleNoPropList(const CMPIInstance* modified, const CMPIInstance* current,
                     const PHPropertyList& defaults, PHPropertyList& modifiable, char* refusedNames) {
    PH_LOG("handleNoPropList - Entering");
    const CMPICount count = CMGetPropertyCount(modified, nullptr);
    for (CMPICount i = 0; i < count; ++i) {
        CMPIString* nameString = nullptr;
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const CMPIData wanted = CMGetPropertyAt(modified, i, &nameString, &status);
        const char* name = nameString != nullptr ? CMGetCharsPtr(nameString, nullptr) : nullptr;
        if (status.rc != CMPI_RC_OK || name == nullptr)
            return -1;
        PH_LOG("handleNoPropList - mi index & prop: %d, %s", static_cast<int>(i), name);
        const char* reason = changeReason(current, name, wanted);
        if (reason == nullptr)
            continue;
        if (findRow(defaults, name) != nullptr && append(modifiable, name, wanted)) {
            PH_LOG("handleNoPropList - %s. %s added to modifiable", reason, name);
        } else {
            refuse(refusedNames, name);
            PH_LOG("handleNoPropList - %s prop not in defaults, failing!", name);
        }
    }
    PH_LOG("handleNoPropList - Leaving!!");
    return 0;
}

int handlePropList(const CMPIInstance* modified, const char** properties, const PHPropertyList& defaults,
                   PHPropertyList& modifiable, char* refusedNames) {
    for (; *properties != nullptr; ++properties) {
        const char* name = *properties;
        const PHPropertyRow* fallback = findRow(defaults, name);
        CMPIStatus status{CMPI_RC_OK, nullptr};
        const CMPIData wanted = CMGetProperty(modified, name, &status);
        bool taken = false;
        if (fallback != nullptr && status.rc == CMPI_RC_OK) {
            taken = append(modifiable, name, wanted);
        } else if (fallback != nullptr && lacks(status)) {
            PHPropertyRow* row = append(modifiable, name);
            taken = row != nullptr;
            if (taken)
                *row = *fallback;
        }
        if (!taken) {
            refuse(refusedNames, name);
            return -1;
        }
    }
    return 0;
}

} // namespace
} // namespace ph

int getModifiableProperties(const CMPIInstance* modified, const CMPIInstance* current,
                            const char** properties, const PHPropertyList* defaults,
                            PHPropertyList* modifiable, char* refusedNames) {
    std::memset(modifiable, 0, sizeof(*modifiable));
    *refusedNames = '\0';
    PH_LOG("getModifiableProperties - Entering");
    return properties == nullptr
               ? ph::handleNoPropList(modified, current, *defaults, *modifiable, refusedNames)
               : ph::handlePropList(modified, properties, *defaults, *modifiable, refusedNames);
}
