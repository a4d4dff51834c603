#include "class_list.h"

namespace ph {

extern constinit const ClassFamily family_ConcreteJob;
extern constinit const ClassFamily family_Error;
extern constinit const ClassFamily family_HostComputerSystem;

std::span<const ClassFamily* const> allClasses() {
    static constexpr const ClassFamily* classes[] = {
        &family_ConcreteJob,
        &family_Error,
        &family_HostComputerSystem,
    };
    return classes;
}

} // namespace ph
