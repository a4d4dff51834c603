// Sensors, as the database lists them, and the event log.
#include "check_platform/probe.h"
#include "check_platform/rows.h"
#include "check_platform/table_check.h"

#include <cstdlib>
#include <map>
#include <memory>
#include <platform/sel_record.h>
#include <set>

namespace phctl::check {
namespace {

constexpr std::uint8_t bmcAddress = 0x20;
constexpr std::uint16_t noRecord = 0xFFFF;

// Names by the numbers of the sensors that the reading command reaches.
template <class Row>
void addSensors(Probe& probe, const char* getter, std::map<std::uint8_t, std::string>& sensors) {
    Row* rows = nullptr;
    int count = 0;
    probe.use<int(SMASH_DB_HANDLE, Row**, int*)>(getter, probe.database(), &rows, &count);
    const std::unique_ptr<Row, decltype(&std::free)> owner(rows, std::free);
    for (int i = 0; i < count; ++i) {
        const CompactSdr& sdr = commonOf(rows[i]);
        if (sdr.ownerId == bmcAddress && sdr.ownerLun == 0)
            sensors.emplace(sdr.sensorNumber, std::string(sdr.name, strnlen(sdr.name, sizeof sdr.name)));
    }
}

std::map<std::uint8_t, std::string> sensorsOf(Probe& probe) {
    std::map<std::uint8_t, std::string> sensors;
    addSensors<FullSdr>(probe, "db_get_all_full_sdrs", sensors);
    addSensors<CompactSdr>(probe, "db_get_all_compact_sdrs", sensors);
    if (sensors.empty())
        throw NotPossible("the database has no sensor of the BMC");
    return sensors;
}

void getSensorReading(Probe& probe) {
    for (const auto& [number, name] : sensorsOf(probe)) {
        Out<CIM_SensorReading> answer("the answer");
        if (auto call =
                probe.call<decltype(CIM_GetSensorReading)>("sensor " + std::to_string(number) + ' ' + name,
                                                           probe.session(), number, answer, probe.timeout()))
            if (answer->completionCode != 0) {
                char code[32];
                std::snprintf(code, sizeof code, "completion code %02Xh", answer->completionCode);
                call.remark(code);
            }
    }
}

void readSensorsAhead(Probe& probe) {
    std::vector<std::uint8_t> numbers;
    for (const auto& [number, name] : sensorsOf(probe))
        numbers.push_back(number);
    auto call = probe.call<decltype(CIM_ReadSensorsAhead)>("all sensors", probe.session(), numbers.data(),
                                                           static_cast<int>(numbers.size()), probe.timeout());
    if (!call)
        return;
    call.enter("reading them");
    for (const std::uint8_t number : numbers) {
        CIM_SensorReading answer{};
        probe.use<decltype(CIM_GetSensorReading)>("CIM_GetSensorReading", probe.session(), number, &answer,
                                                  probe.timeout());
    }
}

// ---- The event log

std::uint16_t little(const std::uint8_t* bytes) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

void countRecords(Probe& probe) {
    Out<std::uint16_t> count("the count");
    probe.call<decltype(CIM_GetNumOfSELEntries)>("", probe.session(), count, probe.timeout());
}

void countRoom(Probe& probe) {
    Out<std::uint16_t> count("the count");
    probe.call<decltype(CIM_GetMaxPossibleSELEntries)>("", probe.session(), count, probe.timeout());
}

void getInfo(Probe& probe) {
    Out<CIM_SELInfo> info("the information");
    probe.call<decltype(CIM_GetSELInfo)>("", probe.session(), info, probe.timeout());
}

void getPolicy(Probe& probe) {
    Out<std::uint8_t> policy("the policy");
    if (auto call = probe.call<decltype(CIM_GetSELPolicy)>("", probe.session(), policy, probe.timeout()))
        call.expect(*policy <= 1, "the policy is neither 0 nor 1");
}

// The chain that the records make.
void checkChain(Call& call, const CIM_SELEntry* entries, std::uint16_t count) {
    std::set<std::uint16_t> ids;
    for (std::uint16_t i = 0; i < count; ++i) {
        const std::uint16_t id = PH_SelRecordId(entries[i].record);
        call.expect(id != 0 && id != noRecord, "a record has an ID that is none");
        call.expect(ids.insert(id).second, "two records have the same ID");
        if (i + 1 < count)
            call.expect(little(entries[i].nextRecordId) == PH_SelRecordId(entries[i + 1].record),
                        "a record does not name the one behind it");
    }
}

void getRecords(Probe& probe) {
    constexpr std::uint16_t room = 16; // that come while the log is read
    constexpr int mostSeconds = 600;
    std::uint16_t count = 0;
    probe.use<decltype(CIM_GetNumOfSELEntries)>("CIM_GetNumOfSELEntries", probe.session(), &count,
                                                probe.timeout());
    Out<std::uint16_t> read("the count", static_cast<std::uint16_t>(count + room));
    OutArray<CIM_SELEntry> entries("the entries", static_cast<std::size_t>(count) + room);
    probe.allow(mostSeconds); // the time-out is that of a record
    auto call = probe.call<decltype(CIM_GetSELRecords)>("the whole log", probe.session(), entries, read,
                                                        probe.timeout());
    if (!call)
        return;
    call.expect(*read <= count + room, "it says that it has written more than there is room for");
    if (*read <= count + room)
        checkChain(call, entries, *read);
}

void getRecord(Probe& probe) {
    std::uint16_t count = 0;
    probe.use<decltype(CIM_GetNumOfSELEntries)>("CIM_GetNumOfSELEntries", probe.session(), &count,
                                                probe.timeout());
    if (count == 0)
        throw NotPossible("the log is empty");
    for (const auto& [words, id] :
         {std::pair<const char*, std::uint8_t>{"the first record", 0x00}, {"the last record", 0xFF}}) {
        const CIM_SELEntryRequest request{{0, 0}, {id, id}, 0, 0xFF};
        Out<CIM_SELEntryAnswer> answer("the answer");
        if (auto call = probe.call<decltype(CIM_GetSELEntry)>(words, probe.session(), &request, answer,
                                                              probe.timeout())) {
            call.expect(answer->completionCode == 0, "it succeeds with a completion code");
            call.expect(id == 0 || little(answer->entry.nextRecordId) == noRecord,
                        "there is a record behind the last");
        }
    }
}

void getTime(Probe& probe) {
    Out<std::uint32_t> seconds("the time");
    probe.call<decltype(CIM_GetSELTime)>("", probe.session(), seconds, probe.timeout());
}

bool isOffset(std::int16_t minutes) {
    return minutes == CIM_SEL_UTC_OFFSET_NONE ||
           (minutes >= -CIM_SEL_UTC_OFFSET_MOST && minutes <= CIM_SEL_UTC_OFFSET_MOST);
}

void getOffset(Probe& probe) {
    Out<std::int16_t> minutes("the offset");
    if (auto call =
            probe.call<decltype(CIM_GetSELTimeUTCOffset)>("", probe.session(), minutes, probe.timeout()))
        call.expect(isOffset(*minutes), "the offset is beyond a day");
}

void setOffset(Probe& probe) {
    std::int16_t before = CIM_SEL_UTC_OFFSET_NONE;
    const auto read = [&](std::int16_t& minutes) {
        probe.use<decltype(CIM_GetSELTimeUTCOffset)>("CIM_GetSELTimeUTCOffset", probe.session(), &minutes,
                                                     probe.timeout());
    };
    read(before);
    const auto other = static_cast<std::int16_t>(before == 60 ? 0 : 60);
    for (const auto& [words, minutes] : {std::pair{"another offset", other}, {"as before", before}})
        if (auto call = probe.call<decltype(CIM_SetSELTimeUTCOffset)>(words, probe.session(), minutes,
                                                                      probe.timeout())) {
            std::int16_t after = 0;
            read(after);
            call.expect(after == minutes, "what it writes is not read");
        }
}

constexpr Row sensors[] = {{"CIM_GetSensorReading", getSensorReading},
                           {"CIM_ReadSensorsAhead", readSensorsAhead, false,
                            "without it, each sensor is read when it is asked for"}};
} // namespace

std::span<const Row> sensorRows() {
    return sensors;
}

std::span<const Row> logRows() {
    static constexpr Row rows[] = {
        {"CIM_GetNumOfSELEntries", countRecords},
        {"CIM_GetMaxPossibleSELEntries", countRoom},
        {"CIM_GetSELInfo", getInfo, false, "without it, the last record tells of changes"},
        {"CIM_GetSELRecords", getRecords},
        {"CIM_GetSELEntry", getRecord},
        {"CIM_GetSELPolicy", getPolicy},
        {"CIM_ClearSEL", nullptr, true, "it erases the log"},
        {"CIM_GetSELTime", getTime},
        {"CIM_SetSELTime", nullptr, true, "it moves the clock that records are stamped with"},
        {"CIM_GetSELTimeUTCOffset", getOffset},
        {"CIM_SetSELTimeUTCOffset", setOffset, true},
    };
    return rows;
}

} // namespace phctl::check
