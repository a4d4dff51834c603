#include "smash-db/sync/entity_associations.h"

#include "ipmi/entity.h"
#include "smash-db/sync/sdr_mapping.h"

#include <algorithm>
#include <array>

namespace smash {
namespace {

constexpr std::uint8_t systemRelative = 0x00; // in place of an address
constexpr std::size_t associationSlots = 4;

using ipmi::Entity;

bool isOfBmc(std::uint8_t address) {
    address &= 0xFE;
    return address == bmcAddress || address == systemRelative;
}

// The BMC does not answer for the sensors of another controller: an entity of such a one leaves its slot empty, as
// ID 0 does.
Entity readEntity(ipmi::Reader& record, bool isDeviceRelative) {
    bool isKnown = true;
    if (isDeviceRelative) {
        isKnown = isOfBmc(record.u8());
        record.skip(1); // channel
    }
    const Entity entity{record.u8(), record.u8()};
    return isKnown ? entity : Entity{};
}

void add(Entity container, Entity part, std::vector<EntityAssociationRow>& associations) {
    const EntityAssociationRow row{container.id, container.instance, part.id, part.instance};
    const bool isNew = std::ranges::none_of(associations, [&](const EntityAssociationRow& each) {
        return each.containerId == row.containerId && each.containerInstance == row.containerInstance &&
               each.entityId == row.entityId && each.entityInstance == row.entityInstance;
    });
    if (isNew)
        associations.push_back(row);
}

} // namespace

void addEntityAssociations(ipmi::Reader& record, bool isDeviceRelative,
                           std::vector<EntityAssociationRow>& associations) {
    const Entity container{record.u8(), record.u8()};
    bool isOurs = true;
    if (isDeviceRelative) {
        isOurs = isOfBmc(record.u8());
        record.skip(1); // channel
    }
    const bool areRanges = (record.u8() & 0x80) != 0;
    std::array<Entity, associationSlots> parts{};
    for (Entity& part : parts)
        part = readEntity(record, isDeviceRelative);
    if (!record.ok())
        throw MalformedSdr("the record ends before its last field");
    if (!isOurs)
        throw Unusable("the entity belongs to another controller");
    if (!areRanges) {
        for (const Entity& part : parts)
            if (part.id != 0)
                add(container, part, associations);
        return;
    }
    for (std::size_t i = 0; i < associationSlots; i += 2) {
        const Entity first = parts[i];
        const Entity last = parts[i + 1];
        if (first.id != last.id || first.instance > last.instance)
            throw MalformedSdr("its range of entities ends before it begins");
        for (unsigned instance = first.instance; first.id != 0 && instance <= last.instance; ++instance)
            add(container, {first.id, static_cast<std::uint8_t>(instance)}, associations);
    }
}

} // namespace smash
