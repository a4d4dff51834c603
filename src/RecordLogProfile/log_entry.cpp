// CIM_LogEntry: one instance for each record of the BMC's system event log.
#include "provider_helper/record_log.h"

#include "platform/sel_record.h"
#include "provider_helper/tables.h"
#include "RecordLogProfile/log_time.h"
#include "RecordLogProfile/record_log_id.h"
#include "Utility/back-ends/back_ends.h"
#include "Utility/engine/class_family.h"
#include "Utility/values/record_fields.h"
#include "Utility/values/text_writer.h"

#include <atomic>
#include <charconv>
#include <optional>

constexpr const char* const g_LogEntryKeyList[1] = {"InstanceID"};
std::uint16_t SELCount = 0;

namespace ph::log_entry {
namespace {

using Record = LogEntryRecord;

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

const char* formatOf(const std::uint8_t* sel) {
    return RecordFormat[PH_IsSelSystemEvent(sel) ? 0 : PH_IsSelOemTimed(sel) ? 1 : 2];
}

// Clients parse this text as it has always been, with the generator's first byte twice, the record type again
// where the format has the sensor type, and a blank where it has a '*'.
template <std::size_t N>
void writeEventData(char (&text)[N], const std::uint8_t* sel) {
    TextWriter writer(text);
    writer.text("*").number(sel[11]).text(".").number(sel[8]).text(".").number(sel[7]);
    writer.text("*").number(PH_SelRecordId(sel)).text(" ").number(PH_SelRecordType(sel));
    writer.text("*").number(PH_SelTime(sel)).text("*").number(sel[7]).number(sel[7]);
    writer.text("*").number(sel[9]).text("*").number(PH_SelRecordType(sel)).text("*").number(sel[11]);
    writer.text(PH_IsSelDeassertion(sel) ? "*false*" : "*true*").number(sel[12]);
    writer.text("*").number(sel[13]).text("*").number(sel[14]).text("*").number(sel[15]).text("*");
}

template <std::size_t N>
void writeKey(char (&key)[N], const std::uint8_t* sel) {
    TextWriter(key).number(PH_SelRecordId(sel));
}

int fill(const std::uint8_t* sel, Record& entry, const char* logInstanceId, const LogTime& time) {
    writeKey(entry.InstanceID, sel);
    copyText(entry.LogInstanceID, logInstanceId);
    copyText(entry.LogName, logName);
    writeKey(entry.RecordID, sel);
    entry.RecordFormat = formatOf(sel);
    entry.RecordData[0] = '\0';
    if (PH_IsSelSystemEvent(sel))
        writeEventData(entry.RecordData, sel);
    TextWriter(entry.ElementName).text("nBMC - Log ").number(PH_SelRecordId(sel));
    return time.write(PH_SelTime(sel), entry.CreationTimeStamp) ? 0 : -1;
}

// What all entries of an enumeration share.
struct Log {
    char instanceId[sizeof(Record::LogInstanceID)];
    LogTime time;

    bool open() { return writeLogInstanceId(instanceId, sizeof(instanceId)); }
};

int stream(const std::function<bool(const Record&)>& take, Detail detail) {
    std::uint16_t count = 0;
    CIM_SELEntry* entries = nullptr;
    {
        IpmiSession session;
        if (!session.open() || GetSELEntries(session.get(), &count, &entries) != 0)
            return -1;
    }
    const HeapPtr<CIM_SELEntry> owner(entries);
    selCount() = count;
    Log log;
    if (detail == Detail::All && count > 0 && !log.open())
        return -1;
    Record entry{};
    for (const CIM_SELEntry& read : std::span(entries, count)) {
        const std::uint8_t* const sel = read.record;
        if (detail == Detail::Names)
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

// The IDs 0000h and FFFFh ask the BMC for its first and last record, which has another key then.
int get(RecordArray<Record>& entries, CMPIString** keyValues) {
    const char* const key = CMGetCharsPtr(keyValues[0], nullptr);
    const auto id = key != nullptr ? recordIdOf(key) : std::nullopt;
    std::uint8_t* bytes = nullptr;
    IpmiSession session;
    if (!id || !session.open() || GetLogEntryData(session.get(), *id, &bytes) != 0)
        return -1;
    const HeapPtr<std::uint8_t> owner(bytes);
    Log log;
    Record* entry = entries.append();
    return entry != nullptr && log.open() ? fill(bytes, *entry, log.instanceId, log.time) : -1;
}

constexpr ClassDefinition<Record> definition{.name = "CIM_LogEntry",
                                             .superclass = "CIM_RecordForLog",
                                             .source = "Get SEL Entry",
                                             .keys = g_LogEntryKeyList,
                                             .properties = properties,
                                             .stream = stream,
                                             .get = get};

} // namespace
} // namespace ph::log_entry

int PH_Fill_LogEntry(const std::uint8_t* selRecord, LogEntryRecord* record, const char* logInstanceId) {
    return ph::log_entry::fill(selRecord, *record, logInstanceId, ph::LogTime());
}

PH_EXPORT_CLASS_FAMILY(LogEntry, LogEntryRecord, ph::log_entry::definition)
