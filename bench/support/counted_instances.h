// Instances that are counted and not kept: what it takes to hold them is the object manager's affair.
#pragma once

#include "broker/broker.h"

#include <cstddef>
#include <string>

namespace bench {

// A function PH_EI_X.
using EnumerateInstances = void (*)(const CMPIBroker* broker, const CMPIContext* context,
                                    const CMPIObjectPath* ref, const char** properties,
                                    const CMPIResult* result, CMPIStatus* status);

// Enumerates the instances of a class. Throws std::runtime_error when that fails.
std::size_t countInstances(const broker::Broker& broker, const std::string& className,
                           EnumerateInstances enumerate);

} // namespace bench
