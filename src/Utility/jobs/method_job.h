// How an extrinsic method that changes the BMC's state reports: a CIM_ConcreteJob made before it acts,
// finished or failed afterwards, and handed out as "Job". Methods do it through their MethodCall.
#pragma once

#include "Utility/engine/guard.h"

#include <cmpidt.h>
#include <cmpift.h>
#include <cstdint>
#include <optional>

namespace ph {

// The value that a method returns.
enum MethodValue : std::uint32_t {
    methodDone = 0,
    methodNotSupported = 1,
    methodFailed = 2,
    methodStarted = 4096 // its job tells how it ends
};

inline constexpr const char* noJobPath = "Create CMPIObjectPath failed.";
inline constexpr const char* noJob = "Unable to create the job.";

class MethodJob {
public:
    enum class Outcome {
        NoJob,      // it could not be recorded, and nothing was changed
        Unrecorded, // the job does not tell, or not whole, how the change ended
        Done,
        Started, // the change goes on
        Failed
    };

    // Makes the job's object path, in the namespace of the method's object.
    bool makePath(const CMPIBroker* broker, const CMPIObjectPath* ref);
    bool hasPath() const { return path_ != nullptr; }
    // Records the job as running, calls bool `change()`, and records how it ended: job state 7 and
    // operational status "17,2", or 10, "17,6" and an error. An exception counts as a failed change.
    template <class Change>
    Outcome carryOut(const char* name, Change&& change) {
        if (!create(name))
            return Outcome::NoJob;
        if (guarded(false, change))
            return complete() ? Outcome::Done : Outcome::Unrecorded;
        return fail() ? Outcome::Failed : Outcome::Unrecorded;
    }
    // Records the job as running and calls bool `begin(instanceId)`, which leaves it to others to end the job
    // (running_job.h). One that does not begin has failed.
    template <class Begin>
    Outcome start(const char* name, Begin&& begin) {
        if (!create(name))
            return Outcome::NoJob;
        if (guarded(false, [&] { return begin(instanceId_); }))
            return Outcome::Started;
        return fail() ? Outcome::Failed : Outcome::Unrecorded;
    }
    // Hands the job out as argument "Job".
    bool returnReference(CMPIArgs* out) const;

private:
    bool create(const char* name);
    bool complete() const;
    bool fail() const; // tries both, state and error

    CMPIObjectPath* path_ = nullptr;
    char instanceId_[64] = "";
};

// Looks an in-argument up; one that is missing or null gives nothing.
std::optional<CMPIData> argument(const CMPIArgs* in, const char* name);

// Returns an in-argument that refers to an instance of this class; nullptr for any other.
const CMPIObjectPath* referenceArgument(const CMPIArgs* in, const char* name, const char* className);

// Returns a method's value to the client, as an integer of 32 bits.
void returnValue(const CMPIResult* result, std::uint32_t value, CMPIType type = CMPI_uint32);

} // namespace ph
