// SEL records in words, with FreeIPMI's texts of IPMI 2.0 tables 42-2 and 42-3.
//
// A text depends on the kind of event alone, never on the data that came with it: descriptions are looked up
// in a registry of messages.
#include "platform/event_descriptions.h"
#include "platform/sel_record.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <freeipmi/freeipmi.h>
#include <iterator>

extern "C" {
int FindSensorType(const uint8_t* record, char* text);
int AlertSeverityLevel(const uint8_t* record, char* text);
int SELLog(const uint8_t* record, char* text);
}

namespace {

constexpr std::uint8_t firstOemSensorType = 0xC0; // table 42-3

using Record = const std::uint8_t*;

// The compiler checks the arguments. NOLINTNEXTLINE(cert-dcl50-cpp)
__attribute__((format(printf, 2, 3))) int write(char* text, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, EVENT_TEXT_SIZE, format, arguments);
    va_end(arguments);
    return 0;
}

// Lets `put` write the text of a record, and refuses a caller without one or the other.
int describe(const std::uint8_t* bytes, char* text, int (*put)(Record, char*)) {
    if (text == nullptr)
        return -1;
    text[0] = '\0';
    return bytes != nullptr ? put(bytes, text) : -1;
}

enum class Severity { unspecified, ok, warning, critical, nonRecoverable };

const char* name(Severity severity) {
    switch (severity) {
    case Severity::ok:
        return "Ok";
    case Severity::warning:
        return "Warning";
    case Severity::critical:
        return "Critical";
    case Severity::nonRecoverable:
        return "Non-Recoverable";
    case Severity::unspecified:
        break;
    }
    return "Unspecified";
}

// The seriousness of the state that an event's offset names.
Severity stateSeverity(Record record) {
    using enum Severity;
    // Lower and upper thresholds, each from non-critical to non-recoverable, each going low and going high.
    static constexpr Severity thresholds[] = {warning,        warning,        critical,       critical,
                                              nonRecoverable, nonRecoverable, warning,        warning,
                                              critical,       critical,       nonRecoverable, nonRecoverable};
    // They lead to OK; to each of the three from a less serious state; to the first two of them from a more serious
    // one; to non-recoverable; the last two are monitor and informational.
    static constexpr Severity transitions[] = {ok,       warning,        critical,    nonRecoverable, warning,
                                               critical, nonRecoverable, unspecified, unspecified};
    const auto at = [&](const auto& table) {
        return PH_SelEventOffset(record) < std::size(table) ? table[PH_SelEventOffset(record)] : unspecified;
    };
    switch (PH_SelEventType(record)) {
    case IPMI_EVENT_READING_TYPE_CODE_THRESHOLD:
        return at(thresholds);
    case IPMI_EVENT_READING_TYPE_CODE_TRANSITION_SEVERITY:
        return at(transitions);
    default:
        return unspecified;
    }
}

Severity severityOf(Record record) {
    if (!PH_IsSelSystemEvent(record))
        return Severity::unspecified;
    const Severity severity = stateSeverity(record);
    if (!PH_IsSelDeassertion(record) || severity == Severity::unspecified)
        return severity;
    // The end of a bad state is good; the end of the good state does not tell what followed.
    return severity == Severity::ok ? Severity::unspecified : Severity::ok;
}

int putSensorType(Record record, char* text) {
    if (!PH_IsSelSystemEvent(record))
        return write(text, PH_IsSelOem(record) ? "OEM" : "Unknown");
    if (PH_SelSensorType(record) >= firstOemSensorType)
        return write(text, "OEM (%02Xh)", PH_SelSensorType(record));
    const char* known = ipmi_get_sensor_type_string(PH_SelSensorType(record));
    return known != nullptr ? write(text, "%s", known)
                            : write(text, "Unknown (%02Xh)", PH_SelSensorType(record));
}

int putSystemEvent(Record record, char* text) {
    const std::uint8_t type = PH_SelEventType(record);
    if (IPMI_EVENT_READING_TYPE_CODE_IS_SENSOR_SPECIFIC(type)) {
        if (ipmi_get_sensor_type_message(PH_SelSensorType(record), PH_SelEventOffset(record), text,
                                         EVENT_TEXT_SIZE) > 0)
            return 0;
        return write(text, "%s event: sensor type %02Xh, offset %u",
                     PH_SelSensorType(record) >= firstOemSensorType ? "OEM" : "Unknown",
                     PH_SelSensorType(record), PH_SelEventOffset(record));
    }
    if (ipmi_get_generic_event_message(type, PH_SelEventOffset(record), text, EVENT_TEXT_SIZE) > 0)
        return 0;
    if (IPMI_EVENT_READING_TYPE_CODE_IS_UNSPECIFIED(type))
        return write(text, "Unspecified event");
    return write(text, "%s event: event type %02Xh, offset %u",
                 IPMI_EVENT_READING_TYPE_CODE_IS_OEM(type) ? "OEM" : "Unknown", type,
                 PH_SelEventOffset(record));
}

int putEvent(Record record, char* text) {
    if (PH_IsSelSystemEvent(record))
        return putSystemEvent(record, text);
    if (PH_IsSelOemTimed(record))
        return write(text, "OEM record %02Xh of manufacturer %u", PH_SelRecordType(record),
                     PH_SelManufacturer(record));
    return write(text, "%s record %02Xh", PH_IsSelOem(record) ? "OEM" : "Unknown", PH_SelRecordType(record));
}

} // namespace

int FindSensorType(const uint8_t* record, char* text) {
    return describe(record, text, putSensorType);
}

int AlertSeverityLevel(const uint8_t* record, char* text) {
    return describe(record, text,
                    [](Record event, char* to) { return write(to, "%s", name(severityOf(event))); });
}

int SELLog(const uint8_t* record, char* text) {
    return describe(record, text, putEvent);
}
