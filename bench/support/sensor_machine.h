// A virtual BMC with many sensors, and a database in step with it.
#pragma once

#include <string>

namespace bench {

// Makes both below `root`, which PH_SYSROOT names, in place of those that are there: requests go to this BMC,
// which has `count` temperature sensors. Their numbers are 1 to 254, and again from 1 where there are more.
void makeSensorMachine(const std::string& root, int count);

} // namespace bench
