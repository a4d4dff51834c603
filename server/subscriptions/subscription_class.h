// CIM_IndicationSubscription: a client's wish that what a filter selects is sent to a destination.
#pragma once

#include "operations/objects.h"
#include "subscriptions/subscription_store.h"

#include <functional>

namespace server {

class SubscriptionClass : public OwnClass {
public:
    // `begin` is called when there is a subscription to be delivered for; it may be called again.
    SubscriptionClass(SubscriptionStore& store, std::function<void()> begin);

    broker::Reply execute(const broker::Request& request, const Caller& caller) override;

private:
    SubscriptionStore& store_;
    const std::function<void()> begin_;
};

} // namespace server
