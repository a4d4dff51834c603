#include "indications/delivery_settings.h"

#include <string_view>

namespace ph::indications {

CMPIStatus writeDelivery(const Request& request, const char* serviceName, std::uint16_t attempts,
                         std::uint32_t interval) {
    Database database;
    Rows<IndicationServiceRow> rows;
    if (!database.open() || !rows.read(database.get(), db_get_all_indication_service))
        return fail(request.broker, "SetInstance Failed");
    for (IndicationServiceRow row : rows.all()) {
        if (std::string_view(row.name) != serviceName)
            continue;
        row.deliveryRetryAttempts = attempts;
        row.deliveryRetryInterval = interval;
        return db_set_indication_service(database.get(), &row) == 0
                   ? success
                   : fail(request.broker, "SetInstance Failed");
    }
    return fail(request.broker, serviceUnknown.code, serviceUnknown.message);
}

} // namespace ph::indications
