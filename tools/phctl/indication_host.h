// Hosting the indication provider, which delivers from the event pipe.
#pragma once

#include "broker/broker.h"

namespace phctl {

// Has the libraries that deliver where the library looks for them. Throws Failure.
void provideDelivery();
// Makes the provider, whose thread goes on until the process ends: what it uses is never taken away. Throws
// Failure.
void beginDelivery(broker::Broker& broker);

} // namespace phctl
