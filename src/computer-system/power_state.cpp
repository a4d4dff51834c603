#include "computer-system/power_state.h"

#include "provider_helper/computer_system.h"
#include "Utility/values/dmtf_values.h"

namespace {

// The BMC decides whether the host can be switched on again already.
int softCycle(IPMI20_SESSION_T* session, int timeout) {
    CIM_SoftOff(session, timeout);
    return CIM_PowerUp(session, timeout);
}

// nullptr stands for a state that no BMC switches to.
ph::PowerHook hookFor(uint16_t powerState) {
    using namespace ph::PowerState;
    switch (powerState) {
    case Other:
    case On:
        return CIM_PowerUp;
    case PowerCycleOffSoft:
        return softCycle;
    case OffHard:
        return CIM_PowerOff;
    case OffSoft:
        return CIM_SoftOff;
    case PowerCycleOffHard:
        return CIM_PowerCycle;
    case MasterBusReset:
        return CIM_HardReset;
    case DiagnosticInterrupt:
        return CIM_DiagnosticInt;
    default:
        return nullptr;
    }
}

bool isSleep(uint16_t powerState) {
    using namespace ph::PowerState;
    return powerState == SleepLight || powerState == SleepDeep || powerState == Hibernate;
}

// The platform sees a session of these requests, which stays open: platforms have always counted on it.
int refuseSleep() {
    IPMI20_SESSION_T session;
    CreateIPMISession(&session);
    return -1;
}

} // namespace

int PH_SetPowerState(CMPIString** /*keyValues*/, uint16_t powerState) {
    if (isSleep(powerState))
        return refuseSleep();
    const ph::PowerHook hook = hookFor(powerState);
    return hook != nullptr ? ph::switchPower(hook) : -1;
}
