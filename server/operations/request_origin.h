// "/tmp/current_req": the user and the address that the library's sessions on behalf of a client are opened
// for (CreateIPMISession_Ext).
#pragma once

#include "operations/caller.h"

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace server {

// The file says who is asking: requests of another user or address wait until those under way are answered.
class RequestOrigin {
public:
    // Throws CimError where the file cannot be written, and somebody has logged in.
    void enter(const Caller& caller);
    void leave();

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string current_; // what the file holds
    unsigned entered_ = 0;
    std::uint64_t arrived_ = 0, next_ = 0; // who waits is let in by the order of arrival
};

} // namespace server
