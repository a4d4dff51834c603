// Delivers what the BMC writes into its event log as indications, while somebody subscribes.
#pragma once

#include "pending_deliveries.h"

#include <cmpift.h>
#include <condition_variable>
#include <mutex>
#include <thread>

class SelFollower;

class SelWatch {
public:
    explicit SelWatch(const CMPIBroker* broker) : broker_(broker), pending_(broker) {}
    ~SelWatch(); // waits for the event in hand
    SelWatch(const SelWatch&) = delete;
    SelWatch& operator=(const SelWatch&) = delete;

    // The context is that of the object manager's call, which comes back when the end of the log is known, or
    // the BMC is slow to tell: what the log gets after that is delivered.
    void addFilter(const CMPIContext* context);
    void enable(const CMPIContext* context);
    void disable();
    void removeFilter(); // the last one: events until the next one comes are nobody's

private:
    template <class Change>
    void change(Change change);
    void follow(const CMPIContext* context);
    bool isWanted() const { return filters_ > 0 && isEnabled_; }
    void run();
    void deliver(const std::uint8_t (&record)[16]);
    // Takes what is new, and offers again what was not taken. Returns when to come again.
    PendingDeliveries::Clock::time_point turn(SelFollower& follower);

    const CMPIBroker* broker_;
    const CMPIContext* context_ = nullptr; // of the thread
    PendingDeliveries pending_;            // the thread's
    std::mutex mutex_;                     // of what follows
    std::condition_variable changed_, following_;
    unsigned filters_ = 0;
    bool isEnabled_ = false;
    bool isForgotten_ = false;
    bool isFollowing_ = false; // since somebody has listened
    bool isEnding_ = false;
    std::thread thread_; // there once somebody subscribed
};
