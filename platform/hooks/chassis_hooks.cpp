#include "hooks/session.h"
#include "ipmi/chassis_control.h"
#include "ipmi/command.h"

namespace {

using Control = ipmi::ChassisControl;

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

int CIM_GetChassisStatus(IPMI20_SESSION_T* session, CIM_ChassisStatus* status, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(status != nullptr);
        const auto answer = ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::getChassisStatus);
        auto reader = answer.reader();
        *status = {.power = reader.u8(), .lastEvent = reader.u8(), .state = reader.u8()};
        answer.verify(reader);
    });
}

int CIM_GetACPIPowerState(IPMI20_SESSION_T* session, uint8_t* system, uint8_t* device, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(system != nullptr && device != nullptr);
        constexpr std::uint8_t stateBits = 0x7F;
        *system = *device = CIM_ACPI_UNKNOWN;
        const auto answer =
            ipmi::askIfKnown(hooks::sessionOf(session, timeout), ipmi::command::getAcpiPowerState);
        if (!answer)
            return;
        auto reader = answer->reader();
        *system = reader.u8() & stateBits;
        *device = reader.u8() & stateBits;
        answer->verify(reader);
    });
}
