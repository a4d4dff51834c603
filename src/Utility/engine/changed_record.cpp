#include "Utility/engine/changed_record.h"

#include "Utility/requests/changes.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace ph {
namespace {

// A value that was checked, and where it goes.
struct Change {
    const Property* property;
    std::uint32_t number;
    const char* text;
};

bool readNumber(const CMPIData& data, Kind kind, std::uint32_t& number) {
    std::uint16_t narrow = 0;
    CMPIBoolean isTrue = 0;
    int result = -1;
    switch (kind) {
    case Kind::Uint32:
        return GetUINT32Value(data, &number) == 0;
    case Kind::Uint16:
        result = GetUINT16Value(data, &narrow);
        number = narrow;
        break;
    case Kind::Boolean:
        result = GetBoolValue(data, &isTrue);
        number = isTrue != 0;
        break;
    default:
        break;
    }
    return result == 0;
}

bool readChange(const CMPIData& data, const Settable& settable, Change& change) {
    if (data.state != CMPI_goodValue)
        return false;
    if (change.property->kind != Kind::Text)
        return readNumber(data, change.property->kind, change.number) && change.number >= settable.least &&
               change.number <= settable.most;
    change.text = textOf(data);
    const std::size_t length = change.text != nullptr ? std::strlen(change.text) : 0;
    return change.text != nullptr && length >= settable.least && length <= settable.most;
}

void carryOut(const Change& change, void* record) {
    char* const field = static_cast<char*>(record) + change.property->offset;
    switch (change.property->kind) {
    case Kind::Text:
        std::memcpy(field, change.text, std::strlen(change.text) + 1);
        break;
    case Kind::Boolean:
        *reinterpret_cast<bool*>(field) = change.number != 0;
        break;
    case Kind::Uint16:
        *reinterpret_cast<std::uint16_t*>(field) = static_cast<std::uint16_t>(change.number);
        break;
    default:
        *reinterpret_cast<std::uint32_t*>(field) = change.number;
    }
}

} // namespace

CMPIStatus ChangedRecord::apply(const Request& request, std::span<const Settable> settables) {
    PHPropertyList changes{};
    if (const CMPIStatus status = current_.readChanges(request, namesOf(settables), changes);
        status.rc != CMPI_RC_OK)
        return status;
    Change checked[std::size(changes.rows)];
    for (int i = 0; i < changes.count; ++i) {
        const std::string_view name = changes.rows[i].name;
        const auto settable = std::ranges::find(settables, name, &Settable::name);
        const auto property = std::ranges::find(family_.properties, name, &Property::name);
        if (settable == settables.end() || property == family_.properties.end())
            return refuseValue(request.broker, changes.rows[i].name);
        checked[i] = {&*property, 0, nullptr};
        if (!readChange(valueOf(changes.rows[i]), *settable, checked[i]))
            return refuseValue(request.broker, changes.rows[i].name);
    }
    hasChanges_ = changes.count > 0;
    for (int i = 0; i < changes.count; ++i)
        carryOut(checked[i], current_.get());
    return success;
}

} // namespace ph
