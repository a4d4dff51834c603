// The broker's own function tables.
#pragma once

#include <cmpift.h>

namespace broker {

extern const CMPIBrokerFT requestTable;
extern const CMPIBrokerEncFT factoryTable;
extern const CMPIBrokerExtFT servicesTable;
extern const CMPIBrokerMemFT memoryTable;

} // namespace broker
