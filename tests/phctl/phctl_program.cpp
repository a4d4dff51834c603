#include "phctl_program.h"
#include "paths.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <pty.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace ph_test {
namespace {

namespace fs = std::filesystem;

void require(bool succeeded, const char* what) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

fs::path makeFolder() {
    std::string name = (fs::temp_directory_path() / "ph-phctl-XXXXXX").string();
    require(mkdtemp(name.data()) != nullptr, "mkdtemp");
    return name;
}

std::string read(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

// A build for another machine runs under an emulator.
std::vector<std::string> commandLine(const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
    std::istringstream emulator(PH_EMULATOR);
    for (std::string word; std::getline(emulator, word, '|');)
        words.push_back(word);
    words.emplace_back(paths::phctl);
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

std::vector<char*> pointers(std::vector<std::string>& words) {
    std::vector<char*> all(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), all.begin(), [](std::string& word) { return word.data(); });
    return all;
}

int waitFor(pid_t process) {
    int status = 0;
    require(waitpid(process, &status, 0) == process, "waitpid");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

Outcome phctl(const std::vector<std::string>& arguments) {
    return RunningPhctl(arguments).wait();
}

RunningPhctl::RunningPhctl(const std::vector<std::string>& arguments, fs::path out)
    : folder_(makeFolder()), out_(out.empty() ? folder_ / "out" : std::move(out)) {
    const fs::path err = folder_ / "err";
    auto words = commandLine(arguments);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out_.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT, 0600);
    errno =
        posix_spawnp(&process_, words.front().c_str(), &actions, nullptr, pointers(words).data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    require(errno == 0, words.front().c_str());
}

RunningPhctl::~RunningPhctl() {
    if (process_ > 0) {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

void RunningPhctl::interrupt() const {
    if (process_ > 0)
        kill(process_, SIGINT);
}

Outcome RunningPhctl::wait() {
    const int status = waitFor(std::exchange(process_, -1));
    return {status, fs::is_regular_file(out_) ? read(out_) : "", read(folder_ / "err")};
}

Outcome phctlOnTerminal(const std::vector<std::string>& arguments, unsigned short columns) {
    auto words = commandLine(arguments);
    auto argv = pointers(words);
    const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    int terminal = -1;
    const pid_t process = forkpty(&terminal, nullptr, nullptr, &size);
    require(process >= 0, "forkpty");
    if (process == 0) {
        execvp(argv[0], argv.data());
        _exit(127);
    }
    std::string out;
    char part[512];
    for (ssize_t length; (length = ::read(terminal, part, sizeof part)) > 0;) // ends with EIO
        out.append(part, static_cast<std::size_t>(length));
    ::close(terminal);
    const int status = waitFor(process);
    std::erase(out, '\r');
    return {status, out, {}};
}

} // namespace ph_test
