#include "virtual-bmc/fru/frus.h"

#include "virtual-bmc/fru/fru_image.h"
#include "virtual-bmc/sensors/sensor_records.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

std::size_t addressUnit(const Fru& fru) {
    return fru.isWordAddressed ? 2 : 1;
}

std::uint8_t getFruInventoryAreaInfo(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const Fru* const fru = state.get<Frus>().find(request.u8());
    if (fru == nullptr)
        return completion::notPresent;
    answer.u16(static_cast<std::uint16_t>(fru->image.size())).u8(fru->isWordAddressed ? 1 : 0);
    return completion::success;
}

std::uint8_t readFruData(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const Fru* const fru = state.get<Frus>().find(request.u8());
    if (fru == nullptr)
        return completion::notPresent;
    const std::size_t unit = addressUnit(*fru);
    const std::size_t offset = request.u16() * unit;
    const std::size_t count = request.u8() * unit;
    if (offset > fru->image.size())
        return completion::parameterOutOfRange;
    const auto part = std::span(fru->image).subspan(offset);
    const auto returned = part.first(std::min(count, part.size() / unit * unit));
    if (returned.size() >= answer.room())
        return completion::cannotReturnBytes;
    answer.u8(static_cast<std::uint8_t>(returned.size() / unit)).bytes(returned);
    return completion::success;
}

} // namespace

void ChassisArea::fields(Fields& fields) {
    fields("type", type);
    fields("partNumber", partNumber);
    fields("serialNumber", serialNumber);
}

void BoardArea::fields(Fields& fields) {
    fields("manufactured", manufactured);
    fields("manufacturer", manufacturer);
    fields("product", product);
    fields("serialNumber", serialNumber);
    fields("partNumber", partNumber);
    fields("fileId", fileId);
}

void ProductArea::fields(Fields& fields) {
    fields("manufacturer", manufacturer);
    fields("product", product);
    fields("partNumber", partNumber);
    fields("version", version);
    fields("serialNumber", serialNumber);
    fields("assetTag", assetTag);
    fields("fileId", fileId);
}

void PowerSupplyRecord::fields(Fields& fields) {
    constexpr int most = 0xFFF, longest = 0xF;
    fields.number("capacity", capacity, 0, most);
    fields("peakVoltAmperes", peakVoltAmperes);
    fields("inrushCurrent", inrushCurrent);
    fields("inrushInterval", inrushInterval);
    fields("lowVoltage1", lowVoltage1);
    fields("highVoltage1", highVoltage1);
    fields("lowVoltage2", lowVoltage2);
    fields("highVoltage2", highVoltage2);
    fields("lowFrequency", lowFrequency);
    fields("highFrequency", highFrequency);
    fields("dropoutTolerance", dropoutTolerance);
    fields("predictsFailure", predictsFailure);
    fields("correctsPowerFactor", correctsPowerFactor);
    fields("switchesRanges", switchesRanges);
    fields("hotSwap", isHotSwap);
    fields.number("peakCapacity", peakCapacity, 0, most);
    fields.number("holdUpTime", holdUpTime, 0, longest);
}

void Fru::fields(Fields& fields) {
    fields.required("id", id);
    fields.required("name", name);
    fields("entity", entity);
    fields("entityInstance", entityInstance);
    fields("wordAddressed", isWordAddressed);
    fields("chassis", chassis);
    fields("board", board);
    fields("product", product);
    fields("powerSupply", powerSupply);
    fields("data", data);
}

void Fru::check(const Place& place) {
    checkIdString(name, Place{&place, "name"});
    if (data && hasAreas())
        fail(Place{&place, "data"}, "a FRU has either data or areas");
    if (data && data->size() > 0xFFFF)
        fail(Place{&place, "data"}, "a FRU has at most 65535 bytes");
    image = data ? *data : fruImage(*this, place);
}

std::span<const Command> Frus::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getFruInventoryAreaInfo, 1, getFruInventoryAreaInfo},
        {ipmi::command::readFruData, 4, readFruData},
    };
    return table;
}

void Frus::check(const Place& place) const {
    for (const Fru& fru : list)
        if (find(fru.id) != &fru)
            fail(place, "there are two FRU devices " + std::to_string(fru.id));
}

const Fru* Frus::find(std::uint8_t id) const {
    const auto found = std::ranges::find(list, id, &Fru::id);
    return found != list.end() ? &*found : nullptr;
}

Json Frus::describe(const State&) const {
    Json json = Json::array();
    for (const Fru& fru : list) {
        Json row = Json::object();
        row["id"] = fru.id;
        row["name"] = fru.name;
        row["bytes"] = fru.image.size();
        if (fru.board || fru.product) {
            row["manufacturer"] = fru.board ? fru.board->manufacturer : fru.product->manufacturer;
            row["product"] = fru.board ? fru.board->product : fru.product->product;
            row["serialNumber"] = fru.board ? fru.board->serialNumber : fru.product->serialNumber;
        }
        json.push_back(std::move(row));
    }
    return json;
}

} // namespace vbmc
