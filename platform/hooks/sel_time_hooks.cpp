#include "hooks/session.h"
#include "ipmi/command.h"

int CIM_GetSELTime(IPMI20_SESSION_T* session, uint32_t* seconds, int timeout) {
    return hooks::guarded(__func__, [&] {
        const auto answer = ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::getSelTime);
        auto reader = answer.reader();
        hooks::required(seconds) = reader.u32();
        answer.verify(reader);
    });
}

int CIM_SetSELTime(IPMI20_SESSION_T* session, uint32_t seconds, int timeout) {
    return hooks::guarded(__func__, [&] {
        std::uint8_t request[4];
        ipmi::Writer(request).u32(seconds);
        ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::setSelTime, request);
    });
}

int CIM_GetSELTimeUTCOffset(IPMI20_SESSION_T* session, int16_t* minutes, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::required(minutes) = CIM_SEL_UTC_OFFSET_NONE;
        const auto answer =
            ipmi::askIfKnown(hooks::sessionOf(session, timeout), ipmi::command::getSelTimeUtcOffset);
        if (!answer)
            return;
        auto reader = answer->reader();
        const auto offset = static_cast<std::int16_t>(reader.u16());
        answer->verify(reader);
        if (offset >= -CIM_SEL_UTC_OFFSET_MOST && offset <= CIM_SEL_UTC_OFFSET_MOST)
            *minutes = offset;
    });
}

int CIM_SetSELTimeUTCOffset(IPMI20_SESSION_T* session, int16_t minutes, int timeout) {
    return hooks::guarded(__func__, [&] {
        std::uint8_t request[2];
        ipmi::Writer(request).u16(static_cast<std::uint16_t>(minutes));
        ipmi::run(hooks::sessionOf(session, timeout), ipmi::command::setSelTimeUtcOffset, request);
    });
}
