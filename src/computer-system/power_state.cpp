#include "computer-system/power_state.h"

#include "provider_helper/computer_system.h"

namespace {

// The BMC decides whether the host can be switched on again already.
int softCycle(IPMI20_SESSION_T* session, int timeout) {
    CIM_SoftOff(session, timeout);
    return CIM_PowerUp(session, timeout);
}

// By DMTF PowerState; nullptr: no BMC does that.
ph::PowerHook hookFor(uint16_t powerState) {
    switch (powerState) {
    case 1: // other
    case 2: // on
        return CIM_PowerUp;
    case 5: // power cycle (off soft)
        return softCycle;
    case 6: // off hard
        return CIM_PowerOff;
    case 8: // off soft
        return CIM_SoftOff;
    case 9: // power cycle (off hard)
        return CIM_PowerCycle;
    case 10: // master bus reset
        return CIM_HardReset;
    case 11: // diagnostic interrupt
        return CIM_DiagnosticInt;
    default:
        return nullptr;
    }
}

// Sleep (light), sleep (deep) and hibernate.
bool isSleep(uint16_t powerState) {
    return powerState == 3 || powerState == 4 || powerState == 7;
}

// The platform sees a session of these requests, and it stays open: that is how it has always been counted.
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
