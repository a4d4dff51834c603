#include "hooks/oem.h"
#include "hooks/sel_log.h"
#include "hooks/session.h"
#include "ipmi/oem_commands.h"

#include <stdexcept>

namespace {

namespace completion = ipmi::completion;
namespace sel = hooks::sel;

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

} // namespace

int CIM_GetMaxPossibleSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout) {
    return hooks::guarded(__func__,
                          [&] { hooks::required(count) = maxEntries(hooks::sessionOf(session, timeout)); });
}

int CIM_GetSELInfo(IPMI20_SESSION_T* session, CIM_SELInfo* info, int timeout) {
    return hooks::guarded(__func__,
                          [&] { hooks::required(info) = sel::readInfo(hooks::sessionOf(session, timeout)); });
}

int CIM_GetNumOfSELEntries(IPMI20_SESSION_T* session, uint16_t* count, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::required(count) = sel::readInfo(hooks::sessionOf(session, timeout)).entries;
    });
}

int CIM_GetSELRecords(IPMI20_SESSION_T* session, CIM_SELEntry* entries, uint16_t* count, int timeout) {
    return hooks::guarded(__func__, [&] {
        auto& bmc = hooks::sessionOf(session, timeout);
        *count = sel::readLog(bmc, std::span(&hooks::required(entries), hooks::required(count)),
                              [&] { bmc.begin(timeout); });
    });
}

int CIM_GetSELEntry(IPMI20_SESSION_T* session, const CIM_SELEntryRequest* request, CIM_SELEntryAnswer* answer,
                    int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::required(answer) = {};
        hooks::SelReader reader(hooks::sessionOf(session, timeout));
        answer->completionCode = reader.read(sel::idOf(hooks::required(request).recordId), answer->entry);
        if (answer->completionCode != completion::success)
            throw ipmi::CompletionCodeError(ipmi::command::getSelEntry, answer->completionCode);
    });
}

int CIM_GetSELPolicy(IPMI20_SESSION_T* session, uint8_t* policy, int timeout) {
    return hooks::guarded(__func__, [&] {
        const auto answer = hooks::runOem(hooks::sessionOf(session, timeout), ipmi::oem::getSelPolicy);
        if (answer.data().size() != 1 || answer.data()[0] > 1)
            throw std::runtime_error("the BMC's answer is no policy");
        hooks::required(policy) = answer.data()[0];
    });
}

int CIM_ClearSEL(IPMI20_SESSION_T* session, int timeout) {
    return hooks::guarded(__func__, [&] { sel::eraseLog(hooks::sessionOf(session, timeout)); });
}
