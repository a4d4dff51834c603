// The program does not sleep: what the library waits for is counted here, with what was true at the time.
#pragma once

#include <functional>
#include <vector>

extern std::vector<unsigned> slept;         // seconds
extern std::function<void()> whileSleeping; // called for each sleep, where there is one
