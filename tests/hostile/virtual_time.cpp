#include "virtual_time.h"

#include <atomic>
#include <ctime>
#include <unistd.h>

namespace hostile {
namespace {

std::atomic<std::int64_t> ahead{0}; // nanoseconds

} // namespace

void pass(std::chrono::nanoseconds time) {
    ahead += time.count();
}

} // namespace hostile

// In place of the C and C++ libraries', which come behind the program's.
#pragma GCC visibility push(default)

std::chrono::steady_clock::time_point std::chrono::_V2::steady_clock::now() noexcept {
    std::timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time_point(std::chrono::seconds(time.tv_sec) +
                      std::chrono::nanoseconds(time.tv_nsec + hostile::ahead));
}

extern "C" {
// Nothing of the machine outlives the process: disks are not waited for.
int fsync(int) {
    return 0;
}
int fdatasync(int) {
    return 0;
}
int usleep(useconds_t microseconds) {
    hostile::pass(std::chrono::microseconds(microseconds));
    return 0;
}
int nanosleep(const std::timespec* time, std::timespec*) {
    hostile::pass(std::chrono::seconds(time->tv_sec) + std::chrono::nanoseconds(time->tv_nsec));
    return 0;
}
}
#pragma GCC visibility pop
