// How an extrinsic method that changes the BMC's state reports: a CIM_ConcreteJob made before it acts,
// finished or failed afterwards, and handed out as "Job".
//
//     ph::MethodJob job;
//     if (!job.makePath(broker, ref))
//         …                                // nothing is changed without a job
//     if (!job.create("Host_RequestStateChange"))
//         …
//     if (act())
//         value = job.complete() && job.returnReference(out) ? …
//     else
//         job.fail() …
#pragma once

#include <cmpidt.h>
#include <cmpift.h>
#include <cstdint>

namespace ph {

// The value that a method returns.
enum MethodValue : std::uint32_t { methodDone = 0, methodFailed = 2 };

inline constexpr const char* noJobPath = "Create CMPIObjectPath failed.";

class MethodJob {
public:
    // Object path of the job, in the namespace of the method's object.
    bool makePath(const CMPIBroker* broker, const CMPIObjectPath* ref);
    // Records the job as running. Without it the method must not change anything.
    bool create(const char* name);
    // Job state 7 and operational status "17,2".
    bool complete() const;
    // Job state 10 and operational status "17,6", and the job's error. Both are tried.
    bool fail() const;
    // The job as out-argument "Job".
    bool returnReference(CMPIArgs* out) const;

    const char* instanceId() const { return instanceId_; }

private:
    CMPIObjectPath* path_ = nullptr;
    char instanceId_[64] = "";
};

// Returns a method's value to the client.
void returnValue(const CMPIResult* result, std::uint32_t value);

} // namespace ph
