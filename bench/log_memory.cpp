// The memory that an enumeration of CIM_LogEntry needs at its peak, above the idle process: one that has
// enumerated an empty log before. What the object manager holds of the instances is not in it.
//
//     log_memory [RECORDS]
#include "support/contest.h"
#include "support/log_benchmark.h"
#include "virtual-bmc/virtual_bmc.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// proc(5): VmRSS is the present use, VmHWM its peak.
long statusKilobytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;)
        if (long kilobytes = 0; word == name + ":" && status >> kilobytes)
            return kilobytes;
    throw std::runtime_error("no " + name + " in /proc/self/status");
}

// In a process of its own: the library's is not to begin with what filling the log has left in the heap.
void fill(const std::string& stateFile, std::size_t records) {
    const pid_t child = fork();
    if (child == 0)
        _exit(vbmc::VirtualBmc(stateFile).fillSel(records) == records ? 0 : 1);
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("the event log could not be filled");
}

void run(std::size_t records) {
    const bench::PrivateRoot root;
    const std::string stateFile = bench::makeLogBmc(root.path());
    const broker::Broker broker;
    bench::countLogEntries(broker);
    fill(stateFile, records);
    std::ofstream("/proc/self/clear_refs") << "5"; // the peak is the present use
    const long idle = statusKilobytes("VmRSS");
    if (bench::countLogEntries(broker) != records)
        throw std::runtime_error("not every record was enumerated");
    const long kilobytes = statusKilobytes("VmHWM") - idle;
    std::printf("%zu records: idle %ld KB, peak %ld KB more, %.1f bytes a record\n", records, idle, kilobytes,
                static_cast<double>(kilobytes) * 1024 / static_cast<double>(records));
}

} // namespace

int main(int argc, char** argv) try {
    run(argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 65535);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "log_memory: %s\n", error.what());
    return 1;
}
