#include "sel_follower.h"

#include "provider_helper/utility.h"

#include <cstring>
#include <platform/sel_record.h>

namespace {

constexpr int timeout = 30; // seconds, of a call
constexpr std::uint16_t firstRecord = 0x0000;
constexpr std::uint16_t lastRecord = 0xFFFF; // as the ID of the next record: there is none
constexpr std::uint8_t wholeRecord = 0xFF;

// Completion codes by which BMCs say that a record is not there: it is not present, or its ID is out of range or
// invalid, as in an empty log. Any other is of the moment, such as C0h (node busy) or 81h (an erasure is in progress).
bool saysMissing(std::uint8_t completionCode) {
    return completionCode == 0xCB || completionCode == 0xC9 || completionCode == 0xCC;
}

std::uint16_t nextOf(const CIM_SELEntry& entry) {
    return static_cast<std::uint16_t>(entry.nextRecordId[0] | entry.nextRecordId[1] << 8);
}

bool isSame(const std::uint8_t (&left)[CIM_SEL_RECORD_SIZE],
            const std::uint8_t (&right)[CIM_SEL_RECORD_SIZE]) {
    return std::memcmp(left, right, sizeof(left)) == 0;
}

// Tells whether a record is not newer than another one that was taken.
bool isOld(const std::uint8_t (&record)[CIM_SEL_RECORD_SIZE],
           const std::uint8_t (&taken)[CIM_SEL_RECORD_SIZE]) {
    const std::uint32_t time = PH_SelTime(record);
    const std::uint32_t lastTime = PH_SelTime(taken);
    return time < lastTime || (time == lastTime && PH_SelRecordId(record) <= PH_SelRecordId(taken));
}

} // namespace

SelFollower::~SelFollower() {
    close();
}

bool SelFollower::open() {
    isOpen_ = isOpen_ || CreateIPMISession(&session_) == 0;
    return isOpen_;
}

void SelFollower::close() {
    if (isOpen_)
        CloseIPMISession(&session_);
    isOpen_ = false;
    isSettled_ = false;
}

void SelFollower::forget() {
    position_.reset();
    isLoaded_ = true;
    isSettled_ = false;
    forgetSelPosition();
}

// Returns false when the BMC has no such record. Throws Lost where it does not tell.
bool SelFollower::read(std::uint16_t recordId, CIM_SELEntry& entry) {
    const CIM_SELEntryRequest request{
        .reservationId = {},
        .recordId = {static_cast<std::uint8_t>(recordId & 0xFF), static_cast<std::uint8_t>(recordId >> 8)},
        .offset = 0,
        .size = wholeRecord};
    CIM_SELEntryAnswer answer{};
    const int result = CIM_GetSELEntry(&session_, &request, &answer, timeout);
    if (result != 0 && !saysMissing(answer.completionCode))
        throw Lost();
    entry = answer.entry;
    const std::uint16_t id = PH_SelRecordId(entry.record);
    if (result == 0 && (id == firstRecord || id == lastRecord))
        throw Lost(); // no record has these IDs
    return result == 0;
}

// Without the hook, everything may have changed at any time.
CIM_SELInfo SelFollower::info() {
    CIM_SELInfo info{};
    if (CIM_GetSELInfo != nullptr && CIM_GetSELInfo(&session_, &info, timeout) != 0)
        throw Lost();
    return info;
}

void SelFollower::begin(const CIM_SELInfo& info) {
    SelPosition position{.lastErasure = info.lastErasure, .isEmpty = 1, .first = {}, .last = {}};
    CIM_SELEntry entry{};
    if (read(lastRecord, entry)) {
        std::memcpy(position.last, entry.record, sizeof(position.last));
        position.isEmpty = read(firstRecord, entry) ? 0 : 1;
        std::memcpy(position.first, entry.record, sizeof(position.first));
    }
    position_ = position;
    saveSelPosition(position);
}

// Finds what follows the last record that was taken. When that is not there any more, it was overwritten or
// cleared together with all before it, or it alone was deleted and the log begins as before.
SelFollower::Next SelFollower::findNext(const CIM_SELInfo& info) {
    CIM_SELEntry entry{};
    if (position_->isEmpty == 0 && read(PH_SelRecordId(position_->last), entry) &&
        isSame(entry.record, position_->last))
        return {nextOf(entry), false};
    if (!read(firstRecord, entry)) {
        if (info.entries != 0)
            throw Lost(); // it contradicts itself
        return {lastRecord, false};
    }
    const bool isDeletion = position_->isEmpty == 0 && isSame(entry.record, position_->first) &&
                            info.lastErasure != position_->lastErasure;
    return {firstRecord, isDeletion};
}

bool SelFollower::takeNew(const CIM_SELInfo& info, const Take& take) {
    // More run in a circle, or came meanwhile and wait for the next call.
    const int mostRecords = CIM_GetSELInfo != nullptr ? info.entries : 0xFFFE;
    const SelPosition before = *position_;
    bool hasTaken = false;
    Next next = findNext(info);
    for (int count = 0; next.id != lastRecord && count < mostRecords; ++count) {
        CIM_SELEntry entry{};
        if (!read(next.id, entry)) {
            hasTaken = true; // deleted meanwhile; the next call finds its way
            break;
        }
        next.id = nextOf(entry);
        const bool isNew = !next.mayBeOld || !isOld(entry.record, before.last);
        if (isNew)
            take(entry.record);
        hasTaken = hasTaken || isNew;
        std::memcpy(position_->last, entry.record, sizeof(position_->last));
        position_->isEmpty = 0;
        if (isNew)
            saveSelPosition(*position_);
    }
    CIM_SELEntry first{};
    position_->lastErasure = info.lastErasure;
    position_->isEmpty = read(firstRecord, first) ? 0 : 1;
    std::memcpy(position_->first, first.record, sizeof(position_->first));
    if (before != *position_)
        saveSelPosition(*position_);
    const bool isWhole = CIM_GetSELInfo == nullptr || (info.entries == 0) == (position_->isEmpty != 0);
    return hasTaken || !isWhole;
}

void SelFollower::poll(const Take& take) {
    if (!open())
        return;
    try {
        const CIM_SELInfo now = info();
        if (!isLoaded_)
            position_ = loadSelPosition();
        isLoaded_ = true;
        if (!position_)
            return begin(now);
        // In a full log, another record of the same second does not show: wait for a quiet turn.
        const bool isQuiet = CIM_GetSELInfo != nullptr && std::memcmp(&now, &seen_, sizeof(now)) == 0;
        if (isQuiet && isSettled_)
            return;
        seen_ = now;
        isSettled_ = !takeNew(now, take) && isQuiet;
    } catch (const Lost&) {
        close();
    }
}
