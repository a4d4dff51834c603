// A platform without a BMC and a database: sensors and readings as a test wants them, and functions that
// fail.
#pragma once

#include "platform/cim_hooks.h"
#include "platform/smash_db.h"

#include <map>
#include <set>
#include <string>
#include <vector>

struct FakePlatform {
    std::vector<CompactSdr> sensors;
    std::vector<FullSdr> numericSensors;
    std::map<int, CIM_SensorReading> readings; // by sensor number; the call fails for any other

    std::set<std::string> failing; // functions that fail whenever they are called

    int openSessions = 0;
    int openHandles = 0;
    std::vector<unsigned> pauses; // seconds of sleep(), which returns at once
};
extern FakePlatform platform;
