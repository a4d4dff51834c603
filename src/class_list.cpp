#include "class_list.h"

namespace ph {

extern constinit const ClassFamily family_ConcreteJob;
extern constinit const ClassFamily family_Error;
extern constinit const ClassFamily family_HostComputerSystem;
extern constinit const ClassFamily family_NumericSensor;
extern constinit const ClassFamily family_Sensor;

std::span<const ClassFamily* const> allClasses() {
    static constexpr const ClassFamily* classes[] = {
        &family_ConcreteJob, &family_Error, &family_HostComputerSystem, &family_NumericSensor, &family_Sensor,
    };
    return classes;
}

} // namespace ph
