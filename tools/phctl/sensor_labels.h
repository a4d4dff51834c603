// The sensors that events name.
#pragma once

#include "ipmi-view/event_text.h"
#include "ipmi/transport.h"

namespace phctl {

// Reads the sensors of the last sync. There are none when they cannot be read, as they only make events
// readable.
view::SensorLabels sensorLabels();
// Reads them from a BMC that the database does not describe. There are none of a BMC that refuses.
view::SensorLabels sensorLabels(ipmi::Transport& bmc);

} // namespace phctl
