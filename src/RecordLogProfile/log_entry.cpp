// CIM_LogEntry: one instance for each record of the BMC's system event log.
#include "provider_helper/record_log.h"

#include "provider_helper/tables.h"
#include "RecordLogProfile/log_time.h"
#include "RecordLogProfile/record_log_id.h"
#include "Utility/back_ends.h"
#include "Utility/class_family.h"
#include "Utility/record_fields.h"

#include <atomic>
#include <charconv>
#include <cstdio>
#include <optional>

constexpr const char* const g_LogEntryKeyList[1] = {"InstanceID"};
std::uint16_t SELCount = 0;

namespace {

using Record = LogEntryRecord;
using ph::Property;

constexpr std::uint16_t mostDetailed =
    1000; // records of a log whose entries have RecordFormat and RecordData

std::atomic_ref<std::uint16_t> selCount() {
    return std::atomic_ref(SELCount); // several threads may enumerate
}

bool isDetailed(const Record&) {
    return selCount() <= mostDetailed;
}

constexpr Property properties[] = {
    PH_KEY(Record, InstanceID),
    PH_PROPERTY(Record, LogInstanceID),
    PH_PROPERTY(Record, LogName),
    PH_PROPERTY(Record, RecordID),
    PH_DATETIME(Record, CreationTimeStamp),
    PH_PROPERTY_IF(Record, RecordFormat, isDetailed),
    PH_PROPERTY_IF(Record, RecordData, isDetailed),
    PH_PROPERTY(Record, ElementName),
};

// The 16 bytes of a SEL record.
class SelRecord {
public:
    explicit SelRecord(const std::uint8_t* bytes) : bytes_(bytes) {}

    unsigned operator[](std::size_t i) const { return bytes_[i]; }
    unsigned id() const { return bytes_[0] | unsigned{bytes_[1]} << 8; }
    unsigned type() const { return bytes_[2]; }
    std::uint32_t time() const {
        return bytes_[3] | std::uint32_t{bytes_[4]} << 8 | std::uint32_t{bytes_[5]} << 16 |
               std::uint32_t{bytes_[6]} << 24;
    }
    bool isSystemEvent() const { return type() == 0x02; }
    bool isOemTimestamped() const { return type() >= 0xC0 && type() <= 0xDF; }
    bool isAssertion() const { return (bytes_[12] & 0x80) == 0; }

private:
    const std::uint8_t* bytes_;
};

const char* formatOf(const SelRecord& sel) {
    return RecordFormat[sel.isSystemEvent() ? 0 : sel.isOemTimestamped() ? 1 : 2];
}

// Clients parse this text as it has always been, with the generator's first byte twice, the record type again
// where the format has the sensor type, and a blank where it has a '*'.
template <std::size_t N>
void writeEventData(char (&text)[N], const SelRecord& sel) {
    std::snprintf(text, N, "*%d.%d.%d*%d %d*%u*%d%d*%d*%d*%d*%s*%d*%d*%d*%d*", sel[11], sel[8], sel[7],
                  sel.id(), sel.type(), sel.time(), sel[7], sel[7], sel[9], sel.type(), sel[11],
                  sel.isAssertion() ? "true" : "false", sel[12], sel[13], sel[14], sel[15]);
}

template <std::size_t N>
void writeKey(char (&key)[N], const SelRecord& sel) {
    std::snprintf(key, N, "%u", sel.id());
}

int fill(const SelRecord& sel, Record& entry, const char* logInstanceId, const ph::LogTime& time) {
    writeKey(entry.InstanceID, sel);
    ph::copyText(entry.LogInstanceID, logInstanceId);
    ph::copyText(entry.LogName, ph::logName);
    writeKey(entry.RecordID, sel);
    entry.RecordFormat = formatOf(sel);
    entry.RecordData[0] = '\0';
    if (sel.isSystemEvent())
        writeEventData(entry.RecordData, sel);
    std::snprintf(entry.ElementName, sizeof(entry.ElementName), "nBMC - Log %u", sel.id());
    return time.write(sel.time(), entry.CreationTimeStamp) ? 0 : -1;
}

// What all entries of an enumeration share.
struct Log {
    char instanceId[sizeof(Record::LogInstanceID)];
    ph::LogTime time;

    bool open() { return ph::writeLogInstanceId(instanceId, sizeof(instanceId)); }
};

int stream(const std::function<bool(const Record&)>& take, ph::Detail detail) {
    std::uint16_t count = 0;
    CIM_SELEntry* entries = nullptr;
    {
        ph::IpmiSession session;
        if (!session.open() || GetSELEntries(session.get(), &count, &entries) != 0)
            return -1;
    }
    const ph::HeapPtr<CIM_SELEntry> owner(entries);
    selCount() = count;
    Log log;
    if (detail == ph::Detail::All && count > 0 && !log.open())
        return -1;
    Record entry{};
    for (const CIM_SELEntry& read : std::span(entries, count)) {
        const SelRecord sel(read.record);
        if (detail == ph::Detail::Names)
            writeKey(entry.InstanceID, sel);
        else if (fill(sel, entry, log.instanceId, log.time) != 0)
            return -1;
        if (!take(entry))
            return -1;
    }
    return 0;
}

std::optional<std::uint16_t> recordIdOf(const char* text) {
    std::uint16_t id = 0;
    const char* const end = text + std::strlen(text);
    const auto [stop, error] = std::from_chars(text, end, id);
    return error == std::errc() && stop == end ? std::optional(id) : std::nullopt;
}

// The BMC takes two IDs for the first and the last record: then the one it gives has another key.
int get(ph::RecordArray<Record>& entries, CMPIString** keyValues) {
    const char* const key = CMGetCharsPtr(keyValues[0], nullptr);
    const auto id = key != nullptr ? recordIdOf(key) : std::nullopt;
    std::uint8_t* bytes = nullptr;
    ph::IpmiSession session;
    if (!id || !session.open() || GetLogEntryData(session.get(), *id, &bytes) != 0)
        return -1;
    const ph::HeapPtr<std::uint8_t> owner(bytes);
    Log log;
    Record* entry = entries.append();
    return entry != nullptr && log.open() ? fill(SelRecord(bytes), *entry, log.instanceId, log.time) : -1;
}

constexpr ph::ClassDefinition<Record> definition{.name = "CIM_LogEntry",
                                                 .superclass = "CIM_RecordForLog",
                                                 .keys = g_LogEntryKeyList,
                                                 .properties = properties,
                                                 .stream = stream,
                                                 .get = get};

} // namespace

int PH_Fill_LogEntry(const std::uint8_t* selRecord, Record* record, const char* logInstanceId) {
    return fill(SelRecord(selRecord), *record, logInstanceId, ph::LogTime());
}

PH_EXPORT_CLASS_FAMILY(LogEntry, Record, definition)
