// The indication provider: the BMC's alerts are delivered as long as it is loaded, and the events of its log to
// the object manager's subscribers.
#pragma once

#include <cmpift.h>

extern CMPIIndicationMIFT indicationFunctions;

// Returns nullptr without memory or threads. The first provider starts the thread that delivers alerts.
CMPIIndicationMI* createIndicationProvider(const CMPIBroker* broker, const CMPIContext* context);
