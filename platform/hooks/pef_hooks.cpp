#include "hooks/session.h"
#include "ipmi/command.h"
#include "ipmi/pef_configuration.h"

#include <cstring>
#include <stdexcept>

namespace {

namespace pef = ipmi::pef;

constexpr std::uint8_t selectorMask = 0x7F;

CIM_PEFEntry readEntry(ipmi::Transport& bmc, std::uint8_t filterNumber) {
    const auto answer =
        ipmi::run(bmc, ipmi::command::getPefConfiguration, {pef::parameter::filter, filterNumber, 0});
    auto reader = answer.reader();
    reader.skip(1); // parameter revision
    const std::uint8_t selector = reader.u8() & selectorMask;
    const auto bytes = reader.bytes(pef::filterSize);
    answer.verify(reader);
    if (selector != filterNumber)
        throw std::runtime_error("the BMC answered with filter " + std::to_string(selector) + " for " +
                                 std::to_string(filterNumber));
    CIM_PEFEntry entry;
    std::memcpy(&entry, bytes.data(), sizeof entry);
    return entry;
}

std::uint8_t readCount(ipmi::Transport& bmc) {
    const auto answer =
        ipmi::run(bmc, ipmi::command::getPefConfiguration, {pef::parameter::filterCount, 0, 0});
    auto reader = answer.reader();
    reader.skip(1); // parameter revision
    const std::uint8_t count = reader.u8() & selectorMask;
    answer.verify(reader);
    return count;
}

} // namespace

int CIM_GetPEFTable(IPMI20_SESSION_T* session, CIM_PEFEntry* table, uint8_t* count, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(table != nullptr);
        hooks::require(count != nullptr);
        auto& bmc = hooks::sessionOf(session, timeout);
        const std::uint8_t filters = readCount(bmc);
        for (std::uint8_t i = 0; i < std::min<std::uint8_t>(filters, CIM_MAX_PEF_ENTRIES); ++i)
            table[i] = readEntry(bmc, static_cast<std::uint8_t>(i + 1));
        *count = filters;
    });
}

int CIM_GetPEFEntry(IPMI20_SESSION_T* session, uint8_t filterNumber, CIM_PEFEntry* entry, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(entry != nullptr);
        *entry = readEntry(hooks::sessionOf(session, timeout), filterNumber);
    });
}

// One command writes the entry whole, so there is no transaction (parameter 0) to open.
int CIM_SetPEFEntry(IPMI20_SESSION_T* session, uint8_t filterNumber, const CIM_PEFEntry* entry, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(entry != nullptr);
        std::uint8_t request[2 + pef::filterSize] = {pef::parameter::filter, filterNumber};
        std::memcpy(request + 2, entry, sizeof *entry);
        ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::setPefConfiguration, request);
    });
}
