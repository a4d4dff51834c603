// What a reply brought, on standard output: as text or as JSON.
#pragma once

#include "broker/broker.h"
#include "instance_output.h"
#include "requests.h"

namespace phctl {

// Reads the sensors that events name, where one of the instances tells of events.
SensorLabels labelsFor(const std::vector<broker::Instance>& instances);

// Returns how the options want instances on standard output.
Presentation presentationOf(const RequestOptions& options, const std::vector<broker::Instance>& instances,
                            const broker::PropertyList& wanted);
void printInstances(const std::vector<broker::Instance>& instances, const broker::PropertyList& wanted,
                    const RequestOptions& options);
void printPaths(const std::vector<broker::ObjectPath>& paths, bool asJson);

} // namespace phctl
