// Hosting the indication provider, which delivers from the event pipe.
#pragma once

#include "broker/broker.h"

namespace phctl {

// Puts the libraries that deliver where the library looks for them. Throws Failure.
void provideDelivery();
// Whether the broker's indication handler gets the events of the BMC's log, too.
enum class Listening { No, Subscribed };
// Makes the provider, whose thread goes on until the process ends: what it uses is never taken away. Throws
// Failure.
void beginDelivery(broker::Broker& broker, Listening listening);
// Ends a subscription: events until the next beginning go to nobody. Alerts of the BMC itself go on.
void endDelivery(broker::Broker& broker);

} // namespace phctl
