// An event of the BMC's log as an alert.
#include "platform/sel_record.h"
#include "provider_helper/alert_delivery.h"
#include "provider_helper/tables.h"
#include "sensors/sensor_sdr.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/dynamic_library.h"
#include "Utility/engine/guard.h"
#include "Utility/values/record_fields.h"

#include <cstdio>
#include <mutex>
#include <strings.h>

void* handle = nullptr;

namespace {

constexpr const char* descriptionLibrary = "/usr/local/lib/libEventLogDes.so";
constexpr int otherFormat = 1; // DMTF AlertingElementFormat
constexpr int deviceAlert = 5; // DMTF AlertType

// Events of other types have no severity of their own.
bool hasSeverity(const std::uint8_t* record) {
    const int eventType = PH_SelEventType(record);
    return eventType == 0x01 || eventType == 0x07;
}

bool hasNumber(const char* elementName, int number) {
    const char* const bracket = std::strchr(elementName, '(');
    int found = 0;
    return bracket != nullptr && std::sscanf(bracket, "(%d", &found) == 1 && found == number;
}

// The rows of a class's sensors that may have the event's number; all, where the platform does not search.
template <class Sdr>
struct SensorsOfEvent {
    int (*find)(SMASH_DB_HANDLE, int sensorNumber, Sdr**, int*); // nullptr where it does not
    typename ph::Rows<Sdr>::Getter getAll;

    bool read(SMASH_DB_HANDLE database, int sensorNumber, ph::Rows<Sdr>& rows) const {
        return find == nullptr ? rows.read(database, getAll)
                               : rows.read(database, [&](SMASH_DB_HANDLE opened, Sdr** found, int* count) {
                                     return find(opened, sensorNumber, found, count);
                                 });
    }
};

// Names the first of a class's sensors that has the event's number. The rows say enough: an alert waits for
// no reading, and is delivered while the BMC does not answer. False when they cannot be read.
template <class Sdr>
bool nameSensor(SMASH_DB_HANDLE database, const SensorsOfEvent<Sdr>& sensors, const std::uint8_t* record,
                AlertRecord& alert) {
    ph::Rows<Sdr> sdrs;
    if (!sensors.read(database, PH_SelSensorNumber(record), sdrs))
        return false;
    for (const Sdr& sdr : sdrs.all()) {
        const CompactSdr& sensor = ph::commonOf(sdr);
        char elementName[sizeof(SensorRecord::ElementName)];
        ph::formatIdentity(elementName, sensor.name, sensor);
        if (!hasNumber(elementName, PH_SelSensorNumber(record)))
            continue;
        std::snprintf(alert.AlertingManagedElement, sizeof(alert.AlertingManagedElement), "%d:%d",
                      PH_SelSensorType(record), PH_SelSensorNumber(record));
        ph::copyText(alert.MessageArguments[0], elementName);
        break;
    }
    return true;
}

int messageId(SMASH_DB_HANDLE database, const char* description) {
    const bool isMissing = description == nullptr || *description == '\0';
    std::int32_t id = -1;
    return db_get_MessageID(database, isMissing ? "Unknown" : description, &id) == 0 ? id : -1;
}

void closeDescriptions() {
    ph::closeLibrary(handle);
    handle = nullptr;
}

int describe(const char* entry, const std::uint8_t* record, char* text) {
    text[0] = '\0';
    const auto function = handle != nullptr ? reinterpret_cast<EventText>(dlsym(handle, entry)) : nullptr;
    if (function == nullptr) {
        closeDescriptions();
        return -1;
    }
    if (function(record, text) != 0)
        text[0] = '\0';
    return 0;
}

struct EventTexts {
    char sensorType[EVENT_TEXT_SIZE] = "";
    char severity[EVENT_TEXT_SIZE] = "";
    char description[EVENT_TEXT_SIZE] = "";
};

// A missing text ends the queries: the library is then none that can describe events.
void describeEvent(const std::uint8_t* record, EventTexts& texts) {
    handle = ph::openLibrary(descriptionLibrary);
    if (get_sensor_type(record, texts.sensorType) == 0 &&
        (!hasSeverity(record) || get_alert_severity_level(record, texts.severity) == 0))
        get_description(record, texts.description);
    closeDescriptions();
}

void setSeverity(AlertRecord& alert, const char* text) {
    for (const PHEventSeverity& row : EveSeverity)
        if (strncasecmp(row.name, text, sizeof(alert.PerceivedSeverity)) == 0) {
            std::snprintf(alert.PerceivedSeverity, sizeof(alert.PerceivedSeverity), "%d (%.48s)",
                          static_cast<int>(row.severity), text);
            return;
        }
}

} // namespace

int get_sensor_type(const uint8_t* record, char* text) {
    return describe("FindSensorType", record, text);
}

int get_alert_severity_level(const uint8_t* record, char* text) {
    return describe("AlertSeverityLevel", record, text);
}

int get_description(const uint8_t* record, char* text) {
    return describe("SELLog", record, text);
}

int get_message_id(const char* description) {
    return ph::guarded(-1, [&] {
        ph::Database database;
        return database.open() ? messageId(database.get(), description) : -1;
    });
}

// The thread that watches the log for subscribers and the monitor take turns at the description library.
int SelToAlert(const SelEventMessage* message, AlertRecord* alert, int destination, int channel) {
    static std::mutex turn;
    const std::lock_guard lock(turn);
    const std::uint8_t* const record = message->record;
    alert->EventTime = PH_SelTime(record);
    alert->argumentCount = ALERT_ARGUMENTS;
    ph::Database database;
    // A number that sensors of both kinds have means the numeric one.
    if (!database.open() ||
        !nameSensor<CompactSdr>(database.get(), {db_get_compact_sdrs_of_event, db_get_all_compact_sdrs},
                                record, *alert) ||
        !nameSensor<FullSdr>(database.get(), {db_get_full_sdrs_of_event, db_get_all_full_sdrs}, record,
                             *alert))
        return -1;
    std::snprintf(alert->EventID, sizeof(alert->EventID), "%02x", PH_SelRecordId(record));
    auto& arguments = alert->MessageArguments;
    std::snprintf(arguments[1], sizeof(arguments[1]), "%d", channel);
    std::snprintf(arguments[2], sizeof(arguments[2]), "%d", destination);
    ph::copyText(arguments[3], PH_IsSelDeassertion(record) ? "Deasserted" : "Asserted");
    EventTexts texts;
    describeEvent(record, texts);
    ph::copyText(arguments[4], texts.sensorType);
    setSeverity(*alert, texts.severity);
    ph::copyText(alert->Description, texts.description);
    std::snprintf(alert->MessageID, sizeof(alert->MessageID), "%d",
                  messageId(database.get(), texts.description));
    alert->AlertingElementFormat = otherFormat;
    alert->AlertType = deviceAlert;
    ph::copyText(alert->OwningEntity, "TRZ");
    return 0;
}
