#include "indications/delivery_settings.h"
#include "Utility/requests/changes.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

namespace ph::indications {
namespace {

// What a client may change, and how far: while a delivery is tried again, no other alert is delivered.
struct Settable {
    const char* name;
    std::uint32_t most;
    void (*set)(IndicationServiceRow& row, std::uint32_t value);
};
constexpr Settable settables[] = {
    {"DeliveryRetryAttempts", 100,
     [](IndicationServiceRow& row, std::uint32_t value) {
         row.deliveryRetryAttempts = static_cast<std::uint16_t>(value);
     }},
    {"DeliveryRetryInterval", 24 * 60 * 60,
     [](IndicationServiceRow& row, std::uint32_t value) { row.deliveryRetryInterval = value; }},
};

// Takes a number of the property's own type, or a text with one.
bool readNumber(const CMPIData& data, std::uint32_t& value) {
    std::uint16_t narrow = 0;
    if (data.state != CMPI_goodValue)
        return false;
    if (GetUINT16Value(data, &narrow) != 0)
        return GetUINT32Value(data, &value) == 0;
    value = narrow;
    return true;
}

CMPIStatus apply(const Request& request, const PHPropertyList& changes, IndicationServiceRow& row) {
    for (int i = 0; i < changes.count; ++i) {
        const auto* const settable = std::ranges::find_if(settables, [&](const Settable& each) {
            return std::string_view(each.name) == changes.rows[i].name;
        });
        std::uint32_t value = 0;
        if (settable == std::end(settables) || !readNumber(valueOf(changes.rows[i]), value) ||
            value > settable->most)
            return refuseValue(request.broker, changes.rows[i].name);
        settable->set(row, value);
    }
    return success;
}

} // namespace

CMPIStatus modifyDelivery(const Request& request, const CMPIInstance* current, const char* serviceName) {
    PHPropertyList changes{};
    if (current == nullptr)
        return fail(request.broker, "SetInstance Failed");
    if (const CMPIStatus status = readChanges(request, current, namesOf(settables), changes);
        status.rc != CMPI_RC_OK)
        return status;

    Database database;
    Rows<IndicationServiceRow> rows;
    if (!database.open() || !rows.read(database.get(), db_get_all_indication_service))
        return fail(request.broker, "SetInstance Failed");
    for (IndicationServiceRow row : rows.all()) {
        if (std::string_view(row.name) != serviceName)
            continue;
        const CMPIStatus status = apply(request, changes, row);
        if (status.rc != CMPI_RC_OK || changes.count == 0)
            return status;
        return db_set_indication_service(database.get(), &row) == 0
                   ? success
                   : fail(request.broker, "SetInstance Failed");
    }
    return fail(request.broker, CMPI_RC_ERR_NOT_FOUND, serviceUnknown);
}

} // namespace ph::indications
