// What a reply brought, on standard output: as text or as JSON.
#pragma once

#include "broker/broker.h"
#include "event_text.h"

namespace phctl {

// Reads the sensors that events name, where one of the instances tells of events.
SensorLabels labelsFor(const std::vector<broker::Instance>& instances);

void printInstances(const std::vector<broker::Instance>& instances, const broker::PropertyList& wanted,
                    bool asJson);
void printPaths(const std::vector<broker::ObjectPath>& paths, bool asJson);

} // namespace phctl
