// How indications are delivered: a row of the database, published by the service and by its settings, and
// changed through either.
#pragma once

#include "indications/common_requests.h"
#include "Utility/requests/request_texts.h"

namespace ph::indications {

// Fills in what a record has of the row.
template <class Record>
void fillDelivery(Record& record, const IndicationServiceRow& row) {
    record.FilterCreationEnabled = row.filterCreationEnabled != 0;
    record.DeliveryRetryAttempts = row.deliveryRetryAttempts;
    record.DeliveryRetryInterval = row.deliveryRetryInterval;
    record.SubscriptionRemovalAction = row.subscriptionRemovalAction;
    record.SubscriptionRemovalTimeInterval = row.subscriptionRemovalTimeInterval;
}

// Calls append(row) for each row. Returns 0, or -1 when that does or the rows cannot be read.
template <class Append>
int forEachService(Append append) {
    Rows<IndicationServiceRow> rows;
    if (!rows.read(db_get_all_indication_service))
        return -1;
    for (const IndicationServiceRow& row : rows.all())
        if (append(row) != 0)
            return -1;
    return 0;
}

inline constexpr const char* serviceUnknown = "Given instance does not exist";

// Changes the row of a service to what the request has, where it differs from the current instance.
CMPIStatus modifyDelivery(const Request& request, const CMPIInstance* current, const char* serviceName);

} // namespace ph::indications
