// Asks a BMC that is not to be trusted for all that the library asks one, and looks at what comes of it. Which requests, and
// what the BMC does to them, follows from a seed: what went wrong once can be had again.
#include "bmc_session.h"
#include "broker/object_manager.h"
#include "hostile_bmc.h"
#include "paths.h"
#include "platform_calls.h"
#include "questions.h"
#include "sampling.h"
#include "virtual_time.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string_view>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr char usage[] =
    R"(Usage: hostile_bmc_test [--seed N] [--first N] [--requests N | --minutes N] [--verbose]

Asks every class, association and hook of a BMC that answers anything. It says which request of which seed went wrong;
that one alone is asked with --seed N --first N --requests 1.

  --seed N      1 unless given; 0: another one each time
  --first N     begin with this request, from 0
  --requests N  10000 unless given; fewer where PH_SAMPLING says so
  --minutes N   as many requests as there is time for
  --verbose     name each request
  --unwatched   ask in this process, for a debugger
)";

struct Options {
    std::uint64_t seed = 1;
    std::uint64_t first = 0;
    std::uint64_t requests = 10'000 / sampling();
    std::uint64_t minutes = 0;
    bool isVerbose = false;
    bool isWatched = true;
};

std::uint64_t numberOf(const char* text) {
    char* end = nullptr;
    const std::uint64_t number = text != nullptr ? std::strtoull(text, &end, 10) : 0;
    if (end == nullptr || end == text || *end != '\0') {
        std::fputs(usage, stderr);
        std::exit(2);
    }
    return number;
}

Options parse(char** arguments) {
    Options options;
    while (*++arguments != nullptr) {
        const std::string_view name = *arguments;
        if (name == "--help") {
            std::fputs(usage, stdout);
            std::exit(0);
        }
        if (name == "--verbose")
            options.isVerbose = true;
        else if (name == "--unwatched")
            options.isWatched = false;
        else if (name == "--seed")
            options.seed = numberOf(*++arguments);
        else if (name == "--first")
            options.first = numberOf(*++arguments);
        else if (name == "--requests")
            options.requests = numberOf(*++arguments);
        else if (name == "--minutes")
            options.minutes = numberOf(*++arguments);
        else
            numberOf(nullptr);
    }
    if (options.seed == 0)
        options.seed =
            static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    return options;
}

// What the process that asks shares with the one that watches it.
struct Progress {
    std::uint64_t request = 0;
    std::uint64_t faulty = 0;
    char text[256] = "";
};

// The database is not counted: the platform keeps a connection to it.
std::ptrdiff_t openFiles() {
    std::error_code error; // a file may be closed meanwhile
    return std::ranges::count_if(fs::directory_iterator("/proc/self/fd"), [&](const auto& file) {
        return !fs::read_symlink(file, error).filename().string().starts_with("smash.db");
    });
}

// Sleeping would pass at once.
void waitReally(std::chrono::milliseconds time) {
    timespec rest{};
    rest.tv_sec = static_cast<std::time_t>(time.count() / 1000);
    rest.tv_nsec = static_cast<long>(time.count() % 1000 * 1'000'000);
    clock_nanosleep(CLOCK_MONOTONIC, 0, &rest, nullptr);
}

class Run {
public:
    Run(const Options& options, Progress& progress) : options_(options), progress_(progress) {
        fs::create_symlink(paths::library, machine_.place("/usr/local/lib/libProviderHelper.so"));
        broker_.loadProvider(paths::providerModule, "ProviderHelper");
        ipmi::SessionSettings settings = virtualBmc(machine_.place("/var/lib/virtual-bmc/bmc.state"));
        settings.interfaceType = ipmi::SessionSettings::Lan;
        subjects_ = {hostile::classes(broker_, machine_),
                     hostile::associations(broker_),
                     hostile::hooks(settings),
                     hostile::synchronisation(broker_, settings),
                     hostile::views(settings),
                     hostile::logFollower(machine_),
                     hostile::eventMonitor(machine_)};
        for (const auto& subject : subjects_)
            weights_ += subject.weight;
        hostile::Random random(0);
        subjects_.back().questions.front().ask(
            random); // what the monitor keeps, it has from its first event on
        waitReally(200ms);
        platformCalls.clear();
        platformCalls.records = false;
        platformCalls.duringPauses = [] { hostile::pass(1s); };
        openFiles_ = openFiles();
        liveObjects_ = broker_.liveObjects();
    }

    void askAll() {
        const auto end = std::time(nullptr) + static_cast<std::time_t>(options_.minutes * 60);
        const auto isOver = [&](std::uint64_t done) {
            return options_.minutes != 0 ? std::time(nullptr) >= end : done == options_.requests;
        };
        for (std::uint64_t done = 0; !isOver(done); ++done)
            ask(options_.first + done);
        report();
    }

private:
    void ask(std::uint64_t number) {
        hostile::Random random(options_.seed ^ (number + 1) * 0x9E3779B97F4A7C15);
        const auto& subject = pickSubject(random);
        const auto& question = random.of(subject.questions);
        progress_.request = number;
        std::snprintf(progress_.text, sizeof progress_.text, "%s", question.text.c_str());
        if (options_.isVerbose)
            std::fprintf(stderr, "%llu %s %s\n", static_cast<unsigned long long>(number), subject.name,
                         question.text.c_str());

        platformCalls.overdue.clear();
        hostile::misbehave(random.next());
        auto faults = question.ask(random);
        hostile::behave();
        for (const std::string& hook : platformCalls.overdue)
            faults.push_back(hook + " takes longer than its time");
        if (!leavesNothing())
            faults.emplace_back("a session, a database, an object or a file is left open");
        for (const std::string& fault : faults)
            std::fprintf(
                stderr, "request %llu of seed %llu, %s: %s\n", static_cast<unsigned long long>(number),
                static_cast<unsigned long long>(options_.seed), question.text.c_str(), fault.c_str());
        progress_.faulty += faults.empty() ? 0 : 1;
        if (question.changes)
            machine_.restore();
    }

    // The monitor is not done yet when its listener has the alert.
    bool leavesNothing() const {
        const auto isClean = [&] {
            return platformCalls.openSessions == 0 && platformCalls.openHandles == 0 &&
                   broker_.liveObjects() == liveObjects_ && openFiles() == openFiles_;
        };
        for (int attempt = 0; attempt < 200 && !isClean(); ++attempt)
            waitReally(10ms);
        return isClean();
    }

    const hostile::Subject& pickSubject(hostile::Random& random) const {
        std::size_t place = random.below(weights_);
        auto subject = subjects_.begin();
        for (; place >= subject->weight; ++subject)
            place -= subject->weight;
        return *subject;
    }

    void report() const {
        std::size_t questions = 0;
        for (const auto& subject : subjects_)
            questions += subject.questions.size();
        const auto counts = hostile::counts();
        std::printf("seed %llu: %llu requests of %zu kinds, %llu exchanges with the BMC, %llu of them bent\n",
                    static_cast<unsigned long long>(options_.seed),
                    static_cast<unsigned long long>(progress_.request - options_.first + 1), questions,
                    static_cast<unsigned long long>(counts.exchanges),
                    static_cast<unsigned long long>(counts.bent));
    }

    const Options& options_;
    Progress& progress_;
    Machine machine_{ipmi::SessionSettings::Lan};
    broker::Broker broker_;
    broker::ObjectManager objectManager_{broker_};
    std::vector<hostile::Subject> subjects_;
    std::size_t weights_ = 0;
    std::ptrdiff_t openFiles_ = 0; // and objects, that the event monitor keeps
    std::size_t liveObjects_ = 0;
};

// Ends a process that is with one request for so long: nothing waits, so it has no end.
constexpr std::chrono::milliseconds patience = 120s;

int watch(pid_t asking, const Progress& progress) {
    std::uint64_t seen = 0;
    std::chrono::milliseconds standing = 0ms;
    int status = 0;
    while (waitpid(asking, &status, WNOHANG) == 0) {
        waitReally(100ms);
        standing = progress.request == seen ? standing + 100ms : 0ms;
        seen = progress.request;
        if (standing == patience)
            kill(asking, SIGABRT);
    }
    return status;
}

} // namespace

int main(int, char** arguments) {
    const Options options = parse(arguments);
    void* const shared =
        mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED)
        return 2;
    auto& progress = *new (shared) Progress;
    const pid_t asking = options.isWatched ? fork() : 0;
    if (asking < 0)
        return 2;
    if (asking == 0) {
        Run(options, progress).askAll();
        std::fflush(nullptr);
        return progress.faulty != 0 ? 1 : 0;
    }
    const int status = watch(asking, progress);
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        return 0;
    std::fprintf(stderr, "%llu requests went wrong; the last one was %llu of seed %llu, %s (status %d)\n",
                 static_cast<unsigned long long>(progress.faulty),
                 static_cast<unsigned long long>(progress.request),
                 static_cast<unsigned long long>(options.seed), progress.text, status);
    return 1;
}
