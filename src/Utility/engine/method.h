// A class's methods as data: what clients, and the schema, know of them, and who carries them out. The frame
// finds the method, reads the keys, makes the job, and returns the value; class_family.h has the order.
#pragma once

#include "Utility/jobs/method_job.h"
#include "Utility/requests/request.h"
#include "Utility/requests/request_status.h"
#include "Utility/requests/request_texts.h"

#include <cmpidt.h>
#include <cstdint>
#include <optional>
#include <span>

namespace ph {

enum class Direction : std::uint8_t { In, Out, InOut };

//     {"RequestedState", CMPI_uint16}, {"Job", CMPI_ref, ph::Direction::Out, "CIM_ConcreteJob"}
struct Parameter {
    const char* name;
    CMPIType type; // also with CMPI_ARRAY
    Direction direction = Direction::In;
    const char* className = nullptr; // of CMPI_ref and CMPI_instance
};

// What a method returns. Without a value the request is refused, and the status says why.
using MethodAnswer = std::optional<MethodValue>;

// Turns the answer into what exported functions of methods return.
inline int resultOf(MethodAnswer answer) {
    return answer == methodDone ? 0 : -1;
}

// How a method that reports a job does it.
struct JobReport {
    Refusal notCreated{CMPI_RC_ERR_FAILED, noJob}; // without a message: methodFailed says enough
    bool handsOutUnrecorded = true;                // a job that does not tell how the change ended
};

// One request for a method.
class MethodCall {
public:
    explicit MethodCall(const Request& asked) : request(asked) {}
    explicit MethodCall(Request&&) = delete; // it has to outlive the call

    const Request& request;
    KeyValues keys;
    // What the client is told besides the value.
    CMPIStatus status = success;

    const char* key(std::size_t i) { return textOf(keys[i]); }

    MethodAnswer refuse(const Refusal& refusal) {
        status = fail(request.broker, refusal.code, refusal.message);
        return std::nullopt;
    }
    MethodAnswer refuse(CMPIrc code, const char* message) { return refuse({code, message}); }
    // Reads the argument RequestedState; returns false, and refuses the call, where it is none.
    bool readRequestedState(std::uint16_t& state);

    // The frame uses this to make the path of the job, and to say how the method reports it.
    bool makeJobPath();
    void reportAs(const JobReport& how) { how_ = &how; }
    // Carries out bool `change()` under a job of this name: methodDone, methodFailed, or refused when the job
    // cannot be recorded. `afterwards()` follows a change that was made and recorded.
    template <class Change, class Afterwards>
    MethodAnswer report(const char* jobName, Change&& change, Afterwards&& afterwards) {
        const MethodJob::Outcome outcome = job_.carryOut(jobName, change);
        if (outcome == MethodJob::Outcome::NoJob)
            return notCreated();
        if (outcome == MethodJob::Outcome::Done)
            afterwards();
        return handOut(outcome);
    }
    template <class Change>
    MethodAnswer report(const char* jobName, Change&& change) {
        return report(jobName, change, [] {});
    }

    // Lets bool `begin(instanceId)` begin a change that goes on under a job of this name: methodStarted, or as
    // above.
    template <class Begin>
    MethodAnswer start(const char* jobName, Begin&& begin) {
        const MethodJob::Outcome outcome = job_.start(jobName, begin);
        return outcome == MethodJob::Outcome::NoJob ? notCreated() : handOut(outcome);
    }

private:
    MethodAnswer notCreated();
    MethodAnswer handOut(MethodJob::Outcome outcome);

    const JobReport* how_ = nullptr;
    MethodJob job_;
};

struct Method {
    const char* name;
    std::span<const Parameter> parameters; // in the order of the signature
    MethodAnswer (*carryOut)(MethodCall& call);
    std::optional<JobReport> job = std::nullopt; // none: it reports no job
    // The value that goes with the status of a refusal; without one, the status goes alone.
    std::optional<MethodValue> refusedValue = std::nullopt;
    CMPIType valueType = CMPI_uint32;
};

// RequestStateChange as CIM_EnabledLogicalElement has it.
inline constexpr const char* requestStateChange = "RequestStateChange";
inline constexpr Parameter requestStateChangeParameters[] = {
    {"RequestedState", CMPI_uint16},
    {"Job", CMPI_ref, Direction::Out, "CIM_ConcreteJob"},
    {"TimeoutPeriod", CMPI_dateTime},
};

} // namespace ph
