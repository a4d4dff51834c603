// Events of CIM_LogEntry for people.
#pragma once

#include "broker/value.h"
#include "ipmi-view/event_text.h"

#include <string>
#include <string_view>

namespace phctl {

using view::SensorKey;
using view::SensorLabel;
using view::SensorLabels;

// Returns "CPU1 Temp: Upper Critical - going high, asserted" for RecordData of a CIM_LogEntry, "2024-05-04
// 12:30:40 +02:00" for its CreationTimeStamp. Empty for any other property, and for other values.
std::string logEntryText(const broker::NamedValues& properties, std::string_view name,
                         const SensorLabels& sensors);

} // namespace phctl
