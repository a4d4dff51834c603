// What a process costs that opens a session with the local IPMI device: start time, libraries, memory. Builds
// of the hooks are compared round by round.
//
//     local_session [-n ROUNDS] FOLDER…      folders that have libCIMAPIHooks.so
#include "support/count.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <platform/cim_session.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

struct Start {
    int libraries = 0;
    long kilobytes = 0; // resident
    Milliseconds time{};
};

long residentKilobytes() {
    long pages = 0;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%*d %ld", &pages) != 1)
            pages = 0;
        std::fclose(file);
    }
    return pages * sysconf(_SC_PAGESIZE) / 1024;
}

// Whether there is a device does not matter: what is loaded and looked for is the same.
int measured() {
    void* const hooks = dlopen("libCIMAPIHooks.so", RTLD_NOW);
    if (hooks == nullptr) {
        std::fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const auto open =
        reinterpret_cast<decltype(&CIM_Create_IPMI20_Session)>(dlsym(hooks, "CIM_Create_IPMI20_Session"));
    IPMI20_SESSION_T session{};
    constexpr int localDevice = 1;
    open(&session, "openipmi", 0, "", "", localDevice, 0, 0, 0, 4, 1);
    int libraries = 0;
    dl_iterate_phdr(
        [](dl_phdr_info* object, std::size_t, void* count) {
            const bool isFile = object->dlpi_name[0] == '/';
            *static_cast<int*>(count) += isFile ? 1 : 0;
            return 0;
        },
        &libraries);
    std::printf("%d %ld\n", libraries, residentKilobytes());
    return 0;
}

Start start(const std::string& folder) {
    const std::string command =
        "LD_LIBRARY_PATH='" + folder + "' exec /proc/" + std::to_string(getpid()) + "/exe";
    Start result;
    const auto before = std::chrono::steady_clock::now();
    std::FILE* const output = popen(command.c_str(), "r");
    const bool isRead =
        output != nullptr && std::fscanf(output, "%d %ld", &result.libraries, &result.kilobytes) == 2;
    if (output == nullptr || pclose(output) != 0 || !isRead) {
        std::fprintf(stderr, "%s: the process failed\n", folder.c_str());
        std::exit(1);
    }
    result.time = std::chrono::steady_clock::now() - before;
    return result;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 1)
        return measured();
    constexpr int mostRounds = 10'000;
    int rounds = 50;
    std::vector<std::string> folders;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "-n") != 0 || i + 1 == argc) {
            folders.emplace_back(argv[i]);
            continue;
        }
        const auto count = bench::readCount(argv[++i], mostRounds);
        if (!count) {
            std::fprintf(stderr, "%s: expected a number of rounds instead of %s\n", argv[0], argv[i]);
            return 2;
        }
        rounds = *count;
    }
    std::vector<std::vector<Start>> starts(folders.size());
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < folders.size(); ++i)
            starts[i].push_back(start(folders[i]));
    for (std::size_t i = 0; i < folders.size(); ++i) {
        std::ranges::sort(starts[i], {}, &Start::time);
        const Start& median = starts[i][starts[i].size() / 2];
        std::printf("%s: %d libraries, %ld KB, minimum %.2f ms, median %.2f ms\n", folders[i].c_str(),
                    median.libraries, median.kilobytes, starts[i][0].time.count(), median.time.count());
    }
    return 0;
}
