#include "sensor_labels.h"

#include "ipmi-view/sensor_rows.h"
#include "ipmi/command.h"
#include "smash-db/sync/sdr_mapping.h"

namespace phctl {
namespace {

view::SensorLabels labelsOf(const std::vector<view::SensorRow>& sensors) {
    constexpr std::uint8_t bmc = 0x20; // owner of all that are served
    view::SensorLabels labels;
    for (const view::SensorRow& sensor : sensors) {
        view::SensorLabel label{sensor.name, sensor.type};
        if (sensor.conversion && !sensor.conversion->isNonLinear())
            label.quantity = [conversion = *sensor.conversion](std::uint8_t raw) {
                return view::Quantity{conversion.value(raw), conversion.unit()};
            };
        labels.emplace(view::SensorKey{bmc, 0, sensor.number}, std::move(label));
    }
    return labels;
}

} // namespace

view::SensorLabels sensorLabels() {
    try {
        return labelsOf(view::readSensorRows());
    } catch (const std::runtime_error&) { // events name sensors by number then
        return {};
    }
}

view::SensorLabels sensorLabels(ipmi::Transport& bmc) {
    std::vector<smash::SyncRemark> remarks; // what is missing, events name by number
    smash::SdrMapping mapping;
    try {
        for (const auto& record : smash::readSdrRepository(bmc, remarks, [](std::size_t, std::size_t) {}))
            mapping.add(record, remarks);
    } catch (const ipmi::CompletionCodeError&) {
        return {};
    }
    return labelsOf(view::sensorRowsOf(mapping.numericSensors, mapping.sensors, mapping.conversions));
}

} // namespace phctl
