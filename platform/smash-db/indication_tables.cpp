#include "smash-db/indication_tables.h"

namespace smash {
namespace {

constexpr std::array filterColumns = {
    SMASH_COLUMN(CimxmlFilterRow, name),         SMASH_COLUMN(CimxmlFilterRow, query),
    SMASH_COLUMN(CimxmlFilterRow, sensorNumber), SMASH_COLUMN(CimxmlFilterRow, sensorType),
    SMASH_COLUMN(CimxmlFilterRow, severity),
};

} // namespace

constexpr TableOf<CimxmlFilterRow> cimxmlFilterTable{"cimxml_filter", filterColumns, 1};

} // namespace smash
