#include "support/contest.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace bench {

namespace fs = std::filesystem;

std::vector<Result> contest(const std::vector<Contestant>& contestants, int rounds) {
    using Clock = std::chrono::steady_clock;
    std::vector<std::vector<double>> seconds(contestants.size());
    std::vector<Result> results;
    for (const Contestant& contestant : contestants) {
        const std::size_t before = contestant.count ? contestant.count() : 0;
        contestant.run();
        results.push_back({contestant.name, 0, 0, 0, contestant.count ? contestant.count() - before : 0});
    }
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < contestants.size(); ++i) {
            const auto begin = Clock::now();
            contestants[i].run();
            seconds[i].push_back(std::chrono::duration<double>(Clock::now() - begin).count());
        }
    for (std::size_t i = 0; i < results.size(); ++i) {
        std::ranges::sort(seconds[i]);
        results[i].minimum = seconds[i].front();
        results[i].median = seconds[i][seconds[i].size() / 2];
        results[i].maximum = seconds[i].back();
    }
    return results;
}

void print(const std::string& title, const std::vector<Result>& results) {
    const Result& yardstick = results.back();
    std::printf("%s\n%-44s %9s %8s %9s %8s %9s %9s\n", title.c_str(), "", "min ms", "ratio", "median ms",
                "ratio", "max ms", "messages");
    for (const Result& result : results) {
        std::printf("%-44s %9.1f %8.2f %9.1f %8.2f %9.1f", result.name.c_str(), result.minimum * 1e3,
                    result.minimum / yardstick.minimum, result.median * 1e3, result.median / yardstick.median,
                    result.maximum * 1e3);
        if (result.messages > 0)
            std::printf(" %9zu", result.messages);
        std::printf("\n");
    }
}

void runCommand(const std::string& command) {
    FILE* const pipe = popen((command + " 2>&1").c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("cannot run " + command);
    std::string output;
    char part[4096];
    while (std::fgets(part, sizeof part, pipe) != nullptr)
        output = part;
    if (pclose(pipe) != 0)
        throw std::runtime_error(command + "\nfailed: " + output);
}

PrivateRoot::PrivateRoot() : path_((fs::temp_directory_path() / "ph-bench-XXXXXX").string()) {
    if (mkdtemp(path_.data()) == nullptr)
        throw std::runtime_error("cannot make " + path_);
    for (const char* folder : {"conf", "tmp", "var/lib", "var/log", "usr/local/lib", "usr/sbin"})
        fs::create_directories(fs::path(path_) / folder);
    setenv("PH_SYSROOT", path_.c_str(), 1);
}

PrivateRoot::~PrivateRoot() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

} // namespace bench
