#include "slept.h"

std::vector<unsigned> slept;
std::function<void()> whileSleeping;

extern "C" __attribute__((visibility("default"))) unsigned sleep(unsigned seconds) {
    slept.push_back(seconds);
    if (whileSleeping)
        whileSleeping();
    return 0;
}
