// Peers that kept somebody waiting in vain.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>

namespace transfer {

// Alerts go out one after the other: a peer that is dead or hangs may take the time of one attempt from the
// others, not that of every alert for it. So it is left alone for a minute after such an attempt. Any thread
// may ask.
class SilentPeers {
public:
    using Clock = std::chrono::steady_clock;

    bool contains(const std::string& peer, Clock::time_point now = Clock::now());
    // Takes note of an attempt that waited in vain. One that failed at once, as with a refused connection, cost
    // the others nothing and may be repeated.
    void add(const std::string& peer, Clock::time_point now = Clock::now());

private:
    std::mutex mutex_;
    std::map<std::string, Clock::time_point> leftAloneUntil_;
};

} // namespace transfer
