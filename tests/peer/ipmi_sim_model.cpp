#include "ipmi_sim_model.h"

#include "sdr_builder.h"

#include <bitset>
#include <cstdio>
#include <sstream>
#include <stdexcept>

namespace ph_test {
namespace {

std::string hex(unsigned value) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%02x", value);
    return text;
}

std::uint8_t byte(int value) {
    return static_cast<std::uint8_t>(value);
}

// What full and compact records begin with (IPMI 2.0 tables 43-1 and 43-2).
SdrBuilder common(SdrBuilder sdr, const SimSensor& sensor) {
    if (sensor.name.size() > 16)
        throw std::length_error("sensor name '" + sensor.name + "' does not fit in an SDR");
    sdr.number(sensor.number).set(9, {sensor.entityId, sensor.entityInstance});
    sdr.set(11, {0x7F, 0x68}); // all initialized at start; auto re-arm, thresholds readable and settable
    if (sensor.isThreshold())  // comparison bits 12 to 14 and 0 to 11; readable and settable thresholds
        return sdr.set(15, {0x95, 0x7A, 0x95, 0x7A, sensor.thresholdMask, sensor.thresholdMask});
    return sdr.set(15, {0xFF, 0x7F, 0xFF, 0x7F, 0xFF, 0x7F});
}

std::vector<std::uint8_t> fullSdr(const SimSensor& sensor) {
    const auto& limits = sensor.thresholds;
    return common(SdrBuilder::full(sensor.type, sensor.eventReadingType, sensor.name), sensor)
        .set(21, {sensor.units, sensor.unit, sensor.modifierUnit, sensor.linearization})
        .set(25, {byte(sensor.m), byte((sensor.m >> 2) & 0xC0), byte(sensor.b), byte((sensor.b >> 2) & 0xC0)})
        .set(30, {byte((sensor.rExponent << 4) | (sensor.bExponent & 0x0F))})
        .set(35, {0xFF, 0, limits[5], limits[4], limits[3], limits[2], limits[1], limits[0], 1, 1})
        .record(0)
        .bytes;
}

std::vector<std::uint8_t> compactSdr(const SimSensor& sensor) {
    return common(SdrBuilder::compact(sensor.type, sensor.eventReadingType, sensor.name), sensor)
        .set(21, {0xC0}) // no analog reading
        .record(0)
        .bytes;
}

} // namespace

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
