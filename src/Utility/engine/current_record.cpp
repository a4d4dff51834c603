#include "Utility/engine/current_record.h"

#include "Utility/requests/changes.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"

namespace ph {

CMPIStatus CurrentRecord::readChanges(const Request& request, const PHPropertyList& allowed,
                                      PHPropertyList& changes) {
    KeyValues keys;
    if (!isOfClass(request.ref, family_.name) || !keys.areRead(request.broker, request.ref, family_.keys) ||
        engine::get(family_, &record_, keys) != 0)
        return fail(request.broker, missing_.code, missing_.message);
    CMPIStatus status = success;
    const CMPIInstance* const current =
        engine::makeInstance(family_, request.broker, request.ref, nullptr, record_, &status);
    return current != nullptr ? ph::readChanges(request, current, allowed, changes) : status;
}

} // namespace ph
