#include "smash-db/device_tables.h"

namespace smash {
namespace {

constexpr std::array entityDeviceColumns = {
    SMASH_COLUMN(EntityDeviceRow, entityId),         SMASH_COLUMN(EntityDeviceRow, entityInstance),
    SMASH_COLUMN(EntityDeviceRow, tachometer),       SMASH_COLUMN(EntityDeviceRow, presenceSensor),
    SMASH_COLUMN(EntityDeviceRow, presentStates),    SMASH_COLUMN(EntityDeviceRow, absentStates),
    SMASH_COLUMN(EntityDeviceRow, hasVariableSpeed),
};

constexpr std::array associationColumns = {
    SMASH_COLUMN(EntityAssociationRow, containerId),
    SMASH_COLUMN(EntityAssociationRow, containerInstance),
    SMASH_COLUMN(EntityAssociationRow, entityId),
    SMASH_COLUMN(EntityAssociationRow, entityInstance),
};

} // namespace

constexpr TableOf<EntityDeviceRow> entityDeviceTable{"entity_device", entityDeviceColumns, 2};
constexpr TableOf<EntityAssociationRow> entityAssociationTable{"entity_association", associationColumns, 4};

} // namespace smash
