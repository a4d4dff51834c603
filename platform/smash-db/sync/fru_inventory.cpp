#include "smash-db/sync/fru_inventory.h"

#include "ipmi/entity.h"
#include "smash-db/rows.h"

#include <algorithm>
#include <optional>

namespace smash {
namespace {

std::optional<FruRecord> makeRecord(const FruDevices::Device& device, std::uint8_t entityId,
                                    std::uint8_t entityInstance) {
    FruRecord fru = {};
    fru.entityId = entityId;
    fru.entityInstance = entityInstance;
    const auto copy = [&](const auto& area) {
        copyText(fru.manufacturer, area.manufacturer);
        copyText(fru.model, area.product);
        copyText(fru.serialNumber, area.serialNumber);
        copyText(fru.partNumber, area.partNumber);
    };
    if (device.contents && device.contents->board)
        copy(*device.contents->board);
    else if (device.contents && device.contents->product)
        copy(*device.contents->product);
    else
        return std::nullopt;
    return fru;
}

} // namespace

std::vector<FruRecord> readFrus(FruDevices& devices, std::span<const EntityLocator> locators,
                                const std::function<void(std::size_t, std::size_t)>& progress) {
    std::vector<FruRecord> frus;
    const std::size_t total =
        1 + static_cast<std::size_t>(std::ranges::count_if(
                locators, [](const auto& each) { return each.fruDeviceId.has_value(); }));
    std::size_t done = 0;
    progress(done, total);
    for (const EntityLocator& locator : locators) {
        if (!locator.fruDeviceId)
            continue;
        const auto fru =
            makeRecord(devices.read(*locator.fruDeviceId), locator.entityId, locator.entityInstance);
        const bool isKnown = std::ranges::any_of(frus, [&](const FruRecord& each) {
            return each.entityId == locator.entityId && each.entityInstance == locator.entityInstance;
        });
        if (fru && !isKnown)
            frus.push_back(*fru);
        progress(++done, total);
    }
    if (std::ranges::find(frus, ipmi::entity::systemBoard, &FruRecord::entityId) == frus.end()) {
        FruRecord blank = {};
        blank.entityId = ipmi::entity::systemBoard;
        blank.entityInstance = 1;
        frus.push_back(makeRecord(devices.read(ownFruDevice), ipmi::entity::systemBoard, 1).value_or(blank));
    }
    progress(total, total);
    return frus;
}

} // namespace smash
