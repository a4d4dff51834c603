// How indications are delivered: a row of the database, published by the service and by its settings, and
// changed through either.
#pragma once

#include "indications/common_requests.h"
#include "Utility/engine/changed_record.h"

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

inline constexpr Refusal serviceUnknown{CMPI_RC_ERR_NOT_FOUND, "Given instance does not exist"};

// What clients may change, and how far: while a delivery is tried again, no other alert is delivered. The interval is in
// seconds.
inline constexpr Settable deliverySettables[] = {
    {"DeliveryRetryAttempts", 0, 100},
    {"DeliveryRetryInterval", 0, 24 * 60 * 60},
};

// Writes both into the row of a service.
CMPIStatus writeDelivery(const Request& request, const char* serviceName, std::uint16_t attempts,
                         std::uint32_t interval);

// Changes the row of a service to what the request has, where it differs from the current instance. `serviceName` is the
// field that says which.
template <class Record, std::size_t size>
CMPIStatus modifyDelivery(const Request& request, const ClassFamily& family,
                          char (Record::*serviceName)[size]) {
    ChangedRecord changed(family, serviceUnknown);
    if (const CMPIStatus status = changed.apply(request, deliverySettables);
        status.rc != CMPI_RC_OK || !changed.hasChanges())
        return status;
    const Record& wanted = changed.as<Record>();
    return writeDelivery(request, wanted.*serviceName, wanted.DeliveryRetryAttempts,
                         wanted.DeliveryRetryInterval);
}

} // namespace ph::indications
