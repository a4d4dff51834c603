#include "smash-db/indication_tables.h"

namespace smash {
namespace {

constexpr std::array filterColumns = {
    SMASH_COLUMN(CimxmlFilterRow, name),         SMASH_COLUMN(CimxmlFilterRow, query),
    SMASH_COLUMN(CimxmlFilterRow, sensorNumber), SMASH_COLUMN(CimxmlFilterRow, sensorType),
    SMASH_COLUMN(CimxmlFilterRow, severity),
};

constexpr std::array destinationColumns = {
    SMASH_COLUMN(CimxmlDestinationRow, name),
    SMASH_COLUMN(CimxmlDestinationRow, destination),
};

constexpr std::array indicationServiceColumns = {
    SMASH_COLUMN(IndicationServiceRow, name),
    SMASH_COLUMN(IndicationServiceRow, filterCreationEnabled),
    SMASH_COLUMN(IndicationServiceRow, deliveryRetryAttempts),
    SMASH_COLUMN(IndicationServiceRow, deliveryRetryInterval),
    SMASH_COLUMN(IndicationServiceRow, subscriptionRemovalAction),
    SMASH_COLUMN(IndicationServiceRow, subscriptionRemovalTimeInterval),
};

} // namespace

constexpr TableOf<CimxmlFilterRow> cimxmlFilterTable{"cimxml_filter", filterColumns, 1};
constexpr TableOf<CimxmlDestinationRow> cimxmlDestinationTable{"cimxml_destination", destinationColumns, 1};
constexpr TableOf<IndicationServiceRow> indicationServiceTable{"indication_service", indicationServiceColumns,
                                                               1};

} // namespace smash
