#include "ipmi_sim_model.h"

#include "ipmi/message.h"

#include <bitset>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace ph_test {
namespace {

constexpr std::uint8_t sdrVersion = 0x51;
constexpr std::size_t headerSize = 5;
constexpr std::uint8_t bmcAddress = 0x20;
constexpr std::uint8_t latin1 = 0xC0; // type bits of an ID string

std::string hex(unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%02x", value);
    return text;
}

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}

// What full and compact records begin with, up to the unit bytes (IPMI 2.0 tables 43-1 and 43-2).
void writeCommon(ipmi::Writer& record, const SimSensor& sensor, std::uint8_t recordType) {
    record.u16(0).u8(sdrVersion).u8(recordType).u8(0); // record ID and length follow later
    record.u8(bmcAddress).u8(0).u8(sensor.number);
    record.u8(sensor.entityId).u8(sensor.entityInstance);
    record.u8(0x7F).u8(0x68); // all initialized at start; auto re-arm, thresholds readable and settable
    record.u8(sensor.type).u8(sensor.eventReadingType);
    if (sensor.isThreshold()) // comparison bits 12 to 14 and 0 to 11; readable and settable thresholds
        record.u16(0x7A95).u16(0x7A95).u8(sensor.thresholdMask).u8(sensor.thresholdMask);
    else
        record.u16(0x7FFF).u16(0x7FFF).u16(0x7FFF);
}

std::vector<std::uint8_t> finish(ipmi::Writer& record, const SimSensor& sensor) {
    const std::span id(reinterpret_cast<const std::uint8_t*>(sensor.name.data()), sensor.name.size());
    record.u8(byte(latin1 | static_cast<int>(id.size()))).bytes(id);
    if (!record.ok() || id.size() > 16)
        throw std::length_error("sensor name '" + sensor.name + "' does not fit in an SDR");
    std::vector<std::uint8_t> bytes(record.written().begin(), record.written().end());
    bytes[4] = byte(static_cast<int>(bytes.size() - headerSize));
    return bytes;
}

} // namespace

std::vector<std::uint8_t> fullSdr(const SimSensor& sensor) {
    std::array<std::uint8_t, 64> storage;
    ipmi::Writer record(storage);
    writeCommon(record, sensor, 0x01);
    record.u8(0).u8(sensor.unit).u8(0).u8(0); // unsigned; base unit; no modifier; linear
    record.u8(byte(sensor.m)).u8(byte((sensor.m >> 2) & 0xC0));
    record.u8(byte(sensor.b)).u8(byte((sensor.b >> 2) & 0xC0));
    record.u8(0).u8(byte((sensor.rExponent << 4) | (sensor.bExponent & 0x0F)));
    record.u8(0).fill(3, 0).u8(0xFF).u8(0); // no nominal values; readable 00h to FFh
    for (int i : {5, 4, 3, 2, 1, 0})
        record.u8(sensor.thresholds[static_cast<std::size_t>(i)]);
    record.u8(1).u8(1).fill(3, 0); // hysteresis up and down; reserved, OEM
    return finish(record, sensor);
}

std::vector<std::uint8_t> compactSdr(const SimSensor& sensor) {
    std::array<std::uint8_t, 64> storage;
    ipmi::Writer record(storage);
    writeCommon(record, sensor, 0x02);
    record.u8(0xC0).fill(2, 0);               // no analog reading
    record.u8(1).u8(0).fill(2, 0).fill(4, 0); // one sensor shares the record; no hysteresis; reserved, OEM
    return finish(record, sensor);
}

std::vector<SimSensor> thresholdSensors(int count) {
    std::vector<SimSensor> sensors;
    for (int number = 1; number <= count; ++number) {
        SimSensor sensor{.number = byte(number), .name = "Temp " + std::to_string(number)};
        sensor.entityInstance = byte(number & 0x7F);
        sensor.reading = byte(number % 10 == 0 ? 125 : 30 + number % 60);
        sensors.push_back(std::move(sensor));
    }
    return sensors;
}

std::string simCommands(const std::vector<SimSensor>& sensors) {
    std::ostringstream out;
    out << "mc_setbmc 0x20\n"
           // device ID 21h, revision 2, firmware 5.17 (BCD), all additional devices; manufacturer and product
           "mc_add 0x20 0x21 no-device-sdrs 0x02 0x05 0x17 0x9f 0x1291 0x0f02\n"
           "sel_enable 0x20 4000 0x0a\n";
    for (const auto& sensor : sensors) {
        const auto command = [&](const char* name) -> std::ostream& {
            return out << name << " 0x20 0 " << hex(sensor.number) << ' ';
        };
        command("sensor_add") << hex(sensor.type) << ' ' << hex(sensor.eventReadingType) << '\n';
        const char* const events = sensor.isThreshold() ? "000101010010101" : "111111111111111";
        command("sensor_set_event_support") << "enable scanning per-state " << events << ' ' << events << ' '
                                            << events << ' ' << events << '\n';
        if (sensor.isThreshold()) {
            command("sensor_set_threshold") << "settable " << std::bitset<6>(sensor.thresholdMask);
            for (auto threshold = sensor.thresholds.rbegin(); threshold != sensor.thresholds.rend();
                 ++threshold)
                out << ' ' << hex(*threshold);
            out << '\n';
            command("sensor_set_value") << hex(sensor.reading) << " 0\n";
        } else {
            for (unsigned bit = 0; bit < 15; ++bit)
                command("sensor_set_bit") << bit << ' ' << (sensor.states >> bit & 1) << " 0\n";
        }
        out << "main_sdr_add 0x20";
        for (const std::uint8_t value : sensor.isThreshold() ? fullSdr(sensor) : compactSdr(sensor))
            out << ' ' << hex(value);
        out << '\n';
    }
    out << "mc_enable 0x20\n";
    return out.str();
}

} // namespace ph_test
