// Sessions, and what the BMC says of itself and of its host.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <cstdlib>

namespace phctl::check {
namespace {

constexpr std::uint8_t administrator = 4; // IPMI privilege level

void createSession(Probe& probe) {
    Out<IPMI20_SESSION_T> session("the session", IPMI20_SESSION_T{});
    if (probe.openSession([&](auto... arguments) {
            return probe.call<decltype(CIM_Create_IPMI20_Session)>("", session, arguments...);
        }))
        probe.use<decltype(CIM_Close_Session)>("CIM_Close_Session", static_cast<IPMI20_SESSION_T*>(session));
}

void createSessionOfUser(Probe& probe) {
    const ipmi::SessionSettings settings = probe.sessionSettings();
    const std::uint8_t address[4] = {127, 0, 0, 1};
    Out<IPMI20_SESSION_T> session("the session", IPMI20_SESSION_T{});
    if (probe.call<decltype(CIM_Create_IPMI20_Session_Ext)>("", session, settings.userName.c_str(), address,
                                                            settings.interfaceType, administrator, 0,
                                                            probe.timeout()))
        probe.use<decltype(CIM_Close_Session)>("CIM_Close_Session", static_cast<IPMI20_SESSION_T*>(session));
}

void closeSession(Probe& probe) {
    probe.call<decltype(CIM_Close_Session)>("an open session", probe.session());
    probe.call<decltype(CIM_Close_Session)>("the same again", probe.session());
}

void getDeviceId(Probe& probe) {
    Out<CIM_DeviceID> device("the device");
    if (auto call = probe.call<decltype(CIM_GetDeviceID)>("", probe.session(), device, probe.timeout())) {
        call.expect(device->deviceRevision <= 15, "deviceRevision is above 15");
        call.expect(device->firmwareMajor <= 127, "firmwareMajor is above 127");
        call.expect(device->hasAuxiliary <= 1, "hasAuxiliary is neither 0 nor 1");
        call.expect(device->manufacturerId <= 0xFFFFFF, "manufacturerId has more than 24 bits");
    }
}

void getSystemInfo(Probe& probe) {
    for (std::uint8_t parameter = CIM_SYSTEM_FIRMWARE_VERSION; parameter <= CIM_SYSTEM_OS_VERSION;
         ++parameter) {
        OutText text("the text", CIM_SYSTEM_INFO_SIZE);
        probe.call<decltype(CIM_GetSystemInfo)>("parameter " + std::to_string(parameter), probe.session(),
                                                parameter, text, probe.timeout());
    }
}

void getChassisStatus(Probe& probe) {
    Out<CIM_ChassisStatus> status("the status");
    probe.call<decltype(CIM_GetChassisStatus)>("", probe.session(), status, probe.timeout());
}

bool isAcpiSystemState(std::uint8_t state) {
    return state <= 0x0A || state == 0x20 || state == 0x21 || state == CIM_ACPI_UNKNOWN;
}

void getAcpiPowerState(Probe& probe) {
    Out<std::uint8_t> system("the system's state");
    Out<std::uint8_t> device("the device's state");
    if (auto call = probe.call<decltype(CIM_GetACPIPowerState)>("", probe.session(), system, device,
                                                                probe.timeout())) {
        call.expect(isAcpiSystemState(*system), "the system's state is none of ACPI");
        call.expect(*device <= 3 || *device == CIM_ACPI_UNKNOWN, "the device's state is none of ACPI");
    }
}

void getBootFlags(Probe& probe) {
    Out<CIM_BootFlags> flags("the flags");
    if (auto call = probe.call<decltype(CIM_GetBootFlags)>("", probe.session(), flags, probe.timeout())) {
        call.expect(flags->isSupported <= 1 && flags->isValid <= 1 && flags->isPersistent <= 1,
                    "a flag is neither 0 nor 1");
        call.expect(flags->device <= 15, "the device has more than 4 bits");
        call.expect(flags->isSupported == 1 || (flags->isValid | flags->isPersistent | flags->device) == 0,
                    "there are flags though they are not supported");
    }
}

// Sets another device for the next boot, and then the former flags.
void setBootFlags(Probe& probe) {
    CIM_BootFlags before{};
    CIM_BootFlags after{};
    probe.use<decltype(CIM_GetBootFlags)>("CIM_GetBootFlags", probe.session(), &before, probe.timeout());
    if (before.isSupported == 0)
        throw NotPossible("the BMC has no boot flags");
    CIM_BootFlags changed = before;
    changed.isValid = 1;
    changed.device = before.device == CIM_BOOT_DISK ? CIM_BOOT_NETWORK : CIM_BOOT_DISK;
    if (auto call = probe.call<decltype(CIM_SetBootFlags)>("another device", probe.session(), &changed,
                                                           probe.timeout())) {
        probe.use<decltype(CIM_GetBootFlags)>("CIM_GetBootFlags", probe.session(), &after, probe.timeout());
        call.expect(after.isValid == 1 && after.device == changed.device, "what it writes is not read");
    }
    if (auto call =
            probe.call<decltype(CIM_SetBootFlags)>("as before", probe.session(), &before, probe.timeout())) {
        probe.use<decltype(CIM_GetBootFlags)>("CIM_GetBootFlags", probe.session(), &after, probe.timeout());
        call.expect(after.isValid == before.isValid && (before.isValid == 0 || after.device == before.device),
                    "what it writes is not read: the flags are changed");
    }
}

bool isWatchdog(const CIM_WatchdogTimer& timer) {
    return timer.isSupported <= 1 && timer.isRunning <= 1 && timer.doesNotLog <= 1 && timer.use <= 7 &&
           timer.action <= 7 && timer.interrupt <= 7 && timer.remaining <= timer.interval;
}

void getWatchdogTimer(Probe& probe) {
    Out<CIM_WatchdogTimer> timer("the timer");
    if (auto call = probe.call<decltype(CIM_GetWatchdogTimer)>("", probe.session(), timer, probe.timeout()))
        call.expect(isWatchdog(*timer), "a field is out of its range");
}

// One that runs is left alone.
void setWatchdogTimer(Probe& probe) {
    CIM_WatchdogTimer before{};
    CIM_WatchdogTimer after{};
    const auto read = [&](CIM_WatchdogTimer& timer) {
        probe.use<decltype(CIM_GetWatchdogTimer)>("CIM_GetWatchdogTimer", probe.session(), &timer,
                                                  probe.timeout());
    };
    read(before);
    if (before.isSupported == 0 || before.isRunning != 0 || before.use == 0)
        throw NotPossible(before.isSupported == 0 ? "the BMC has no watchdog timer"
                          : before.isRunning != 0 ? "the timer runs"
                                                  : "the timer was never set");
    CIM_WatchdogTimer changed = before;
    changed.interval = static_cast<std::uint16_t>(before.interval ^ 1);
    for (const auto& [words, timer] : {std::pair{"another interval", &changed}, {"as before", &before}})
        if (auto call =
                probe.call<decltype(CIM_SetWatchdogTimer)>(words, probe.session(), timer, probe.timeout())) {
            read(after);
            call.expect(after.interval == timer->interval, "what it writes is not read");
            call.expect(after.isRunning == 0, "it starts the timer");
        }
}

constexpr const char* switchesPower = "it switches the host's power";

} // namespace

std::span<const Row> sessionRows() {
    static constexpr Row rows[] = {
        {"CIM_Create_IPMI20_Session", createSession},
        {"CIM_Create_IPMI20_Session_Ext", createSessionOfUser},
        {"CIM_Close_Session", closeSession},
    };
    return rows;
}

std::span<const Row> systemRows() {
    static constexpr Row rows[] = {
        {"CIM_GetDeviceID", getDeviceId},
        {"CIM_GetSystemInfo", getSystemInfo},
        {"CIM_GetChassisStatus", getChassisStatus},
        {"CIM_GetACPIPowerState", getAcpiPowerState},
        {"CIM_PowerUp", nullptr, true, switchesPower},
        {"CIM_PowerOff", nullptr, true, switchesPower},
        {"CIM_SoftOff", nullptr, true, switchesPower},
        {"CIM_PowerCycle", nullptr, true, switchesPower},
        {"CIM_HardReset", nullptr, true, switchesPower},
        {"CIM_DiagnosticInt", nullptr, true, "it stops the host's operating system"},
        {"CIM_GetBootFlags", getBootFlags},
        {"CIM_SetBootFlags", setBootFlags, true},
        {"CIM_GetWatchdogTimer", getWatchdogTimer},
        {"CIM_SetWatchdogTimer", setWatchdogTimer, true},
        {"CIM_ResetWatchdogTimer", nullptr, true, "it starts the timer"},
    };
    return rows;
}

} // namespace phctl::check
