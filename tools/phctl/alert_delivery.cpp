#include "alert_delivery.h"

#include "delivery_watch.h"
#include "indication_host.h"
#include "text_layout.h"

namespace phctl {

AlertDelivery::AlertDelivery(server::SubscriptionStore& store, broker::Broker& broker, Log log)
    : store_(store), broker_(broker), log_(std::move(log)) {
    broker_.setIndicationHandler([this](const auto&, const auto& alert) { deliver(alert); });
}

void AlertDelivery::listen(bool isWanted) {
    const std::lock_guard lock(mutex_);
    if (isWanted == isListening_)
        return;
    if (isWanted) {
        prepare();
        beginDelivery(broker_, Listening::Subscribed);
    } else {
        endDelivery(broker_);
    }
    isListening_ = isWanted;
}

// The provider's monitor starts with the first subscription.
void AlertDelivery::prepare() {
    provideDelivery();
    if (!pipe_)
        pipe_.emplace();
    if (manager_ == nullptr)
        manager_ = new broker::ObjectManager(broker_);
    if (watch_ == nullptr)
        watch_ = new DeliveryWatch([log = log_](const Delivery& delivery) {
            log((delivery.isDelivered ? "Delivered to " : "Could not deliver to ") + printable(delivery.to));
        });
}

// Called by the thread that follows the log.
void AlertDelivery::deliver(const broker::Instance& alert) const {
    broker::Scope scope(broker_);
    const CMPIInstance* const indication = scope.make(alert);
    for (const std::string& url : store_.destinationsOf(alert))
        watch_->post(url, indication);
}

} // namespace phctl
