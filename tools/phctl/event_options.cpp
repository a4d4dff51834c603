#include "event_options.h"

#include "errors.h"

namespace phctl {
namespace {

using SelRecord = std::array<std::uint8_t, 16>;
constexpr std::size_t idSize = 2; // of the record, which the BMC gives it

// Two hexadecimal digits each of the 14 bytes behind a record's ID, with blanks among them or without.
SelRecord parseRecord(const std::string& text) {
    constexpr std::string_view digits = "0123456789abcdef";
    SelRecord record{};
    std::size_t place = 2 * idSize; // in digits
    bool isRecord = true;
    for (const char character : text) {
        if (character == ' ')
            continue;
        const auto digit = digits.find(character >= 'A' ? static_cast<char>(character | 0x20) : character);
        isRecord = isRecord && digit != std::string_view::npos && place < 2 * record.size();
        if (isRecord)
            record[place / 2] = static_cast<std::uint8_t>(record[place / 2] << 4 | digit);
        ++place;
    }
    if (!isRecord || place != 2 * record.size())
        throw UsageError('"' + text + "\" is no record: 14 bytes in hexadecimal, from its type on");
    return record;
}

} // namespace

void EventOptions::addTo(Command command) {
    const auto sensor = command.option("SENSOR", sensor_, "Name or number of the sensor");
    const auto offset =
        command
            .option("OFFSET", offset_, "State offset: 9 is upper critical going high of a threshold sensor")
            .range(0, 14);
    const auto deasserted = command.flag("--deasserted", isDeassertion_, "The sensor leaves the state");
    command
        .option("--record", record_,
                "14 bytes in hexadecimal, a record from its type on; a time of 0 is the present one")
        .excludes(sensor)
        .excludes(offset)
        .excludes(deasserted);
}

std::uint16_t EventOptions::addEvent(vbmc::VirtualBmc& machine) const {
    if (!record_.empty())
        return machine.addSelRecord(parseRecord(record_));
    if (!offset_)
        throw UsageError("name a sensor and a state offset, or give a --record");
    return machine.addSensorEvent(sensor_, *offset_, isDeassertion_);
}

} // namespace phctl
