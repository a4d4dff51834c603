// Messages of the event pipe, with sensors and event texts that are as odd: the input is a message, a
// sensor's name, and the text that describes the event.
#include "target.h"

#include "provider_helper/alert_delivery.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

template <std::size_t N>
bool isEnded(const char (&text)[N]) {
    return std::memchr(text, '\0', N) != nullptr;
}

CompactSdr sensor;
int openHandles = 0;

} // namespace

// In place of the database's.
#pragma GCC visibility push(default)
extern "C" {
int db_init(SMASH_DB_HANDLE*) {
    ++openHandles;
    return 0;
}
int db_close(SMASH_DB_HANDLE) {
    --openHandles;
    return 0;
}
int db_get_compact_sdrs_of_event(SMASH_DB_HANDLE, int, CompactSdr** rows, int* count) {
    *count = 1;
    *rows = static_cast<CompactSdr*>(std::malloc(sizeof sensor));
    if (*rows != nullptr)
        **rows = sensor;
    return *rows != nullptr ? 0 : 1;
}
int db_get_full_sdrs_of_event(SMASH_DB_HANDLE, int, FullSdr** rows, int* count) {
    *count = 0;
    *rows = nullptr;
    return 0;
}
int db_get_MessageID(SMASH_DB_HANDLE, const char* text, int32_t* messageId) {
    *messageId = static_cast<int32_t>(std::strlen(text));
    return 0;
}
}
#pragma GCC visibility pop

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    SelEventMessage message{};
    const std::size_t head = std::min(size, sizeof message);
    std::copy_n(data, head, reinterpret_cast<std::uint8_t*>(&message));
    data += head;
    size -= head;

    sensor = {};
    sensor.sensorNumber = message.record[11];
    std::copy_n(data, std::min(size, sizeof sensor.name - 1), sensor.name);

    AlertRecord alert{};
    require(SelToAlert(&message, &alert, message.destination, message.channel) == 0, "sensors can be read");
    require(isEnded(alert.Description) && isEnded(alert.EventID) && isEnded(alert.AlertingManagedElement) &&
                isEnded(alert.PerceivedSeverity) && isEnded(alert.OwningEntity) && isEnded(alert.MessageID),
            "texts end");
    for (const auto& argument : alert.MessageArguments)
        require(isEnded(argument), "arguments end");
    char body[4096] = "";
    for (const char* value :
         {alert.EventID, alert.MessageArguments[0], alert.Description, alert.PerceivedSeverity})
        AddPropertyValToBuffer(body, "Name", value);
    require(std::strlen(body) < sizeof body, "a mail's body fits");
    require(openHandles == 0, "nothing stays open");
    return 0;
}
