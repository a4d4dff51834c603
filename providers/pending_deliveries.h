// Indications that the object manager did not take. Each is offered again as often, and at such intervals, as the
// first CIM_IndicationService says; others do not wait for it.
#pragma once

#include "cmpi_objects.h"

#include <chrono>
#include <deque>

// Offers an indication once. Returns whether the object manager took it.
bool offerIndication(const CMPIBroker* broker, const CMPIContext* context, const char* nameSpace,
                     const CMPIInstance* indication);

// All calls are of the one thread that the context is attached to.
class PendingDeliveries {
public:
    using Clock = std::chrono::steady_clock;

    explicit PendingDeliveries(const CMPIBroker* broker) : broker_(broker) {}

    void add(const CMPIContext* context, objects::Owned<CMPIInstance> indication);
    // Offers those again whose time has come. Returns when to call this next.
    Clock::time_point offer(const CMPIContext* context);
    void clear() { pending_.clear(); }

private:
    struct Pending {
        objects::Owned<CMPIInstance> indication;
        unsigned attempts; // that are left
        std::chrono::seconds interval;
        Clock::time_point due;
    };

    const CMPIBroker* broker_;
    std::deque<Pending> pending_;
};
