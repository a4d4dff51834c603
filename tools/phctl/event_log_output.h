// Records of an event log, for people and for programs.
#pragma once

#include "ipmi-view/event_log.h"
#include "ipmi-view/event_text.h"

#include <span>

namespace phctl {

// Prints the last `last` records, or all for 0, as a table or as a JSON array.
void printEventLog(std::span<const view::SelRecord> records, const view::SensorLabels& sensors,
                   std::size_t last, bool json);

} // namespace phctl
