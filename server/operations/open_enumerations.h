// Enumerations that clients pull piece by piece (DSP0200, 5.3.2.24).
#pragma once

#include "broker/broker.h"
#include "operations/caller.h"

#include <chrono>
#include <map>
#include <mutex>
#include <string>

namespace server {

// What is left of an enumeration, or a piece of it.
struct Items {
    std::vector<broker::Instance> instances;
    std::vector<broker::ObjectPath> paths;
};

struct Piece {
    Items items;
    std::string context; // empty: it was the last one
};

class OpenEnumerations {
public:
    using Clock = std::chrono::steady_clock;
    // The time that an enumeration stays open when nobody pulls from it.
    static constexpr std::chrono::seconds usualTimeout{60}, longestTimeout{600};
    // Pieces are limited too, because each pull begins the time-out anew.
    static constexpr std::size_t mostOpen = 64, largestPiece = 10'000;

    // All below throw CimError, as for a context that is not open in this namespace or is another user's.

    Piece open(Items items, bool areInstances, const std::string& nameSpace, const Caller& caller,
               std::chrono::seconds timeout, std::size_t count);
    Piece pull(const std::string& context, bool areInstances, const std::string& nameSpace,
               const Caller& caller, std::size_t count);
    void close(const std::string& context, const std::string& nameSpace, const Caller& caller);

private:
    struct Enumeration {
        Items items;
        std::size_t next;
        bool areInstances;
        std::string nameSpace, user;
        std::chrono::seconds timeout;
        Clock::time_point end;
    };
    using All = std::map<std::string, Enumeration>;

    static Items take(Enumeration& enumeration, std::size_t count);
    void dropExpired();
    All::iterator find(const std::string& context, const std::string& nameSpace, const Caller& caller);

    std::mutex mutex_;
    All all_;
};

} // namespace server
