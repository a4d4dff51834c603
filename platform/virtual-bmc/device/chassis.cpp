#include "virtual-bmc/device/chassis.h"

#include "ipmi/chassis_control.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <chrono>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;

using Control = ipmi::ChassisControl;

Chassis settled(Chassis chassis) {
    chassis.settle(Chassis::now());
    return chassis;
}

void powerUp(Chassis& chassis, std::int64_t time) {
    // A host that is shutting down comes up again afterwards.
    if (chassis.isOn && chassis.offAt != 0)
        chassis.onAt = chassis.offAt + chassis.cycleInterval;
    else if (!chassis.isOn)
        chassis.onAt = time;
    chassis.wasSwitchedOn = true;
}

// Acts on a host that runs. Otherwise there is nothing to act on: D5h, which IPMI recommends for the power
// cycle.
std::uint8_t controlRunning(Chassis& chassis, Control control, std::int64_t time) {
    if (!chassis.isOn)
        return completion::notInPresentState;
    switch (control) {
    case Control::PowerCycle:
        chassis.powerCycle(time);
        chassis.wasSwitchedOn = true;
        break;
    case Control::HardReset:
        chassis.reset();
        break;
    case Control::DiagnosticInterrupt:
        ++chassis.diagnosticInterrupts;
        break;
    default:
        if (chassis.offAt == 0)
            chassis.offAt = time + chassis.softOffDelay;
    }
    return completion::success;
}

std::uint8_t chassisControl(State& state, ipmi::Reader request, ipmi::Writer&) {
    const auto control = static_cast<Control>(request.u8() & 0x0F);
    if (control > Control::SoftShutdown)
        return completion::invalidDataField;
    const std::int64_t time = Chassis::now();
    auto& chassis = state.edit<Chassis>();
    chassis.settle(time);
    std::uint8_t code = completion::success;
    if (control == Control::PowerDown)
        chassis.powerDown();
    else if (control == Control::PowerUp)
        powerUp(chassis, time);
    else
        code = controlRunning(chassis, control, time);
    chassis.settle(time);
    state.edit<BootOptions>().validSince = time;
    if (control == Control::PowerDown || control == Control::PowerCycle || control == Control::HardReset)
        state.edit<Watchdog>().stop();
    return code;
}

std::uint8_t getChassisStatus(State& state, ipmi::Reader, ipmi::Writer& answer) {
    constexpr std::uint8_t unknownRestorePolicy = 0x60;
    constexpr std::uint8_t byCommand = 0x10;
    const Chassis chassis = settled(state.get<Chassis>());
    answer.u8(static_cast<std::uint8_t>(unknownRestorePolicy | chassis.isOn))
        .u8(chassis.isOn && chassis.wasSwitchedOn ? byCommand : 0)
        .u8(0); // nothing of intrusion, lockout, fans and drives
    return completion::success;
}

std::uint8_t getAcpiPowerState(State& state, ipmi::Reader, ipmi::Writer& answer) {
    constexpr std::uint8_t working = 0x00, softOff = 0x05, deviceOn = 0x00;
    answer.u8(state.get<Chassis>().isOnNow() ? working : softOff).u8(deviceOn);
    return completion::success;
}

std::uint8_t getSystemRestartCause(State& state, ipmi::Reader, ipmi::Writer& answer) {
    constexpr std::uint8_t unknown = 0, chassisControlCommand = 1;
    constexpr std::uint8_t systemInterface = 0x0F; // channel
    const auto& chassis = state.get<Chassis>();
    answer.u8(chassis.wasSwitchedOn || chassis.resets > 0 ? chassisControlCommand : unknown)
        .u8(systemInterface);
    return completion::success;
}

} // namespace

std::span<const Command> Chassis::commands() {
    static constexpr Command table[] = {
        {ipmi::command::getChassisStatus, 0, getChassisStatus},
        {ipmi::command::chassisControl, 1, chassisControl},
        {ipmi::command::getAcpiPowerState, 0, getAcpiPowerState},
        {ipmi::command::getSystemRestartCause, 0, getSystemRestartCause},
    };
    return table;
}

void Chassis::fields(Fields& fields) {
    constexpr int tenMinutes = 600'000;
    fields("on", isOn);
    fields("offAt", offAt);
    fields("onAt", onAt);
    fields.number("softOffDelay", softOffDelay, 0, tenMinutes);
    fields.number("cycleInterval", cycleInterval, 0, tenMinutes);
    fields("switchedOn", wasSwitchedOn);
    fields("resets", resets);
    fields("diagnosticInterrupts", diagnosticInterrupts);
    fields("boots", boots);
}

void Chassis::settle(std::int64_t time) {
    if (offAt != 0 && time >= offAt) {
        isOn = false;
        offAt = 0;
    }
    if (offAt == 0 && onAt != 0 && time >= onAt) {
        boots += !isOn;
        isOn = true;
        onAt = 0;
    }
}

void Chassis::powerDown() {
    isOn = false;
    offAt = onAt = 0;
}

void Chassis::powerCycle(std::int64_t time) {
    powerDown();
    onAt = time + cycleInterval;
}

void Chassis::reset() {
    offAt = onAt = 0; // what was shutting down starts anew
    ++resets;
    ++boots;
}

std::int64_t Chassis::now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

bool Chassis::isOnNow() const {
    return settled(*this).isOn;
}

Json Chassis::describe(const State&) const {
    const Chassis chassis = settled(*this);
    Json json = Json::object();
    json["power"] = chassis.isOn ? "on" : "off";
    if (chassis.offAt != 0 || chassis.onAt != 0)
        json["comingText"] = chassis.offAt == 0 ? "on" : chassis.onAt == 0 ? "off" : "off, then on";
    json["resets"] = chassis.resets;
    json["diagnosticInterrupts"] = chassis.diagnosticInterrupts;
    return json;
}

} // namespace vbmc
