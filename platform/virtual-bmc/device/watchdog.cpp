#include "virtual-bmc/device/watchdog.h"

#include "ipmi/watchdog_timer.h"
#include "virtual-bmc/device/boot_options.h"
#include "virtual-bmc/device/chassis.h"
#include "virtual-bmc/sel/sel.h"
#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace watchdog = ipmi::watchdog;

constexpr int millisecondsPerCount = 100;

constexpr Choice uses[] = {{0, "none"},    {1, "bios-frb2"}, {2, "bios-post"},
                           {3, "os-load"}, {4, "os"},        {5, "oem"}};
constexpr Choice actions[] = {{watchdog::noAction, "none"},
                              {watchdog::hardReset, "hard-reset"},
                              {watchdog::powerDown, "power-down"},
                              {watchdog::powerCycle, "power-cycle"}};
constexpr Choice interrupts[] = {{0, "none"}, {1, "smi"}, {2, "nmi"}, {3, "messaging"}};
constexpr std::uint8_t nonMaskableInterrupt = 2;

// A sensor of type Watchdog 2 tells of what happened; a machine without one tells nothing. Its states are those
// of the actions, and 8 for the interrupt (IPMI 2.0 table 42-3).
void report(State& state, std::uint8_t offset, std::int64_t time) {
    constexpr std::uint8_t watchdog2 = 0x23;
    constexpr std::uint8_t hasSensorData = 0xC0; // event data 2 is the interrupt and the timer's use
    auto& sensors = state.edit<Sensors>();
    const auto sensor = std::ranges::find(sensors.list, watchdog2, &Sensor::type);
    if (sensor == sensors.list.end())
        return;
    sensor->live.at(0).states.bits |= static_cast<std::uint16_t>(1U << offset);
    const auto& timer = state.get<Watchdog>();
    if (!timer.doesNotLog)
        Sel::addEvent(state, static_cast<int>(sensor->number),
                      {static_cast<std::uint8_t>(hasSensorData | offset),
                       static_cast<std::uint8_t>(timer.interrupt << 4 | timer.use), 0xFF},
                      state.get<Sel>().at(time));
}

void interruptHost(State& state, std::int64_t time) {
    constexpr std::uint8_t interruptState = 8;
    auto& timer = state.edit<Watchdog>();
    timer.hasInterrupted = true;
    if (timer.interrupt == nonMaskableInterrupt)
        ++state.edit<Chassis>().diagnosticInterrupts;
    report(state, interruptState, time);
}

void act(State& state, std::uint8_t action, std::int64_t time) {
    auto& chassis = state.edit<Chassis>();
    chassis.settle(time);
    if (!chassis.isOn || action == watchdog::noAction)
        return;
    state.edit<BootOptions>().clearValid(ipmi::boot::keepOnWatchdog);
    if (action == watchdog::hardReset)
        chassis.reset();
    else if (action == watchdog::powerDown)
        chassis.powerDown();
    else
        chassis.powerCycle(time);
}

std::uint8_t setTimer(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t use = request.u8();
    const std::uint8_t action = request.u8();
    const std::uint8_t interruptSeconds = request.u8();
    const std::uint8_t cleared = request.u8();
    const std::uint16_t interval = request.u16();
    const auto interrupt =
        static_cast<std::uint8_t>((action & watchdog::interruptMask) >> watchdog::interruptShift);
    if ((use & watchdog::useMask) == 0 || (use & watchdog::useMask) > watchdog::lastUse ||
        (action & watchdog::actionMask) > watchdog::powerCycle || interrupt > watchdog::lastInterrupt ||
        (interrupt != 0 && interruptSeconds * 10 > interval))
        return completion::invalidDataField;
    auto& timer = state.edit<Watchdog>();
    const bool goesOn = timer.endsAt != 0 && (use & watchdog::keepRunning) != 0;
    timer.use = use & watchdog::useMask;
    timer.doesNotLog = (use & watchdog::dontLog) != 0;
    timer.action = action & watchdog::actionMask;
    timer.interrupt = interrupt;
    timer.interruptSeconds = interruptSeconds;
    timer.expired = static_cast<std::uint8_t>(timer.expired & ~cleared);
    timer.interval = interval;
    timer.stop();
    if (goesOn)
        timer.start(Chassis::now());
    return completion::success;
}

std::uint8_t resetTimer(State& state, ipmi::Reader, ipmi::Writer&) {
    if (state.get<Watchdog>().use == 0)
        return watchdog::notInitialized;
    state.edit<Watchdog>().start(Chassis::now());
    return completion::success;
}

std::uint16_t remaining(const Watchdog& timer) {
    if (timer.endsAt == 0)
        return timer.interval;
    const std::int64_t counts =
        (timer.endsAt - Chassis::now() + millisecondsPerCount - 1) / millisecondsPerCount;
    return static_cast<std::uint16_t>(std::clamp<std::int64_t>(counts, 0, timer.interval));
}

std::uint8_t getTimer(State& state, ipmi::Reader, ipmi::Writer& answer) {
    const auto& timer = state.get<Watchdog>();
    answer
        .u8(static_cast<std::uint8_t>(timer.use | (timer.doesNotLog ? watchdog::dontLog : 0) |
                                      (timer.endsAt != 0 ? watchdog::isRunning : 0)))
        .u8(static_cast<std::uint8_t>(timer.action | timer.interrupt << watchdog::interruptShift))
        .u8(timer.interruptSeconds)
        .u8(timer.expired)
        .u16(timer.interval)
        .u16(remaining(timer));
    return completion::success;
}

} // namespace

std::span<const Command> Watchdog::commands() {
    static constexpr Command table[] = {
        {ipmi::command::resetWatchdogTimer, 0, resetTimer, 3},
        {ipmi::command::setWatchdogTimer, 6, setTimer, 3},
        {ipmi::command::getWatchdogTimer, 0, getTimer},
    };
    return table;
}

void Watchdog::fields(Fields& fields) {
    fields.choice("use", use, uses);
    fields("doesNotLog", doesNotLog);
    fields.choice("action", action, actions);
    fields.choice("interrupt", interrupt, interrupts);
    fields("interruptSeconds", interruptSeconds);
    fields("interval", interval);
    fields("expired", expired);
    fields("endsAt", endsAt);
    fields("hasInterrupted", hasInterrupted);
}

void Watchdog::start(std::int64_t now) {
    endsAt = now + std::int64_t{interval} * millisecondsPerCount;
    hasInterrupted = false;
}

void Watchdog::settle(State& state, std::int64_t now) {
    const Watchdog timer = state.get<Watchdog>();
    if (timer.endsAt == 0)
        return;
    const std::int64_t interruptsAt = timer.endsAt - std::int64_t{timer.interruptSeconds} * 1000;
    if (timer.interrupt != 0 && !timer.hasInterrupted && now >= interruptsAt)
        interruptHost(state, interruptsAt);
    if (now < timer.endsAt)
        return;
    auto& ended = state.edit<Watchdog>();
    ended.stop();
    ended.expired |= static_cast<std::uint8_t>(1U << timer.use);
    report(state, timer.action, timer.endsAt);
    act(state, timer.action, timer.endsAt);
}

Json Watchdog::describe(const State&) const {
    Json json = Json::object();
    json["use"] = nameOf(uses, use);
    json["running"] = endsAt != 0;
    json["action"] = nameOf(actions, action);
    json["interrupt"] = nameOf(interrupts, interrupt);
    json["interruptSeconds"] = interruptSeconds;
    json["interval"] = interval;
    json["remaining"] = remaining(*this);
    Json ranOut = Json::array();
    for (const Choice& each : uses)
        if ((expired >> each.code & 1) != 0)
            ranOut.push_back(each.name);
    json["expired"] = std::move(ranOut);
    return json;
}

} // namespace vbmc
