#include "ipmi-view/fru.h"

#include "smash-db/sync/sdr_mapping.h"

#include <algorithm>
#include <ctime>
#include <freeipmi/spec/ipmi-fru-chassis-types-spec.h>
#include <span>

namespace view {
namespace {

constexpr std::uint8_t ownDevice = 0;

std::string chassisTypeText(std::uint8_t type) {
    return IPMI_FRU_CHASSIS_TYPE_VALID(type) ? ipmi_fru_chassis_types[type] : std::to_string(type);
}

// The date counts minutes since 1996-01-01 00:00.
std::string dateText(std::uint32_t minutes) {
    constexpr std::time_t epoch = 820454400;
    if (minutes == 0)
        return {};
    const std::time_t time = epoch + std::time_t{minutes} * 60;
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts);
    return text;
}

template <class Area>
struct Text {
    const char* name;
    std::string Area::*value;
};

using smash::FruContents;

constexpr Text<FruContents::Chassis> chassisTexts[] = {
    {"Part number", &FruContents::Chassis::partNumber},
    {"Serial number", &FruContents::Chassis::serialNumber},
};
constexpr Text<FruContents::Board> boardTexts[] = {
    {"Manufacturer", &FruContents::Board::manufacturer},  {"Product", &FruContents::Board::product},
    {"Serial number", &FruContents::Board::serialNumber}, {"Part number", &FruContents::Board::partNumber},
    {"FRU file ID", &FruContents::Board::fileId},
};
constexpr Text<FruContents::Product> productTexts[] = {
    {"Manufacturer", &FruContents::Product::manufacturer},  {"Name", &FruContents::Product::product},
    {"Part number", &FruContents::Product::partNumber},     {"Version", &FruContents::Product::version},
    {"Serial number", &FruContents::Product::serialNumber}, {"Asset tag", &FruContents::Product::assetTag},
    {"FRU file ID", &FruContents::Product::fileId},
};

void add(std::vector<FruField>& fields, const char* area, const char* name, std::string value) {
    if (!value.empty())
        fields.push_back({area, name, std::move(value)});
}

template <class Area>
void addTexts(std::vector<FruField>& fields, const char* name, const Area& area,
              std::span<const Text<Area>> texts) {
    for (const Text<Area>& text : texts)
        add(fields, name, text.name, area.*text.value);
    for (const std::string& text : area.custom)
        add(fields, name, "Extra", text);
}

} // namespace

std::vector<FruDevice> findFruDevices(ipmi::Transport& bmc) {
    std::vector<smash::SyncRemark> remarks; // of records that matter elsewhere
    smash::SdrMapping mapping;
    for (const smash::SdrRecord& record :
         smash::readSdrRepository(bmc, remarks, [](std::size_t, std::size_t) {}))
        mapping.add(record, remarks);
    std::vector<FruDevice> devices = {{.id = ownDevice, .name = {}, .contents = {}, .problems = {}}};
    for (const smash::EntityLocator& locator : mapping.locators) {
        if (!locator.fruDeviceId)
            continue;
        const auto known = std::ranges::find(devices, *locator.fruDeviceId, &FruDevice::id);
        if (known == devices.end())
            devices.push_back(
                {.id = *locator.fruDeviceId, .name = locator.name, .contents = {}, .problems = {}});
        else if (known->name.empty())
            known->name = locator.name;
    }
    return devices;
}

void readFru(ipmi::Transport& bmc, FruDevice& device) {
    std::vector<smash::SyncRemark> remarks;
    device.contents = smash::FruDevices(bmc, remarks).read(device.id).contents;
    for (smash::SyncRemark& remark : remarks)
        device.problems.push_back(std::move(remark.reason));
}

std::vector<FruField> fieldsOf(const FruContents& contents) {
    std::vector<FruField> fields;
    if (contents.chassis) {
        add(fields, "Chassis", "Type", chassisTypeText(contents.chassis->type));
        addTexts<FruContents::Chassis>(fields, "Chassis", *contents.chassis, chassisTexts);
    }
    if (contents.board) {
        add(fields, "Board", "Manufactured", dateText(contents.board->manufactured));
        addTexts<FruContents::Board>(fields, "Board", *contents.board, boardTexts);
    }
    if (contents.product)
        addTexts<FruContents::Product>(fields, "Product", *contents.product, productTexts);
    return fields;
}

} // namespace view
