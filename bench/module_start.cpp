// A process that loads the provider module and asks it for one name, or one that does all but that, for a profiler that
// counts instructions:
//
//     valgrind --tool=callgrind module_start [--empty]
#include "broker/broker.h"
#include "support/contest.h"
#include "support/sensor_machine.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int sensors = 10;

// In a process of its own, which is not counted.
void makeMachine(const std::string& root) {
    const pid_t child = fork();
    if (child == 0) {
        bench::makeSensorMachine(root, sensors);
        _exit(0);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child || status != 0)
        throw std::runtime_error("the machine could not be made");
    std::filesystem::create_symlink(PH_LIBRARY, root + "/usr/local/lib/libProviderHelper.so");
}

void ask() {
    broker::Broker broker;
    broker.loadProvider(PH_PROVIDER_MODULE, "ProviderHelper");
    const auto reply =
        broker.enumerateInstanceNames(broker::parseObjectPath("root/cimv2:CIM_HostComputerSystem"));
    if (reply.paths.size() != 1)
        throw std::runtime_error("there is no host: " + reply.message);
}

} // namespace

int main(int argc, char** argv) try {
    const bool isEmpty = argc == 2 && std::strcmp(argv[1], "--empty") == 0;
    if (argc > 1 && !isEmpty) {
        std::fprintf(stderr, "Usage: module_start [--empty]\n");
        return 2;
    }
    const bench::PrivateRoot root;
    makeMachine(root.path());
    if (!isEmpty)
        ask();
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "module_start: %s\n", error.what());
    return 1;
}
