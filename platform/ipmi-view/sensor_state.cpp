#include "ipmi-view/sensor_state.h"

#include "ipmi/sensor_types.h"

#include <cstdio>
#include <freeipmi/freeipmi.h>
#include <freeipmi/interpret/ipmi-interpret.h>
#include <memory>
#include <new>

namespace view {
namespace {

constexpr std::uint16_t nonCritical = 0x09;
constexpr std::uint16_t beyond = 0x36; // critical and non-recoverable
constexpr unsigned stateCount = 15;

// What FreeIPMI leaves open: it judges generic states for some types of sensors only, and some types not at all. A
// state of neither mask is nominal.
struct Judgement {
    std::uint8_t readingType;
    std::uint8_t sensorType; // 0: any
    std::uint16_t warning;
    std::uint16_t critical;
};
constexpr Judgement judgements[] = {
    {0x02, 0, 0, 0},                              // usage: idle, active, busy
    {0x04, 0, 0, 0x0002},                         // predictive failure
    {0x05, 0, 0, 0x0002},                         // limit exceeded
    {0x06, 0, 0, 0x0002},                         // performance lags
    {0x07, 0, 0x0092, 0x006C},                    // severity; a monitored one is a warning
    {0x08, 0, 0, 0x0001},                         // device absent
    {0x09, 0, 0, 0},                              // device disabled, enabled
    {0x0A, 0, 0x0072, 0x0100},                    // in test, off line, off duty, degraded; install error
    {0x0B, 0, 0x00C4, 0x003A},                    // redundancy degraded; lost, or not enough
    {0x0C, 0, 0, 0},                              // device power states D0 to D3
    {ipmi::sensorSpecific, 0x0E, 0, 0},           // POST memory resize
    {ipmi::sensorSpecific, 0x11, 0x0080, 0x007F}, // watchdog 1: before its end; run out
    {ipmi::sensorSpecific, 0x19, 0, 0x0003},      // chip set: soft power control failure, thermal trip
    {ipmi::sensorSpecific, 0x1D, 0, 0},           // system boot initiated
    {ipmi::sensorSpecific, 0x20, 0x0020, 0x0003}, // OS: agent does not respond; critical stops
    {ipmi::sensorSpecific, 0x24, 0, 0},           // platform alert
    {ipmi::sensorSpecific, 0x27, 0, 0x0001},      // LAN heartbeat lost
};

Severity severityBetween(std::uint16_t states, std::uint16_t warning, std::uint16_t critical) {
    return (states & critical) != 0  ? Severity::Critical
           : (states & warning) != 0 ? Severity::Warning
                                     : Severity::Nominal;
}

Severity judge(std::uint8_t readingType, std::uint8_t sensorType, std::uint16_t states) {
    for (const Judgement& each : judgements)
        if (each.readingType == readingType && (each.sensorType == 0 || each.sensorType == sensorType))
            return severityBetween(states, each.warning, each.critical);
    return Severity::Unknown;
}

struct Destroy {
    void operator()(ipmi_interpret_ctx_t context) const { ipmi_interpret_ctx_destroy(context); }
};
using Interpreter = std::unique_ptr<ipmi_interpret_ctx, Destroy>;

// It holds tables of all sensor types, so that a thread makes one for all its sensors.
ipmi_interpret_ctx_t interpreter() {
    static thread_local const Interpreter context = [] {
        Interpreter created(ipmi_interpret_ctx_create());
        if (created == nullptr)
            throw std::bad_alloc();
        ipmi_interpret_ctx_set_flags(created.get(), IPMI_INTERPRET_FLAGS_IGNORE_UNRECOGNIZED_EVENTS);
        return created;
    }();
    return context.get();
}

} // namespace

Severity severityOf(std::uint8_t readingType, std::uint8_t sensorType, std::uint16_t states) {
    if (readingType == thresholdReadingType)
        return severityBetween(states, nonCritical, beyond);
    unsigned state = IPMI_INTERPRET_STATE_UNKNOWN;
    if (ipmi_interpret_sensor(interpreter(), readingType, sensorType, states, &state) < 0)
        state = IPMI_INTERPRET_STATE_UNKNOWN;
    switch (state) {
    case IPMI_INTERPRET_STATE_NOMINAL:
        return Severity::Nominal;
    case IPMI_INTERPRET_STATE_WARNING:
        return Severity::Warning;
    case IPMI_INTERPRET_STATE_CRITICAL:
        return Severity::Critical;
    default:
        return judge(readingType, sensorType, states);
    }
}

std::string stateName(std::uint8_t readingType, std::uint8_t sensorType, unsigned offset) {
    if (readingType == thresholdReadingType && offset < thresholdCount)
        return thresholdNames[offset];
    char text[256] = "";
    const int length = readingType == ipmi::sensorSpecific
                           ? ipmi_get_sensor_type_message(sensorType, offset, text, sizeof text)
                           : ipmi_get_generic_event_message(readingType, offset, text, sizeof text);
    if (length <= 0)
        std::snprintf(text, sizeof text, "state %u of event type %02Xh", offset, readingType);
    // Some names tell an older one, too.
    const std::string name = text;
    return name.substr(0, name.find(" (formerly"));
}

std::vector<std::string> stateNames(std::uint8_t readingType, std::uint8_t sensorType, std::uint16_t states) {
    std::vector<std::string> names;
    const unsigned count = readingType == thresholdReadingType ? thresholdCount : stateCount;
    for (unsigned offset = 0; offset < count; ++offset)
        if ((states >> offset & 1) != 0)
            names.push_back(stateName(readingType, sensorType, offset));
    return names;
}

} // namespace view
