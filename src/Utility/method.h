// A class's methods as data: what clients, and the schema, know of them. All return a uint32.
#pragma once

#include <cmpidt.h>
#include <cstdint>
#include <span>

namespace ph {

enum class Direction : std::uint8_t { In, Out };

//     {"RequestedState", CMPI_uint16}, {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"}
struct Parameter {
    const char* name;
    CMPIType type; // also with CMPI_ARRAY
    Direction direction = Direction::In;
    const char* className = nullptr; // of CMPI_ref and CMPI_instance
};

struct Method {
    const char* name;
    std::span<const Parameter> parameters; // in the order of the signature
};

// RequestStateChange as CIM_EnabledLogicalElement has it.
inline constexpr Parameter requestStateChangeParameters[] = {
    {"RequestedState", CMPI_uint16},
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
    {"TimeoutPeriod", CMPI_dateTime},
};
inline constexpr Method requestStateChange{"RequestStateChange", requestStateChangeParameters};

} // namespace ph
