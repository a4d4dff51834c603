#include "smash-db/sync/sdr_repository.h"

#include "ipmi/command.h"

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>

namespace smash {
namespace {

// IPMI 2.0 33: SDR repository commands.

constexpr std::uint16_t firstRecord = 0x0000;
constexpr std::uint16_t endOfRepository = 0xFFFF;
constexpr std::size_t headerSize = 5; // record ID, SDR version, record type, length of what follows

// Another client that reads the repository takes the reservation away, and so does a BMC that adds records while
// it starts: the pauses let each of them come to its end. They are over after some five seconds a record.
constexpr int maxCancellations = 10;
constexpr unsigned firstPause = 10'000; // microseconds; each is twice the one before
constexpr unsigned longestPause = 1'000'000;

std::string sourceOf(std::uint16_t recordId) {
    char text[32];
    std::snprintf(text, sizeof text, "SDR record 0x%04X", recordId);
    return text;
}

// Thrown for a record that cannot be read, while those after it can.
struct Unreadable : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Repository {
public:
    explicit Repository(ipmi::Transport& bmc) : bmc_(bmc) { reserve(); }

    // Reads a record and, even when that is Unreadable, the ID of the one after it.
    SdrRecord read(std::uint16_t id, std::uint16_t& next) {
        unsigned pause = firstPause;
        for (int cancellations = 0;; ++cancellations) {
            try {
                return readReserved(id, next);
            } catch (const ipmi::CompletionCodeError& error) {
                if (error.code != ipmi::completion::reservationCanceled)
                    throw;
            }
            if (cancellations == maxCancellations)
                throw std::runtime_error("another client reads the BMC's sensor data records and takes the "
                                         "reservation each time: try again when it has finished");
            usleep(pause);
            pause = std::min(2 * pause, longestPause);
            reserve();
        }
    }

private:
    void reserve() {
        const auto answer = ipmi::run(bmc_, ipmi::command::reserveSdrRepository);
        auto reader = answer.reader();
        reservation_ = reader.u16();
        answer.verify(reader);
    }

    SdrRecord readReserved(std::uint16_t id, std::uint16_t& next) {
        SdrRecord record{id, {}};
        next = append(record.bytes, id, headerSize);
        if (record.bytes.size() < headerSize)
            throw Unreadable("its header is cut short");
        if (id == firstRecord) // which stands for whatever ID that record has
            record.id = static_cast<std::uint16_t>(record.bytes[0] | record.bytes[1] << 8);
        const std::size_t size = headerSize + record.bytes[4];
        while (record.bytes.size() < size)
            appendPart(record.bytes, id, size - record.bytes.size());
        return record;
    }

    // Asks for less when the BMC's buffer does not hold as much, and keeps to that for all records.
    void appendPart(std::vector<std::uint8_t>& bytes, std::uint16_t id, std::size_t missing) {
        constexpr std::size_t smallestPart = 8;
        for (;;) {
            try {
                append(bytes, id, std::min(partSize_, missing));
                return;
            } catch (const ipmi::CompletionCodeError& error) {
                if (error.code == ipmi::completion::reservationCanceled)
                    throw;
                if (!ipmi::completion::meansTooMuch(error.code) || partSize_ <= smallestPart)
                    throw Unreadable(error.what());
                partSize_ /= 2;
            }
        }
    }

    // Appends up to `count` bytes of the record. Returns the ID of the record after it.
    std::uint16_t append(std::vector<std::uint8_t>& bytes, std::uint16_t id, std::size_t count) {
        if (bytes.size() > 0xFF)
            throw Unreadable("its end lies beyond what the command can address");
        std::uint8_t request[6];
        ipmi::Writer(request)
            .u16(reservation_)
            .u16(id)
            .u8(static_cast<std::uint8_t>(bytes.size()))
            .u8(static_cast<std::uint8_t>(count));
        const auto answer = ipmi::run(bmc_, ipmi::command::getSdr, request);
        auto reader = answer.reader();
        const std::uint16_t next = reader.u16();
        answer.verify(reader);
        const auto part = reader.bytes(std::min(count, reader.left()));
        if (part.empty() && !bytes.empty())
            throw Unreadable("the BMC does not return all of it");
        bytes.insert(bytes.end(), part.begin(), part.end());
        return next;
    }

    ipmi::Transport& bmc_;
    std::uint16_t reservation_ = 0;
    std::size_t partSize_ = 64; // nearly all records in one part
};

} // namespace

std::string sourceOf(const SdrRecord& record) {
    return sourceOf(record.id);
}

SdrRepositoryRow readSdrRepositoryInfo(ipmi::Transport& bmc) {
    const auto answer = ipmi::run(bmc, ipmi::command::getSdrRepositoryInfo);
    auto reader = answer.reader();
    reader.skip(1); // SDR version
    SdrRepositoryRow row{};
    row.records = reader.u16();
    answer.verify(reader);
    reader.skip(2); // free space
    row.lastAddition = reader.u32();
    row.lastErase = reader.u32();
    return row;
}

std::vector<SdrRecord> readSdrRepository(ipmi::Transport& bmc, std::vector<SyncRemark>& remarks,
                                         const std::function<void(std::size_t, std::size_t)>& progress) {
    std::vector<SdrRecord> records;
    const std::size_t total = readSdrRepositoryInfo(bmc).records;
    progress(0, total);
    if (total == 0)
        return records;
    Repository repository(bmc);
    std::bitset<0x10000> visited;
    for (std::uint16_t id = firstRecord; id != endOfRepository;) {
        if (visited.test(id)) {
            remarks.push_back(
                {sourceOf(id), "a later record names it as the next one; no further ones were read", true});
            break;
        }
        visited.set(id);
        std::uint16_t next = endOfRepository;
        try {
            records.push_back(repository.read(id, next));
        } catch (const Unreadable& error) {
            remarks.push_back({sourceOf(id), error.what(), true});
        }
        progress(records.size(), std::max(total, records.size()));
        id = next;
    }
    return records;
}

} // namespace smash
