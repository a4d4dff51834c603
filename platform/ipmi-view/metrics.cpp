#include "ipmi-view/metrics.h"

#include "hooks/system_info_reader.h"
#include "ipmi-view/chassis_status.h"
#include "ipmi-view/sel_info.h"
#include "ipmi-view/sensors.h"
#include "ipmi/command.h"

#include <algorithm>
#include <cmath>
#include <freeipmi/spec/ipmi-iana-enterprise-numbers-spec.h>
#include <freeipmi/spec/ipmi-sensor-units-spec.h>
#include <freeipmi/util/ipmi-iana-enterprise-numbers-util.h>
#include <freeipmi/util/ipmi-sensor-util.h>
#include <limits>
#include <platform/cim_system_info.h>

namespace view {
namespace {

constexpr double notKnown = std::numeric_limits<double>::quiet_NaN();

std::string orNotKnown(const std::string& text) {
    return text.empty() ? "N/A" : text;
}

// "NAME (NUMBER)", or the number of one whose name is not known.
std::string manufacturerText(std::uint32_t number) {
    char name[256] = "";
    const int length = ipmi_iana_enterprise_numbers_string(number, name, sizeof name);
    return length > 0 ? std::string(name) + " (" + std::to_string(number) + ')' : std::to_string(number);
}

bool collectBmc(ipmi::Transport& bmc, Samples& samples) {
    const auto answer = ipmi::run(bmc, ipmi::command::getDeviceId);
    auto reader = answer.reader();
    reader.skip(2); // device ID and revision
    char firmware[16];
    const unsigned major = reader.u8() & 0x7F;
    const unsigned minor = reader.u8(); // BCD
    std::snprintf(firmware, sizeof firmware, "%u.%02x", major, minor);
    reader.skip(2); // IPMI version, additional devices
    const std::uint32_t manufacturer = reader.u24() & 0xFFFFF;
    answer.verify(reader);
    constexpr std::uint8_t bmcUrl = 6; // parameter of Get System Info Parameters
    samples.push_back(
        {Metric::BmcInfo,
         {{"firmware_revision", firmware},
          {"manufacturer_id", manufacturerText(manufacturer)},
          {"system_firmware_version", orNotKnown(hooks::readSystemInfo(bmc, CIM_SYSTEM_FIRMWARE_VERSION))},
          {"bmc_url", orNotKnown(hooks::readSystemInfo(bmc, bmcUrl))}},
         1});
    return true;
}

bool collectChassis(ipmi::Transport& bmc, Samples& samples) {
    const ChassisStatus status = readChassisStatus(bmc);
    samples.push_back({Metric::ChassisPower, {}, status.isOn() ? 1.0 : 0.0});
    samples.push_back({Metric::ChassisDriveFault, {}, status.hasDriveFault() ? 0.0 : 1.0});
    samples.push_back({Metric::ChassisCoolingFault, {}, status.hasCoolingFault() ? 0.0 : 1.0});
    return true;
}

bool collectSel(ipmi::Transport& bmc, Samples& samples) {
    const SelInfo info = readSelInfo(bmc);
    samples.push_back({Metric::SelEntries, {}, static_cast<double>(info.entries)});
    samples.push_back({Metric::SelFreeSpace, {}, static_cast<double>(info.freeBytes)});
    return true;
}

// Get Power Reading of DCMI 1.5, 6.6.1: what the whole machine takes.
bool collectDcmi(ipmi::Transport& bmc, Samples& samples) {
    constexpr ipmi::CommandCode getPowerReading{ipmi::netFn::groupExtension, 0x02};
    constexpr std::uint8_t group = 0xDC, systemPower = 0x01;
    const std::uint8_t request[] = {group, systemPower, 0, 0};
    const auto answer = ipmi::askIfKnown(bmc, getPowerReading, request);
    if (!answer)
        return false;
    auto reader = answer->reader();
    reader.skip(1); // group
    const std::uint16_t watts = reader.u16();
    reader.skip(14); // minimum, maximum, average; time stamp; time of the average
    const bool isActive = (reader.u8() & 0x40) != 0;
    answer->verify(reader);
    if (isActive)
        samples.push_back({Metric::PowerConsumption, {}, static_cast<double>(watts)});
    return true;
}

// What a sensor's unit makes of it. Those that no row fits have the general metrics.
struct Kind {
    std::uint8_t unit;
    bool isPercentage;
    std::uint8_t sensorType; // 0: any
    Metric value, state;
    double scale;
};
constexpr std::uint8_t fan = 0x04;
constexpr Kind kinds[] = {
    {IPMI_SENSOR_UNIT_DEGREES_C, false, 0, Metric::Temperature, Metric::TemperatureState, 1},
    {IPMI_SENSOR_UNIT_RPM, false, 0, Metric::FanSpeed, Metric::FanSpeedState, 1},
    {IPMI_SENSOR_UNIT_UNSPECIFIED, true, fan, Metric::FanSpeedRatio, Metric::FanSpeedState, 0.01},
    {IPMI_SENSOR_UNIT_VOLTS, false, 0, Metric::Voltage, Metric::VoltageState, 1},
    {IPMI_SENSOR_UNIT_AMPS, false, 0, Metric::Current, Metric::CurrentState, 1},
    {IPMI_SENSOR_UNIT_WATTS, false, 0, Metric::Power, Metric::PowerState, 1},
};

const Kind* kindOf(const SensorRow& sensor) {
    if (!sensor.conversion)
        return nullptr;
    const bool isPercentage = sensor.conversion->isPercentage();
    constexpr std::uint8_t percentageOnly = 0x01; // of the bits that make a unit
    const bool isSimple = (sensor.conversion->units & 0x3F & ~percentageOnly) == 0;
    const auto* kind = std::ranges::find_if(kinds, [&](const Kind& each) {
        return isSimple && each.unit == sensor.conversion->baseUnit && each.isPercentage == isPercentage &&
               (each.sensorType == 0 || each.sensorType == sensor.type);
    });
    return kind != std::end(kinds) ? kind : nullptr;
}

double numberOf(Severity severity) {
    return severity == Severity::Unknown ? notKnown : static_cast<double>(severity);
}

void addSensor(Samples& samples, const SensorRow& sensor, const Reading& reading) {
    const Kind* const kind = kindOf(sensor);
    std::vector<Label> labels = {{"id", std::to_string(sensor.recordId)}, {"name", sensor.name}};
    if (kind == nullptr) {
        const char* const type = ipmi_get_sensor_type_string(sensor.type);
        labels.push_back({"type", type != nullptr ? type : "N/A"});
    }
    const double scale = kind != nullptr ? kind->scale : 1;
    samples.push_back({kind != nullptr ? kind->value : Metric::SensorValue, labels,
                       reading.value ? *reading.value * scale : notKnown});
    samples.push_back(
        {kind != nullptr ? kind->state : Metric::SensorState, std::move(labels), numberOf(reading.severity)});
}

bool collectSensors(ipmi::Transport& bmc, Samples& samples) {
    std::size_t unreadable = 0;
    for (const SensorRow& sensor : readSensorRows()) {
        const Reading reading = readSensor(bmc, sensor);
        unreadable += static_cast<std::size_t>(!reading.problem.empty());
        addSensor(samples, sensor, reading);
    }
    samples.push_back({Metric::SensorsUnreadable, {}, static_cast<double>(unreadable)});
    return true;
}

// The names are those of the exporter. What takes longest comes last. A collector returns false where the BMC has
// not got what it is about.
struct Collector {
    const char* name;
    bool (*collect)(ipmi::Transport& bmc, Samples& samples);
};
constexpr Collector collectors[] = {{"bmc", collectBmc},
                                    {"chassis", collectChassis},
                                    {"sel", collectSel},
                                    {"dcmi", collectDcmi},
                                    {"ipmi", collectSensors}};

void addUp(Collection& collection, const char* collector, bool isUp) {
    collection.samples.push_back({Metric::Up, {{"collector", collector}}, isUp ? 1.0 : 0.0});
}

void addFailure(Collection& collection, const char* collector, const std::string& reason) {
    addUp(collection, collector, false);
    collection.failures.push_back({collector, reason});
}

} // namespace

Collection collectionWithout(const std::string& reason) {
    Collection collection;
    for (const Collector& each : collectors)
        addFailure(collection, each.name, reason);
    return collection;
}

Collection collectMetrics(const OpenBmc& open, ipmi::Clock::time_point deadline) {
    std::unique_ptr<ipmi::Transport> bmc;
    try {
        bmc = open();
        bmc->endBy(deadline);
    } catch (const std::exception& error) {
        return collectionWithout(error.what());
    }
    Collection collection;
    std::string lost; // why nothing more can be asked
    for (const auto& [name, collect] : collectors) {
        Samples samples;
        try {
            if (!lost.empty()) {
                addFailure(collection, name, lost);
            } else if (collect(*bmc, samples)) {
                addUp(collection, name, true);
                std::ranges::move(samples, std::back_inserter(collection.samples));
            }
        } catch (const ipmi::TransportError& error) {
            lost = error.what();
            addFailure(collection, name, lost);
        } catch (const std::exception& error) {
            addFailure(collection, name, error.what());
        }
    }
    return collection;
}

} // namespace view
