// The subscriptions that clients made, and what their filters select.
#pragma once

#include "broker/value.h"

#include <mutex>
#include <string>
#include <vector>

namespace server {

struct Subscription {
    broker::ObjectPath filter, handler;
};

// They are kept in the file "/conf/indication_subscriptions"; filters and destinations are the SMASH database's.
// One whose filter or destination is deleted goes with it.
class SubscriptionStore {
public:
    // Throws std::runtime_error for a file that cannot be read.
    SubscriptionStore();

    std::vector<Subscription> all();
    // Throws CimError for another kind of filter or destination, or one that is not there.
    static void check(const Subscription& subscription);
    // One that was checked. Returns false when there is one already.
    bool add(const Subscription& subscription);
    bool remove(const Subscription& subscription);
    // The URLs of the destinations whose filters select the CIM_AlertIndication.
    std::vector<std::string> destinationsOf(const broker::Instance& alert);

private:
    void dropOrphans();
    void write() const;

    std::mutex mutex_;
    std::vector<Subscription> all_;
};

bool isSame(const Subscription& left, const Subscription& right);

} // namespace server
