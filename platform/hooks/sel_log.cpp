#include "hooks/sel_log.h"

#include <bitset>
#include <platform/sel_record.h>
#include <stdexcept>
#include <unistd.h>

namespace hooks::sel {
namespace {

namespace completion = ipmi::completion;

constexpr int attempts = 3; // at a log that changes under the reader's hands
constexpr unsigned erasePollMicroseconds = 50'000;

// Follows the chain of records from the first. Returns false when it breaks off or runs in a circle, because
// records were deleted or the BMC errs. Records that come in while it is followed are taken as long as there
// is room.
bool readChain(ipmi::Transport& bmc, std::span<CIM_SELEntry> entries, const std::function<void()>& begin,
               std::uint16_t& count) {
    SelReader reader(bmc);
    std::bitset<0x10000> seen;
    std::uint16_t next = firstRecord;
    for (count = 0; count < entries.size() && next != noNextRecord; ++count) {
        CIM_SELEntry& entry = entries[count];
        begin();
        const auto code = reader.read(next, entry);
        if (code == completion::notPresent || code == completion::reservationCanceled)
            return false;
        if (code != completion::success)
            throw ipmi::CompletionCodeError(ipmi::command::getSelEntry, code);
        seen.set(count == 0 ? PH_SelRecordId(entry.record) : next);
        next = idOf(entry.nextRecordId);
        if (next != noNextRecord && seen.test(next))
            return false;
    }
    return true;
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

} // namespace

std::uint16_t readLog(ipmi::Transport& bmc, std::span<CIM_SELEntry> entries,
                      const std::function<void()>& begin) {
    auto before = readInfo(bmc);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (before.entries == 0)
            return 0;
        std::uint16_t count = 0;
        const bool isWhole = readChain(bmc, entries, begin, count);
        const auto after = readInfo(bmc);
        if (isWhole && after.lastErasure == before.lastErasure)
            return count;
        before = after;
    }
    throw std::runtime_error("the event log changed each time it was read");
}

// Some BMCs cancel the reservation when the erasure begins: the progress is then asked for with a new one.
void eraseLog(ipmi::Transport& bmc, ipmi::Clock::time_point end) {
    constexpr std::uint8_t initiate = 0xAA;
    constexpr std::uint8_t getStatus = 0x00;
    std::uint8_t action = initiate;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        const auto reservation = makeReservation(bmc);
        auto erasure = clearLog(bmc, reservation, action);
        while (erasure == Erasure::Running) {
            if (ipmi::Clock::now() >= end)
                throw std::runtime_error("the BMC has not erased the event log in the time that it had");
            usleep(erasePollMicroseconds);
            action = getStatus;
            erasure = clearLog(bmc, reservation, action);
        }
        if (erasure == Erasure::Completed)
            return;
    }
    throw std::runtime_error("others reserve the event log all the time");
}

void eraseRecord(ipmi::Transport& bmc, std::uint16_t id) {
    for (int attempt = 1;; ++attempt) {
        std::uint8_t request[4];
        ipmi::Writer(request).u16(makeReservation(bmc)).u16(id);
        const auto answer = ipmi::ask(bmc, ipmi::command::deleteSelEntry, request);
        if (answer.code() == completion::success)
            return;
        if (answer.code() != completion::reservationCanceled || attempt == attempts)
            throw ipmi::CompletionCodeError(ipmi::command::deleteSelEntry, answer.code());
    }
}

} // namespace hooks::sel
