#include "support/contest.h"

#include "support/count.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

namespace bench {

namespace fs = std::filesystem;

namespace {

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

// Of the rounds, each beside the yardstick's of the same round.
double medianRatio(const std::vector<double>& seconds, const std::vector<double>& yardstick) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < seconds.size(); ++i)
        ratios.push_back(seconds[i] / yardstick[i]);
    return median(std::move(ratios));
}

void print(const Contest& contest) {
    const auto& yardstick = contest.results.back().seconds;
    std::printf("%s, %zu rounds\n%-48s %9s %6s %10s %6s %9s\n", contest.title.c_str(), yardstick.size(), "",
                "min ms", "ratio", "median ms", "ratio", "messages");
    for (const Result& result : contest.results) {
        std::printf("%-48s %9.1f %6.2f %10.1f %6.2f", result.name.c_str(),
                    std::ranges::min(result.seconds) * 1e3,
                    std::ranges::min(result.seconds) / std::ranges::min(yardstick),
                    median(result.seconds) * 1e3, medianRatio(result.seconds, yardstick));
        if (result.messages > 0)
            std::printf(" %9zu", result.messages);
        std::printf("\n");
    }
    std::printf("\n");
}

nlohmann::ordered_json jsonOf(const Contest& contest) {
    auto contestants = nlohmann::ordered_json::array();
    for (const Result& result : contest.results)
        contestants.push_back(
            {{"name", result.name}, {"seconds", result.seconds}, {"messages", result.messages}});
    return {{"id", contest.id}, {"title", contest.title}, {"contestants", std::move(contestants)}};
}

int complain(const char* program, const std::string& problem) {
    std::fprintf(stderr, "%s: %s (--help)\n", program, problem.c_str());
    return 2;
}

} // namespace

std::optional<int> readOptions(int argc, char** argv, const char* about, ContestOptions& options) {
    constexpr int mostRounds = 10'000;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument == "--help" || argument == "-h") {
            std::printf("Usage: %s [--json FILE] [ROUNDS]\n%s\n", argv[0], about);
            return 0;
        }
        if (argument == "--json") {
            if (++i == argc)
                return complain(argv[0], "--json needs a file");
            options.json = argv[i];
            continue;
        }
        const auto rounds = readCount(argument, mostRounds);
        if (!rounds)
            return complain(argv[0], "expected a number of rounds instead of " + argument);
        options.rounds = *rounds;
    }
    return std::nullopt;
}

int contestMain(int argc, char** argv, const char* about, void (*run)(const ContestOptions&)) try {
    ContestOptions options;
    if (const auto status = readOptions(argc, argv, about, options))
        return *status;
    run(options);
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, error.what());
    return 1;
}

Contest contest(std::string id, std::string title, const std::vector<Contestant>& contestants, int rounds) {
    using Clock = std::chrono::steady_clock;
    Contest contest{std::move(id), std::move(title), {}};
    for (const Contestant& contestant : contestants) {
        const std::size_t before = contestant.count ? contestant.count() : 0;
        contestant.run();
        contest.results.push_back({contestant.name, {}, contestant.count ? contestant.count() - before : 0});
    }
    for (int round = 1; round <= rounds; ++round) {
        std::fprintf(stderr, "%s: round %d of %d\n", contest.id.c_str(), round, rounds);
        for (std::size_t i = 0; i < contestants.size(); ++i) {
            const auto begin = Clock::now();
            contestants[i].run();
            contest.results[i].seconds.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
        }
    }
    return contest;
}

void report(const std::vector<Contest>& contests, const ContestOptions& options) {
    auto all = nlohmann::ordered_json::array();
    for (const Contest& each : contests) {
        print(each);
        all.push_back(jsonOf(each));
    }
    if (!options.json.empty() && !(std::ofstream(options.json) << all.dump(1) << '\n' << std::flush))
        throw std::runtime_error("cannot write " + options.json);
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
