#include "virtual-bmc/sensors/sensor_names.h"

#include "ipmi/sensor_types.h"

#include <array>

namespace vbmc {

std::span<const Choice> sensorTypeNames() {
    static const auto names = [] {
        constexpr int last = 0x2C;
        std::array<Choice, last> types{};
        for (int code = 1; code <= last; ++code)
            types[static_cast<std::size_t>(code - 1)] = {
                code, ipmi::sensorTypeName(static_cast<std::uint8_t>(code))};
        return types;
    }();
    return names;
}

std::span<const Choice> readingTypeNames() {
    static constexpr Choice names[] = {
        {0x01, "threshold"},      {0x02, "usage"},        {0x03, "state"},      {0x04, "predictive failure"},
        {0x05, "limit"},          {0x06, "performance"},  {0x07, "severity"},   {0x08, "presence"},
        {0x09, "enablement"},     {0x0A, "availability"}, {0x0B, "redundancy"}, {0x0C, "device power"},
        {0x6F, "sensor-specific"}};
    return names;
}

std::span<const Choice> unitNames() {
    static constexpr Choice names[] = {{0, "unspecified"},
                                       {1, "degrees C"},
                                       {2, "degrees F"},
                                       {3, "degrees K"},
                                       {4, "volts"},
                                       {5, "amps"},
                                       {6, "watts"},
                                       {7, "joules"},
                                       {8, "coulombs"},
                                       {9, "VA"},
                                       {10, "nits"},
                                       {11, "lumen"},
                                       {12, "lux"},
                                       {13, "candela"},
                                       {14, "kPa"},
                                       {15, "PSI"},
                                       {16, "newton"},
                                       {17, "CFM"},
                                       {18, "RPM"},
                                       {19, "Hz"},
                                       {20, "us"},
                                       {21, "ms"},
                                       {22, "s"},
                                       {23, "min"},
                                       {24, "h"},
                                       {25, "day"},
                                       {26, "week"},
                                       {27, "mil"},
                                       {28, "inches"},
                                       {29, "feet"},
                                       {32, "mm"},
                                       {33, "cm"},
                                       {34, "m"},
                                       {37, "liters"},
                                       {41, "revolutions"},
                                       {42, "cycles"},
                                       {43, "gravities"},
                                       {44, "ounces"},
                                       {45, "pounds"},
                                       {54, "ohms"},
                                       {58, "PPM"},
                                       {60, "dB"},
                                       {66, "bits"},
                                       {70, "bytes"},
                                       {72, "megabytes"},
                                       {73, "gigabytes"},
                                       {88, "errors"},
                                       {89, "correctable errors"},
                                       {90, "uncorrectable errors"},
                                       {91, "fatal errors"},
                                       {92, "grams"}};
    return names;
}

} // namespace vbmc
