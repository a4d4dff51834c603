// Runs the built phctl as a person or a script does.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ph_test {

struct Outcome {
    int status = -1; // exit status; 128 and more: ended by a signal
    std::string out;
    std::string err;

    nlohmann::json json() const { return nlohmann::json::parse(out); }
};

// With the environment of the test, which says where PH_SYSROOT is.
Outcome phctl(const std::vector<std::string>& arguments);

// One that goes on until it is ended, or by itself. `out` is where its output goes, to its outcome by
// default.
class RunningPhctl {
public:
    explicit RunningPhctl(const std::vector<std::string>& arguments, std::filesystem::path out = {});
    ~RunningPhctl(); // kills it
    RunningPhctl(const RunningPhctl&) = delete;
    RunningPhctl& operator=(const RunningPhctl&) = delete;

    void interrupt() const; // SIGINT
    Outcome wait();

private:
    std::filesystem::path folder_; // of its own
    std::filesystem::path out_;
    pid_t process_ = -1;
};

// The same on a terminal of so many columns, whose output is in `out`.
Outcome phctlOnTerminal(const std::vector<std::string>& arguments, unsigned short columns);

} // namespace ph_test
