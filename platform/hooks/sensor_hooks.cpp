#include "hooks/session.h"
#include "ipmi/command.h"

#include <stdexcept>

namespace {}

int CIM_GetSensorReading(IPMI20_SESSION_T* session, uint8_t sensorNumber, CIM_SensorReading* answer,
                         int timeout) {
    return hooks::guarded(__func__, [&] {
        if (answer == nullptr)
            throw std::invalid_argument("no place for the reading given");
        const auto reply = ipmi::ask(hooks::sessionOf(session, timeout), ipmi::command::getSensorReading,
                                     std::span(&sensorNumber, 1));
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
