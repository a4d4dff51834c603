// Alerts for the clients that subscribed at the server.
#pragma once

#include "broker/object_manager.h"
#include "event_pipe.h"
#include "subscriptions/subscription_store.h"

#include <functional>
#include <mutex>
#include <optional>

namespace phctl {

class DeliveryWatch;

// The provider's threads go on until the process ends: what they use is never taken away.
class AlertDelivery {
public:
    using Log = std::function<void(const std::string& line)>;

    AlertDelivery(server::SubscriptionStore& store, broker::Broker& broker, Log log);

    // Whether somebody wants the events that the BMC's log gets from now on. Throws Failure, as when somebody
    // else reads from the event pipe.
    void listen(bool isWanted);
    // Whether the library has what it must not lose.
    bool isInUse() const { return manager_ != nullptr; }

private:
    void prepare();
    void deliver(const broker::Instance& alert) const;

    server::SubscriptionStore& store_;
    broker::Broker& broker_;
    const Log log_;
    std::mutex mutex_;
    std::optional<EventPipeClaim> pipe_;
    broker::ObjectManager* manager_ = nullptr;
    DeliveryWatch* watch_ = nullptr;
    bool isListening_ = false;
};

} // namespace phctl
