#include "hooks/session.h"
#include "ipmi/command.h"

namespace {

enum class Control : std::uint8_t { // IPMI 2.0 table 28-4
    PowerDown = 0,
    PowerUp = 1,
    PowerCycle = 2,
    HardReset = 3,
    DiagnosticInterrupt = 4,
    SoftShutdown = 5
};

int controlChassis(const char* hook, const IPMI20_SESSION_T* session, int timeout, Control control) {
    return hooks::guarded(hook, [&] {
        ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::chassisControl,
                  {static_cast<std::uint8_t>(control)});
    });
}

} // namespace

int CIM_PowerUp(IPMI20_SESSION_T* session, int timeout) {
    return controlChassis(__func__, session, timeout, Control::PowerUp);
}

int CIM_PowerOff(IPMI20_SESSION_T* session, int timeout) {
    return controlChassis(__func__, session, timeout, Control::PowerDown);
}

int CIM_SoftOff(IPMI20_SESSION_T* session, int timeout) {
    return controlChassis(__func__, session, timeout, Control::SoftShutdown);
}

int CIM_PowerCycle(IPMI20_SESSION_T* session, int timeout) {
    return controlChassis(__func__, session, timeout, Control::PowerCycle);
}

int CIM_HardReset(IPMI20_SESSION_T* session, int timeout) {
    return controlChassis(__func__, session, timeout, Control::HardReset);
}

int CIM_DiagnosticInt(IPMI20_SESSION_T* session, int timeout) {
    return controlChassis(__func__, session, timeout, Control::DiagnosticInterrupt);
}
