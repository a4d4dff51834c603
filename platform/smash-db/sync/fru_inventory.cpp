#include "smash-db/sync/fru_inventory.h"

#include "ipmi/command.h"
#include "smash-db/rows.h"
#include "smash-db/sync/type_length.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <stdexcept>

namespace smash {
namespace {

// IPMI 2.0 34: FRU inventory device commands.

constexpr std::uint8_t systemBoard = 7; // entity ID
constexpr FruLocator bmcFru = {.fruDeviceId = 0, .entityId = systemBoard, .entityInstance = 1};

// The FRU's contents are not as the Platform Management FRU Information Storage Definition has them.
struct Malformed : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class FruDevice {
public:
    FruDevice(ipmi::Transport& bmc, std::uint8_t id) : bmc_(bmc), id_(id) {
        const auto answer = ipmi::run(bmc_, ipmi::command::getFruInventoryAreaInfo, {id_});
        auto reader = answer.reader();
        size_ = reader.u16();
        addressUnit_ = (reader.u8() & 0x01) != 0 ? 2 : 1;
        answer.verify(reader);
    }

    // Bytes whose sum must be 0, `offset` a multiple of 8 as of all areas.
    std::vector<std::uint8_t> read(std::size_t offset, std::size_t count) {
        if (offset + count > size_)
            throw Malformed("an area lies beyond the end of its " + std::to_string(size_) + " bytes");
        std::vector<std::uint8_t> bytes;
        while (bytes.size() < count)
            append(bytes, offset + bytes.size(), std::min(part, count - bytes.size()));
        if (std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x100 != 0)
            throw Malformed("the checksum of an area is wrong");
        return bytes;
    }

    std::vector<std::uint8_t> readArea(std::size_t offset) {
        constexpr std::size_t smallest = 8;
        std::vector<std::uint8_t> start;
        append(start, offset, smallest);
        if (start.size() < 2 || start[1] == 0)
            throw Malformed("an area has no length");
        return read(offset, std::size_t{start[1]} * 8);
    }

private:
    static constexpr std::size_t part = 16; // what every BMC returns

    void append(std::vector<std::uint8_t>& bytes, std::size_t offset, std::size_t count) {
        const std::size_t address = offset / addressUnit_;
        std::uint8_t request[4];
        ipmi::Writer(request)
            .u8(id_)
            .u16(static_cast<std::uint16_t>(address))
            .u8(static_cast<std::uint8_t>((count + addressUnit_ - 1) / addressUnit_));
        const auto answer = ipmi::run(bmc_, ipmi::command::readFruData, request);
        auto reader = answer.reader();
        reader.skip(1); // count
        answer.verify(reader);
        const auto data = reader.bytes(std::min(reader.left(), count));
        if (data.empty() || data.size() % addressUnit_ != 0)
            throw Malformed("the BMC does not return all of it");
        bytes.insert(bytes.end(), data.begin(), data.end());
    }

    ipmi::Transport& bmc_;
    std::uint8_t id_;
    std::size_t size_ = 0;
    std::size_t addressUnit_ = 1; // 2: addressed by words
};

// Copies the fields of a board or product area, in their order there; an empty place stands for one not kept.
void readFields(std::span<const std::uint8_t> area, std::size_t head,
                std::initializer_list<std::span<char>> places) {
    ipmi::Reader reader(area);
    reader.skip(2); // format version, length
    const std::uint8_t language = reader.u8();
    reader.skip(head - 3);
    for (const auto place : places) {
        const auto text = readFruField(reader, language);
        if (!reader.ok())
            throw Malformed("a field lies beyond the end of its area");
        if (!text)
            return;
        if (!place.empty())
            copyText(place, *text);
    }
}

FruRecord readFru(ipmi::Transport& bmc, const FruLocator& locator) {
    FruDevice device(bmc, locator.fruDeviceId);
    const auto header = device.read(0, 8);
    // Where an area begins; 0: there is none.
    const std::size_t board = std::size_t{header[3]} * 8;
    const std::size_t product = std::size_t{header[4]} * 8;

    FruRecord fru = {};
    fru.entityId = locator.entityId;
    fru.entityInstance = locator.entityInstance;
    if (board != 0) {
        readFields(device.readArea(board), 6, // the manufacturing date comes first
                   {fru.manufacturer, fru.model, fru.serialNumber, fru.partNumber});
    } else if (product != 0) {
        const std::span<char> version;
        readFields(device.readArea(product), 3,
                   {fru.manufacturer, fru.model, fru.partNumber, version, fru.serialNumber});
    } else {
        throw Malformed("it has neither a board nor a product area");
    }
    return fru;
}

// Nothing, and a remark, for a FRU that the BMC does not return or that is malformed.
std::optional<FruRecord> tryFru(ipmi::Transport& bmc, const FruLocator& locator,
                                std::vector<SyncRemark>& remarks) {
    std::string reason;
    try {
        return readFru(bmc, locator);
    } catch (const Malformed& error) {
        reason = error.what();
    } catch (const ipmi::CompletionCodeError& error) {
        reason = error.what();
    } catch (const ipmi::ShortAnswerError& error) {
        reason = error.what();
    }
    remarks.push_back({"FRU device " + std::to_string(locator.fruDeviceId), reason});
    return std::nullopt;
}

} // namespace

std::vector<FruRecord> readFrus(ipmi::Transport& bmc, std::span<const FruLocator> locators,
                                std::vector<SyncRemark>& remarks,
                                const std::function<void(std::size_t, std::size_t)>& progress) {
    std::vector<FruRecord> frus;
    const std::size_t total = locators.size() + 1;
    progress(0, total);
    for (const FruLocator& locator : locators) {
        const bool isKnown = std::ranges::any_of(frus, [&](const FruRecord& fru) {
            return fru.entityId == locator.entityId && fru.entityInstance == locator.entityInstance;
        });
        if (isKnown)
            remarks.push_back(
                {"FRU device " + std::to_string(locator.fruDeviceId), "its entity has another FRU device"});
        else if (const auto fru = tryFru(bmc, locator, remarks))
            frus.push_back(*fru);
        progress(static_cast<std::size_t>(&locator - locators.data()) + 1, total);
    }
    if (std::ranges::find(frus, systemBoard, &FruRecord::entityId) == frus.end()) {
        FruRecord blank = {};
        blank.entityId = bmcFru.entityId;
        blank.entityInstance = bmcFru.entityInstance;
        frus.push_back(tryFru(bmc, bmcFru, remarks).value_or(blank));
    }
    progress(total, total);
    return frus;
}

} // namespace smash
