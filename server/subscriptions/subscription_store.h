// The subscriptions that clients made, and what their filters select.
#pragma once

#include "broker/value.h"

#include <cstdint>
#include <mutex>
#include <platform/sel_event_message.h>
#include <string>
#include <vector>

namespace server {

struct Subscription {
    broker::ObjectPath filter, handler;
};

// What of an event has to be delivered to whom.
struct Match {
    std::int32_t destination; // n of CIMXML-n
    std::uint8_t severity;    // that the filter wants, as bits of a platform event filter; 0: any
};

// They are kept in the file "/conf/indication_subscriptions"; filters and destinations are the SMASH database's.
// One whose filter or destination is deleted goes with it.
class SubscriptionStore {
public:
    // Throws std::runtime_error for a file that cannot be read.
    SubscriptionStore();

    std::vector<Subscription> all();
    // False when there is one already. Throws CimError for another kind of filter or destination, or one that
    // is not there.
    bool add(const Subscription& subscription);
    bool remove(const Subscription& subscription);
    // The destinations whose filters select the event's sensor.
    std::vector<Match> matching(const std::uint8_t (&record)[CIM_SEL_RECORD_SIZE]);

private:
    void dropOrphans();
    void write() const;

    std::mutex mutex_;
    std::vector<Subscription> all_;
};

bool isSame(const Subscription& left, const Subscription& right);

} // namespace server
