// Ways of doing the same thing, timed in turn so that what disturbs the machine disturbs them all.
#pragma once

#include <functional>
#include <optional>
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
    std::vector<double> seconds; // of each round
    std::size_t messages = 0;    // of one run
};

struct ContestOptions {
    int rounds = 7;
    std::string json; // file for the raw figures; none when it is empty
};

// Reads "[--json FILE] [ROUNDS]", and answers --help with `about`. Returns the exit status when the program is to end now.
// Wrong arguments are told on stderr.
std::optional<int> readOptions(int argc, char** argv, const char* about, ContestOptions& options);

// The main() of a program that has options of a contest only: reads them and calls `run`, whose exceptions it tells on stderr.
int contestMain(int argc, char** argv, const char* about, void (*run)(const ContestOptions& options));

// A contest by itself. Runs each contestant once to warm up, then all of them in turn for so many rounds; tells on stderr
// which round it is. The yardstick is the last contestant.
struct Contest {
    std::string id; // for programs: "sensors"
    std::string title;
    std::vector<Result> results;
};
Contest contest(std::string id, std::string title, const std::vector<Contestant>& contestants, int rounds);

// Prints a table of each, with each minimum as a multiple of the yardstick's and the median of the ratios of all rounds,
// and writes the raw figures where the options say so. Throws std::runtime_error.
void report(const std::vector<Contest>& contests, const ContestOptions& options);

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
