// How an extrinsic method that changes the BMC's state reports: a CIM_ConcreteJob made before it acts,
// finished or failed afterwards, and handed out as "Job".
//
//     ph::MethodJob job;
//     if (!job.makePath(broker, ref))
//         …
//     const auto outcome = job.carryOut("Host_RequestStateChange", [&] { return change(); });
//     if (outcome != ph::MethodJob::Outcome::NoJob)
//         job.returnReference(out);
//
// Methods differ in what they read and check before the job exists, and in what of it is part of `change`.
#pragma once

#include "Utility/guard.h"

#include <cmpidt.h>
#include <cmpift.h>
#include <cstdint>
#include <optional>

namespace ph {

// The value that a method returns.
enum MethodValue : std::uint32_t { methodDone = 0, methodFailed = 2 };

inline constexpr const char* noJobPath = "Create CMPIObjectPath failed.";
inline constexpr const char* noJob = "Unable to create the job.";

class MethodJob {
public:
    enum class Outcome {
        NoJob,      // it could not be recorded, and nothing was changed
        Unrecorded, // the job does not tell, or not whole, how the change ended
        Done,
        Failed
    };

    // Object path of the job, in the namespace of the method's object.
    bool makePath(const CMPIBroker* broker, const CMPIObjectPath* ref);
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
    // The job as out-argument "Job".
    bool returnReference(CMPIArgs* out) const;
    // Both, for methods whose value tells no more than the job: that value.
    template <class Change>
    MethodValue run(const char* name, CMPIArgs* out, Change&& change) {
        const Outcome outcome = carryOut(name, change);
        const bool isReturned = outcome != Outcome::NoJob && returnReference(out);
        return isReturned && outcome == Outcome::Done ? methodDone : methodFailed;
    }

private:
    bool create(const char* name);
    bool complete() const;
    bool fail() const; // tries both, state and error

    CMPIObjectPath* path_ = nullptr;
    char instanceId_[64] = "";
};

// An in-argument; none for one that is missing or null.
std::optional<CMPIData> argument(const CMPIArgs* in, const char* name);

// An in-argument that is a reference to an instance of this class; nullptr for any other.
const CMPIObjectPath* referenceArgument(const CMPIArgs* in, const char* name, const char* className);

// Returns a method's value to the client.
void returnValue(const CMPIResult* result, std::uint32_t value);

} // namespace ph
