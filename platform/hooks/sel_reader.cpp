#include "hooks/sel_reader.h"

#include <cstring>

namespace hooks {

namespace completion = ipmi::completion;

namespace sel {

Info readInfo(ipmi::Transport& bmc) {
    const auto answer = ipmi::run(bmc, ipmi::command::getSelInfo);
    auto reader = answer.reader();
    Info info{};
    info.version = reader.u8();
    info.entries = reader.u16();
    info.freeBytes = reader.u16();
    info.lastAddition = reader.u32();
    info.lastErasure = reader.u32();
    answer.verify(reader);
    info.operations = reader.u8(); // 0 where a BMC leaves it out
    return info;
}

std::uint16_t makeReservation(ipmi::Transport& bmc) {
    const auto answer = ipmi::ask(bmc, ipmi::command::reserveSel, {});
    if (answer.code() == completion::invalidCommand)
        return 0;
    if (answer.code() != completion::success)
        throw ipmi::CompletionCodeError(ipmi::command::reserveSel, answer.code());
    auto reader = answer.reader();
    const std::uint16_t id = reader.u16();
    answer.verify(reader);
    return id;
}

} // namespace sel

namespace {

constexpr std::uint8_t largestPart = CIM_SEL_RECORD_SIZE / 2;
constexpr int attemptsPerRecord = 3; // with a reservation that others may cancel each time

} // namespace

std::uint8_t SelReader::readPart(std::uint16_t recordId, std::uint8_t offset, std::uint8_t size,
                                 CIM_SELEntry& entry) {
    std::uint8_t request[6];
    ipmi::Writer(request).u16(reservation_).u16(recordId).u8(offset).u8(size);
    const auto answer = ipmi::ask(bmc_, ipmi::command::getSelEntry, request);
    if (answer.code() != completion::success)
        return answer.code();
    auto reader = answer.reader();
    const auto next = reader.bytes(sizeof entry.nextRecordId);
    const auto part = reader.bytes(size == sel::wholeRecord ? CIM_SEL_RECORD_SIZE : size);
    answer.verify(reader);
    std::ranges::copy(next, entry.nextRecordId);
    std::ranges::copy(part, entry.record + offset);
    return answer.code();
}

std::uint8_t SelReader::readInParts(std::uint16_t recordId, CIM_SELEntry& entry) {
    for (std::uint8_t offset = 0; offset < CIM_SEL_RECORD_SIZE;
         offset = static_cast<std::uint8_t>(offset + partSize_)) {
        const auto code = readPart(recordId, offset, partSize_, entry);
        if (code != completion::success)
            return code;
    }
    return completion::success;
}

std::uint8_t SelReader::read(std::uint16_t recordId, CIM_SELEntry& entry) {
    std::uint8_t code = completion::success;
    if (partSize_ == sel::wholeRecord) {
        code = readPart(recordId, 0, sel::wholeRecord, entry);
        if (!completion::meansTooMuch(code))
            return code;
        partSize_ = largestPart;
        reservation_ = sel::makeReservation(bmc_);
    }
    for (int attempt = 0; attempt < attemptsPerRecord;) {
        code = readInParts(recordId, entry);
        if (completion::meansTooMuch(code) && partSize_ > 1) {
            partSize_ /= 2;
        } else if (code == completion::reservationCanceled) {
            reservation_ = sel::makeReservation(bmc_);
            ++attempt;
        } else {
            break;
        }
    }
    return code;
}

} // namespace hooks
