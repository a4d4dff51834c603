#include "check_platform/isolation.h"

#include "check_platform/probe.h"
#include "errors.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <optional>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace phctl::check {
namespace {

using nlohmann::ordered_json;

constexpr int graceSeconds = 5; // that a function may be late before it counts as one that hangs

// What the process does that calls the platform. It prints nothing: the report is on standard output.
[[noreturn]] void runChecks(const char* library, const char* function, Check check,
                            const Probe::Settings& settings) {
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, descriptor);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    try {
        Probe probe(library, function, settings);
        if (!probe.isThere())
            probe.reportMissing();
        else if (check != nullptr)
            check(probe);
    } catch (const std::exception& error) {
        tell(settings.channel, {{"impossible", error.what()}});
    }
    tell(settings.channel, {{"end", true}});
    _exit(0);
}

// What one process has told, up to its end.
class Session {
public:
    Session(const char* library, const char* function, Check check, int timeout, unsigned first)
        : library_(library), function_(function), patience_(timeout + graceSeconds) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw Failure(std::string("pipe: ") + std::strerror(errno));
        process_ = fork();
        if (process_ == 0) {
            close(ends[0]);
            runChecks(library, function, check, {.timeout = timeout, .first = first, .channel = ends[1]});
        }
        close(ends[1]);
        channel_ = ends[0];
        if (process_ == -1)
            throw Failure(std::string("fork: ") + std::strerror(errno));
    }
    ~Session() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
        close(channel_);
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Returns whether the process has come to its end, so that nothing is left to be called.
    bool run() {
        while (!hasEnded_) {
            pollfd waiting{channel_, POLLIN, 0};
            const int ready = poll(&waiting, 1, patience_ * 1000);
            if (ready < 0 && errno == EINTR)
                continue;
            if (ready == 0) {
                blame("it does not return within " + std::to_string(patience_) + " s");
                return true; // each further call might take as long
            }
            char bytes[4096];
            const ssize_t length = read(channel_, bytes, sizeof bytes);
            if (length <= 0) {
                blameCrash();
                return false;
            }
            take({bytes, static_cast<std::size_t>(length)});
        }
        return true;
    }

    std::vector<Report> reports;

private:
    void take(std::string_view bytes) {
        text_ += bytes;
        for (std::size_t end; (end = text_.find('\n')) != std::string::npos; text_.erase(0, end + 1))
            handle(ordered_json::parse(text_.substr(0, end)));
    }

    void handle(const ordered_json& event) {
        if (event.contains("call")) {
            open_ = Report{library_, function_, event["call"], Outcome::NotCalled, {}, 0};
            step_.clear();
        } else if (event.contains("step")) {
            step_ = event["step"];
        } else if (event.contains("allow")) {
            patience_ = std::max(patience_, event["allow"].get<int>());
        } else if (event.contains("impossible")) {
            reports.push_back({library_, function_, {}, Outcome::NotCalled, event["impossible"], 0});
        } else if (event.contains("outcome") && open_) {
            open_->outcome = event["outcome"];
            open_->remark = event["remark"];
            open_->milliseconds = event["milliseconds"];
            reports.push_back(*std::exchange(open_, std::nullopt));
        } else if (event.contains("end")) {
            hasEnded_ = true;
        }
    }

    void blame(std::string fault) {
        Report report = open_.value_or(Report{library_, function_, {}, {}, {}, 0});
        if (!step_.empty())
            fault += ", in " + step_;
        report.outcome = Outcome::BreaksContract;
        report.remark = std::move(fault);
        reports.push_back(report);
    }

    void blameCrash() {
        int status = 0;
        waitpid(std::exchange(process_, -1), &status, 0);
        blame(WIFSIGNALED(status) ? std::string("it crashes (SIG") + sigabbrev_np(WTERMSIG(status)) + ')'
                                  : "it ends the process");
    }

    const char* library_;
    const char* function_;
    int patience_;
    pid_t process_ = -1;
    int channel_ = -1;
    std::string text_; // of a line that is not complete
    std::optional<Report> open_;
    std::string step_;
    bool hasEnded_ = false;
};

} // namespace

// After a crash, the calls behind it are made in another process.
std::vector<Report> checkIsolated(const char* library, const char* function, Check check, int timeout) {
    constexpr int mostCrashes = 3;
    std::vector<Report> reports;
    for (int crashes = 0; crashes < mostCrashes; ++crashes) {
        Session session(library, function, check, timeout, static_cast<unsigned>(reports.size()));
        const bool isOver = session.run();
        reports.insert(reports.end(), session.reports.begin(), session.reports.end());
        if (isOver)
            break;
    }
    return reports;
}

} // namespace phctl::check
