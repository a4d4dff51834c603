// The indication provider: alerts are delivered as long as it is loaded.
#pragma once

#include <cmpift.h>

extern CMPIIndicationMIFT indicationFunctions;

// Starts the thread that delivers the BMC's alerts, once in a process. false when there can be no thread.
bool startMonitor();
