// The sensors with their readings, for people and for programs.
#pragma once

#include "ipmi-view/sensors.h"
#include "text_layout.h"

#include <iosfwd>
#include <nlohmann/json_fwd.hpp>

namespace phctl {

struct SensorLine {
    view::SensorRow sensor; // with the thresholds that are set now
    view::Reading reading;
};

// Prints a line for each sensor, with its thresholds, then how many cannot be read and why. The line of a sensor
// that is not nominal has a colour.
void printSensors(std::ostream& out, const std::vector<SensorLine>& lines, const Layout& layout);

nlohmann::ordered_json toJson(const std::vector<SensorLine>& lines);
// What is computed from a reading: {"reading": 53.0, "unit": "degrees C", "state": "nominal", "events": []}. A
// sensor that was not read has its reason in "problem" instead.
nlohmann::ordered_json computedJson(const view::SensorRow& sensor, const view::Reading& reading);

} // namespace phctl
