#include "hooks/oem.h"
#include "hooks/sel_reader.h"
#include "ipmi/oem_commands.h"

#include <bitset>
#include <platform/sel_record.h>
#include <stdexcept>
#include <unistd.h>

namespace {

namespace completion = ipmi::completion;
namespace sel = hooks::sel;

constexpr int attempts = 3; // at a log that changes under the reader's hands
constexpr unsigned erasePollMicroseconds = 50'000;

template <class T>
T& required(T* argument) {
    if (argument == nullptr)
        throw std::invalid_argument("no place for the answer, or no request, given");
    return *argument;
}

std::uint16_t capped(std::uint32_t count) {
    return static_cast<std::uint16_t>(std::min<std::uint32_t>(count, 0xFFFF));
}

// A record takes whole allocation units: one, or as many small ones as it needs.
std::uint32_t recordsIn(std::uint32_t units, std::uint32_t unitSize) {
    return units / ((CIM_SEL_RECORD_SIZE + unitSize - 1) / unitSize);
}

std::uint16_t maxEntries(ipmi::Transport& bmc) {
    const auto answer = ipmi::ask(bmc, ipmi::command::getSelAllocationInfo, {});
    if (answer.code() == completion::success) {
        auto reader = answer.reader();
        const std::uint32_t units = reader.u16();
        const std::uint32_t unitSize = reader.u16();
        answer.verify(reader);
        if (units != 0 && unitSize != 0) // 0: not specified
            return capped(recordsIn(units, unitSize));
    }
    const auto info = sel::readInfo(bmc);
    return capped(std::uint32_t{info.entries} + info.freeBytes / CIM_SEL_RECORD_SIZE);
}

std::uint16_t idOf(const std::uint8_t (&bytes)[2]) {
    return static_cast<std::uint16_t>(bytes[0] | bytes[1] << 8);
}

// Follows the chain of records from the first. Returns false when it breaks off or runs in a circle, because
// records were deleted or the BMC errs. Records that come in while it is followed are taken as long as there
// is room.
bool readChain(hooks::Session& bmc, int timeout, std::span<CIM_SELEntry> entries, std::uint16_t& count) {
    hooks::SelReader reader(bmc);
    std::bitset<0x10000> seen;
    std::uint16_t next = sel::firstRecord;
    for (count = 0; count < entries.size() && next != sel::noNextRecord; ++count) {
        CIM_SELEntry& entry = entries[count];
        bmc.begin(timeout);
        const auto code = reader.read(next, entry);
        if (code == completion::notPresent || code == completion::reservationCanceled)
            return false;
        if (code != completion::success)
            throw ipmi::CompletionCodeError(ipmi::command::getSelEntry, code);
        seen.set(count == 0 ? PH_SelRecordId(entry.record) : next);
        next = idOf(entry.nextRecordId);
        if (next != sel::noNextRecord && seen.test(next))
            return false;
    }
    return true;
}

std::uint16_t readLog(hooks::Session& bmc, int timeout, std::span<CIM_SELEntry> entries) {
    auto before = sel::readInfo(bmc);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (before.entries == 0)
            return 0;
        std::uint16_t count = 0;
        const bool isWhole = readChain(bmc, timeout, entries, count);
        const auto after = sel::readInfo(bmc);
        if (isWhole && after.lastErasure == before.lastErasure)
            return count;
        before = after;
    }
    throw std::runtime_error("the event log changed each time it was read");
}

enum class Erasure { Running, Completed, ReservationLost };

Erasure clearLog(ipmi::Transport& bmc, std::uint16_t reservation, std::uint8_t action) {
    constexpr std::uint8_t completed = 1;
    std::uint8_t request[6];
    ipmi::Writer(request).u16(reservation).bytes({'C', 'L', 'R', action});
    const auto answer = ipmi::ask(bmc, ipmi::command::clearSel, request);
    if (answer.code() == completion::reservationCanceled)
        return Erasure::ReservationLost;
    if (answer.code() != completion::success)
        throw ipmi::CompletionCodeError(ipmi::command::clearSel, answer.code());
    auto reader = answer.reader();
    const std::uint8_t progress = reader.u8() & 0x0F;
    answer.verify(reader);
    return progress == completed ? Erasure::Completed : Erasure::Running;
}

// Some BMCs cancel the reservation when the erasure begins: the progress is then asked for with a new one.
// The deadline of the call ends the wait for an erasure that takes too long.
void eraseLog(ipmi::Transport& bmc) {
    constexpr std::uint8_t initiate = 0xAA;
    constexpr std::uint8_t getStatus = 0x00;
    std::uint8_t action = initiate;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto reservation = sel::makeReservation(bmc);
        auto erasure = clearLog(bmc, reservation, action);
        while (erasure == Erasure::Running) {
            usleep(erasePollMicroseconds);
            action = getStatus;
            erasure = clearLog(bmc, reservation, action);
        }
        if (erasure == Erasure::Completed)
            return;
    }
    throw std::runtime_error("others reserve the event log all the time");
}

} // namespace

int CIM_GetMaxPossibleSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout) {
    return hooks::guarded(__func__,
                          [&] { required(count) = maxEntries(hooks::sessionOf(session, timeout)); });
}

int CIM_GetSELInfo(IPMI20_SESSION_T* session, CIM_SELInfo* info, int timeout) {
    return hooks::guarded(__func__,
                          [&] { required(info) = sel::readInfo(hooks::sessionOf(session, timeout)); });
}

int CIM_GetNumOfSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout) {
    return hooks::guarded(
        __func__, [&] { required(count) = sel::readInfo(hooks::sessionOf(session, timeout)).entries; });
}

int CIM_GetSELRecords(IPMI20_SESSION_T* session, CIM_SELEntry* entries, uint16_t* count, int timeout) {
    return hooks::guarded(__func__, [&] {
        *count = readLog(hooks::sessionOf(session, timeout), timeout,
                         std::span(&required(entries), required(count)));
    });
}

int CIM_GetSELEntry(IPMI20_SESSION_T* session, const CIM_SELEntryRequest* request, CIM_SELEntryAnswer* answer,
                    int timeout) {
    return hooks::guarded(__func__, [&] {
        required(answer) = {};
        hooks::SelReader reader(hooks::sessionOf(session, timeout));
        answer->completionCode = reader.read(idOf(required(request).recordId), answer->entry);
        if (answer->completionCode != completion::success)
            throw ipmi::CompletionCodeError(ipmi::command::getSelEntry, answer->completionCode);
    });
}

int CIM_GetSELPolicy(IPMI20_SESSION_T* session, uint8_t* policy, int timeout) {
    return hooks::guarded(__func__, [&] {
        const auto answer = hooks::runOem(hooks::sessionOf(session, timeout), ipmi::oem::getSelPolicy);
        if (answer.data().size() != 1 || answer.data()[0] > 1)
            throw std::runtime_error("the BMC's answer is no policy");
        required(policy) = answer.data()[0];
    });
}

int CIM_ClearSEL(IPMI20_SESSION_T* session, int timeout) {
    return hooks::guarded(__func__, [&] { eraseLog(hooks::sessionOf(session, timeout)); });
}
