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

} // namespace

constexpr TableOf<CimxmlFilterRow> cimxmlFilterTable{"cimxml_filter", filterColumns, 1};
constexpr TableOf<CimxmlDestinationRow> cimxmlDestinationTable{"cimxml_destination", destinationColumns, 1};

} // namespace smash
