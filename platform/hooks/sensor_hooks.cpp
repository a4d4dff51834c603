#include "hooks/reading_ahead.h"

#include <stdexcept>

namespace {

// The answer that was read ahead, or else one that is asked for now.
ipmi::Answer readingOf(const IPMI20_SESSION_T* session, std::uint8_t sensor, int timeout) {
    if (const auto& ahead = hooks::openSession(session).readingAhead; ahead != nullptr)
        if (auto answer = ahead->take(sensor))
            return *std::move(answer);
    return ipmi::ask(hooks::sessionOf(session, timeout), ipmi::command::getSensorReading,
                     std::span(&sensor, 1));
}

} // namespace

int CIM_GetSensorReading(IPMI20_SESSION_T* session, uint8_t sensorNumber, CIM_SensorReading* answer,
                         int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(answer != nullptr);
        const auto reply = readingOf(session, sensorNumber, timeout);
        *answer = {};
        answer->completionCode = reply.code();
        if (reply.code() != ipmi::completion::success)
            return;
        auto reader = reply.reader();
        answer->reading = reader.u8();
        answer->flags = reader.u8();
        reply.verify(reader);
        if (reader.left() > 0)
            answer->statesLow = reader.u8();
        if (reader.left() > 0)
            answer->statesHigh = reader.u8();
    });
}

int CIM_ReadSensorsAhead(IPMI20_SESSION_T* session, const uint8_t* sensorNumbers, int count, int timeout) {
    return hooks::guarded(__func__, [&] {
        if (sensorNumbers == nullptr || count <= 0)
            throw std::invalid_argument("no sensors given");
        auto& open = hooks::sessionOf(session, timeout);
        if (!open.waits() || !hooks::ReadingAhead::isWorth(static_cast<std::size_t>(count)))
            return;
        open.readingAhead = std::make_shared<hooks::ReadingAhead>(
            open, std::vector(sensorNumbers, sensorNumbers + count), timeout);
    });
}
