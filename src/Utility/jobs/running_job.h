// A job whose change goes on after its method has returned.
#pragma once

#include <cmpidt.h>
#include <cstdint>

namespace ph {

// What carries the change out tells how far it is and how it ended. A database that does not take that leaves the
// job as it is.
class RunningJob {
public:
    explicit RunningJob(const char* instanceId) : instanceId_(instanceId) {} // is not copied

    // The status is JobStatus: at most 31 characters, that last as long as the job.
    void report(const char* status, int percent);
    void complete() const;
    void fail(const char* status, std::uint16_t errorType, CMPIrc code) const;

private:
    const char* instanceId_;
    const char* status_ = nullptr;
    int percent_ = 0;
};

} // namespace ph
