// SEL records as the BMC has them.
#include "provider_helper/record_log.h"

#include "Utility/back-ends/back_ends.h"
#include "Utility/back-ends/debug_log.h"

#include <cstring>

namespace {

constexpr char source[] = "RecordLogProfile/LogEntry"; // as the debug log has always called it

} // namespace

int GetSELEntries(IPMI20_SESSION_T* session, std::uint16_t* count, CIM_SELEntry** records) {
    PH_LOG_FROM(source, "Entering GetSELEntriesFromIPMI");
    if (session == nullptr || count == nullptr || records == nullptr) {
        PH_LOG_FROM(source, "%s - Invalid input arguments \n", __func__);
        return -1;
    }
    *count = 0;
    *records = nullptr;
    std::uint16_t room = 0;
    if (CIM_GetMaxPossibleSELEntries(session, &room, ph::hookTimeout) != 0) {
        PH_LOG_FROM(source, "%s - GetNumOfSELEntries failed", __func__);
        return -1;
    }
    if (room == 0)
        return 0;
    ph::HeapPtr<CIM_SELEntry> entries(static_cast<CIM_SELEntry*>(std::calloc(room, sizeof(CIM_SELEntry))));
    std::uint16_t found = room;
    if (entries == nullptr || CIM_GetSELRecords(session, entries.get(), &found, ph::hookTimeout) != 0 ||
        found > room)
        return -1;
    if (found == 0)
        return 0;
    *count = found;
    *records = entries.release();
    return 0;
}

int GetLogEntryData(IPMI20_SESSION_T* session, std::uint16_t recordId, std::uint8_t** record) {
    if (session == nullptr || record == nullptr)
        return -1;
    const CIM_SELEntryRequest request{
        .reservationId = {},
        .recordId = {static_cast<std::uint8_t>(recordId), static_cast<std::uint8_t>(recordId >> 8)},
        .offset = 0,
        .size = 0xFF};
    CIM_SELEntryAnswer answer{};
    *record = nullptr;
    if (CIM_GetSELEntry(session, &request, &answer, ph::hookTimeout) != 0 || answer.completionCode != 0)
        return -1;
    *record = static_cast<std::uint8_t*>(std::malloc(CIM_SEL_RECORD_SIZE));
    if (*record == nullptr)
        return -1;
    std::memcpy(*record, answer.entry.record, CIM_SEL_RECORD_SIZE);
    return 0;
}
