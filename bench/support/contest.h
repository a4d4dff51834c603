// Ways of doing the same thing, timed in turn so that what disturbs the machine disturbs them all.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Contestant {
    std::string name;
    std::function<void()> run;          // throws when it fails
    std::function<std::size_t()> count; // of messages so far; may be empty
};

struct Result {
    std::string name;
    double minimum = 0; // seconds
    double median = 0;
    double maximum = 0;
    std::size_t messages = 0; // of one run
};

// Runs each once to warm up, then `rounds` times in turn.
std::vector<Result> contest(const std::vector<Contestant>& contestants, int rounds);

// A table with each minimum and each median as a multiple of the last contestant's: the yardstick comes last.
void print(const std::string& title, const std::vector<Result>& results);

// Runs a shell command with its output thrown away. Throws with its end when its status is not 0.
void runCommand(const std::string& command);

// A folder for one program's run, which PH_SYSROOT names.
class PrivateRoot {
public:
    PrivateRoot();
    ~PrivateRoot();
    PrivateRoot(const PrivateRoot&) = delete;
    PrivateRoot& operator=(const PrivateRoot&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

} // namespace bench
