// CIM_IndicationSubscription: a client's wish that what a filter selects is sent to a destination.
#pragma once

#include "operations/objects.h"
#include "subscriptions/subscription_store.h"

#include <functional>

namespace server {

class SubscriptionClass : public OwnClass {
public:
    // Told before a subscription is made, and after one has gone: whether there is any to deliver for.
    using Listen = std::function<void(bool isWanted)>;

    SubscriptionClass(SubscriptionStore& store, Listen listen);

    broker::Reply execute(const broker::Request& request, const Caller& caller) override;

private:
    void create(const Subscription& made);
    void remove(const Subscription& removed);

    SubscriptionStore& store_;
    const Listen listen_;
};

} // namespace server
