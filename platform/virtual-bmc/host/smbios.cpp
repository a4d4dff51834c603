#include "virtual-bmc/host/smbios.h"

#include "ipmi/oem_commands.h"
#include "virtual-bmc/host/smbios_image.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

// Codes of DSP0134; those that have no word here are numbers.
constexpr Choice formFactors[] = {{0x03, "simm"}, {0x09, "dimm"}, {0x0D, "so-dimm"}};
constexpr Choice memoryTypes[] = {{0x18, "ddr3"}, {0x1A, "ddr4"}, {0x22, "ddr5"}};
constexpr Choice corrections[] = {{0x03, "none"}, {0x05, "single-bit"}, {0x06, "multi-bit"}};
constexpr Choice slotTypes[] = {{0x06, "pci"},           {0x17, "m.2"},           {0x26, "ocp"},
                                {0xB1, "pci-express-3"}, {0xB8, "pci-express-4"}, {0xBE, "pci-express-5"}};
constexpr Choice slotWidths[] = {{0x08, "x1"}, {0x0A, "x4"}, {0x0B, "x8"}, {0x0D, "x16"}};
constexpr Choice usages[] = {{0x02, "unknown"}, {0x03, "available"}, {0x04, "in-use"}, {0x05, "unavailable"}};
constexpr Choice connectors[] = {{0x00, "none"},  {0x07, "db-15-female"}, {0x08, "db-9-male"},
                                 {0x0B, "rj-45"}, {0x12, "usb"},          {0x22, "sata"}};
constexpr Choice portTypes[] = {
    {0x09, "serial"}, {0x10, "usb"}, {0x1C, "video"}, {0x1F, "network"}, {0x20, "sata"}};
constexpr Choice deviceTypes[] = {
    {0x03, "video"}, {0x05, "ethernet"}, {0x09, "sata"}, {0x0A, "sas"}, {0x0F, "nvme"}};

std::uint8_t readSmbiosTable(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const auto& image = state.get<Smbios>().image;
    const std::size_t offset = request.u32();
    const std::size_t count = request.u8();
    if (offset > image.size())
        return completion::parameterOutOfRange;
    const auto part = std::span(image).subspan(offset);
    answer.u32(static_cast<std::uint32_t>(image.size()));
    answer.bytes(part.first(std::min({count, part.size(), answer.room()})));
    return completion::success;
}

} // namespace

void SmbiosIdentity::fields(Fields& fields) {
    fields("manufacturer", manufacturer);
    fields("product", product);
    fields("version", version);
    fields("serialNumber", serialNumber);
    fields("assetTag", assetTag);
    fields("uuid", uuid);
    fields("type", type);
}

void SmbiosProcessor::fields(Fields& fields) {
    fields.required("socket", socket);
    fields("installed", isInstalled);
    fields("manufacturer", manufacturer);
    fields("version", version);
    fields("serialNumber", serialNumber);
    fields("assetTag", assetTag);
    fields("partNumber", partNumber);
    fields("family", family);
    fields("upgrade", upgrade);
    fields.number("status", status, 0, 7);
    fields("externalClock", externalClock);
    fields("maxSpeed", maxSpeed);
    fields("currentSpeed", currentSpeed);
    fields("cores", cores);
    fields("enabledCores", enabledCores);
    fields("threads", threads);
    fields("characteristics", characteristics);
}

void SmbiosMemoryModule::fields(Fields& fields) {
    fields.required("socket", socket);
    fields("bank", bank);
    fields("size", size);
    fields("manufacturer", manufacturer);
    fields("serialNumber", serialNumber);
    fields("assetTag", assetTag);
    fields("partNumber", partNumber);
    fields("totalWidth", totalWidth);
    fields("dataWidth", dataWidth);
    fields.choice("formFactor", formFactor, formFactors, true);
    fields.choice("type", type, memoryTypes, true);
    fields("speed", speed);
    fields("configuredSpeed", configuredSpeed);
}

void SmbiosMemory::fields(Fields& fields) {
    fields.choice("errorCorrection", errorCorrection, corrections, true);
    fields("capacity", capacity);
    fields("modules", modules);
}

void SmbiosSlot::fields(Fields& fields) {
    fields.required("name", name);
    fields.choice("type", type, slotTypes, true);
    fields.choice("width", width, slotWidths, true);
    fields.choice("usage", usage, usages, true);
    fields("number", number);
    fields("hotPlug", isHotPluggable);
    fields("segment", segment);
    fields("bus", bus);
    fields.number("device", device, 0, 31);
    fields.number("function", function, 0, 7);
}

void SmbiosPort::fields(Fields& fields) {
    fields("internalName", internalName);
    fields.choice("internalConnector", internalConnector, connectors, true);
    fields("externalName", externalName);
    fields.choice("externalConnector", externalConnector, connectors, true);
    fields.choice("type", type, portTypes, true);
}

void SmbiosOnboardDevice::fields(Fields& fields) {
    fields.required("name", name);
    fields.choice("type", type, deviceTypes, true);
    fields("instance", instance);
    fields("enabled", isEnabled);
    fields("segment", segment);
    fields("bus", bus);
    fields.number("device", device, 0, 31);
    fields.number("function", function, 0, 7);
}

void Smbios::fields(Fields& fields) {
    fields("system", system);
    fields("board", board);
    fields("chassis", chassis);
    fields("processors", processors);
    fields("memory", memory);
    fields("slots", slots);
    fields("ports", ports);
    fields("onboardDevices", onboardDevices);
    fields("data", data);
}

std::span<const Command> Smbios::commands() {
    static constexpr Command table[] = {
        {ipmi::oem::readSmbiosTable, 5, readSmbiosTable},
    };
    return table;
}

bool Smbios::hasStructures() const {
    return system || board || chassis || !processors.empty() || memory || !slots.empty() || !ports.empty() ||
           !onboardDevices.empty();
}

void Smbios::check(const Place& place) {
    if (data && hasStructures())
        fail(Place{&place, "data"}, "a table has either data or structures");
    image = data ? *data : hasStructures() ? smbiosImage(*this, place) : std::vector<std::uint8_t>();
}

Json Smbios::describe(const State&) const {
    if (image.empty())
        return {};
    Json json = Json::object();
    json["bytes"] = image.size();
    if (data)
        return json;
    json["processors"] = std::ranges::count(processors, true, &SmbiosProcessor::isInstalled);
    json["memoryModules"] =
        memory ? std::ranges::count_if(memory->modules, [](const auto& each) { return each.size != 0; }) : 0;
    json["slots"] = slots.size();
    return json;
}

} // namespace vbmc
