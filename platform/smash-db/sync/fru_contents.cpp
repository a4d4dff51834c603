#include "smash-db/sync/fru_contents.h"

#include "ipmi/command.h"
#include "ipmi/message.h"
#include "smash-db/sync/fru_device.h"
#include "smash-db/sync/type_length.h"

#include <initializer_list>

namespace smash {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Places = std::initializer_list<std::string*>;

constexpr std::uint8_t english = 25;

std::span<const std::uint8_t> withoutChecksum(const Bytes& area) {
    return std::span(area).first(area.size() - 1);
}

// Reads the texts of an area in the order of their fields, and those behind them.
void readTexts(ipmi::Reader& area, std::uint8_t language, Places places, std::vector<std::string>& custom) {
    for (std::string* const place : places) {
        auto text = readFruField(area, language);
        if (!area.ok())
            throw MalformedFru("one of its fields lies beyond its end");
        if (!text)
            return;
        *place = std::move(*text);
    }
    // Areas without an end mark are filled up with zeros, which read as empty fields.
    while (auto text = readFruField(area, language)) {
        if (!area.ok())
            return;
        if (!text->empty())
            custom.push_back(std::move(*text));
    }
}

FruContents::Chassis readChassis(FruDevice& device, std::size_t offset) {
    const Bytes bytes = device.readArea(offset);
    ipmi::Reader area(withoutChecksum(bytes));
    area.skip(2); // format version, length
    FruContents::Chassis chassis;
    chassis.type = area.u8();
    readTexts(area, english, {&chassis.partNumber, &chassis.serialNumber}, chassis.custom);
    return chassis;
}

FruContents::Board readBoard(FruDevice& device, std::size_t offset) {
    const Bytes bytes = device.readArea(offset);
    ipmi::Reader area(withoutChecksum(bytes));
    area.skip(2);
    const std::uint8_t language = area.u8();
    FruContents::Board board;
    board.manufactured = area.u24();
    readTexts(area, language,
              {&board.manufacturer, &board.product, &board.serialNumber, &board.partNumber, &board.fileId},
              board.custom);
    return board;
}

FruContents::Product readProduct(FruDevice& device, std::size_t offset) {
    const Bytes bytes = device.readArea(offset);
    ipmi::Reader area(withoutChecksum(bytes));
    area.skip(2);
    const std::uint8_t language = area.u8();
    FruContents::Product product;
    readTexts(area, language,
              {&product.manufacturer, &product.product, &product.partNumber, &product.version,
               &product.serialNumber, &product.assetTag, &product.fileId},
              product.custom);
    return product;
}

// The records follow each other, each behind a header of its own.
Bytes readPowerSupply(FruDevice& device, std::size_t offset) {
    constexpr std::uint8_t powerSupplyInformation = 0x00;
    constexpr std::size_t headerSize = 5;
    constexpr std::uint8_t formatVersion = 2;
    for (bool isLast = false; !isLast;) {
        const Bytes header = device.readChecked(offset, headerSize);
        if ((header[1] & 0x0F) != formatVersion)
            throw MalformedFru("one of its records has another format than 2");
        const std::size_t length = header[2];
        offset += headerSize;
        if (header[0] == powerSupplyInformation) {
            if (length < FruContents::powerSupplySize)
                throw MalformedFru("its power supply information is too short");
            Bytes record = device.read(offset, length);
            std::uint8_t sum = header[3];
            for (const std::uint8_t byte : record)
                sum = static_cast<std::uint8_t>(sum + byte);
            if (sum != 0)
                throw MalformedFru("the checksum of its power supply information is wrong");
            return record;
        }
        offset += length;
        isLast = (header[1] & 0x80) != 0;
    }
    return {};
}

} // namespace

const FruDevices::Device& FruDevices::read(std::uint8_t id) {
    const auto found = devices_.find(id);
    return found != devices_.end() ? found->second : devices_.emplace(id, readDevice(id)).first->second;
}

FruDevices::Device FruDevices::readDevice(std::uint8_t id) {
    Device read;
    const auto remark = [&](const std::string& reason, bool isLoss = true) {
        remarks_.push_back({"FRU device " + std::to_string(id), reason, isLoss});
    };
    // Returns whether the work could be done. A BMC that refuses it and malformed contents are remarked.
    const auto attempt = [&](const std::string& part, auto&& work) {
        try {
            work();
            return true;
        } catch (const MalformedFru& error) {
            remark(part + error.what());
        } catch (const ipmi::CompletionCodeError& error) {
            constexpr std::uint8_t notPresent = 0xCB;
            read.isAbsent = part.empty() && error.code == notPresent;
            remark(part + error.what(), !part.empty()); // a device that a locator names need not be there
        } catch (const ipmi::ShortAnswerError& error) {
            remark(part + error.what());
        }
        return false;
    };

    std::optional<FruDevice> device;
    Bytes header; // offsets of the areas, in eight bytes; 0: there is none
    if (!attempt("", [&] { device.emplace(bmc_, id); }) ||
        !attempt("header: ", [&] { header = device->readChecked(0, 8); }))
        return read;
    FruContents contents;
    const auto readArea = [&](const char* name, std::size_t index, auto& area, auto readIt) {
        if (const std::size_t offset = header[index] * std::size_t{8}; offset != 0)
            attempt(name, [&] { area = readIt(*device, offset); });
    };
    readArea("chassis area: ", 2, contents.chassis, readChassis);
    readArea("board area: ", 3, contents.board, readBoard);
    readArea("product area: ", 4, contents.product, readProduct);
    readArea("multirecord area: ", 5, contents.powerSupply, readPowerSupply);
    if (header[2] == 0 && header[3] == 0 && header[4] == 0 && header[5] == 0)
        remark("it has no area that is known", false);
    read.contents = std::move(contents);
    return read;
}

} // namespace smash
