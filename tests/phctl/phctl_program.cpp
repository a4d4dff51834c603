#include "phctl_program.h"

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

namespace ph_test {
namespace {

namespace fs = std::filesystem;

void require(bool succeeded, const char* what) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name = (fs::temp_directory_path() / "ph-phctl-XXXXXX").string();
        require(mkdtemp(name.data()) != nullptr, "mkdtemp");
        path = name;
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        fs::remove_all(path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    fs::path path;
};

std::string read(const fs::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

// A build for another machine runs under an emulator.
std::vector<std::string> commandLine(const std::vector<std::string>& arguments) {
    std::vector<std::string> words;
    std::istringstream emulator(PH_EMULATOR);
    for (std::string word; std::getline(emulator, word, ' ');)
        words.push_back(word);
    words.emplace_back(PH_PHCTL);
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
    const TemporaryFolder folder;
    const fs::path out = folder.path / "out", err = folder.path / "err";
    auto words = commandLine(arguments);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT, 0600);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT, 0600);
    pid_t process = -1;
    errno = posix_spawnp(&process, words.front().c_str(), &actions, nullptr, pointers(words).data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    require(errno == 0, words.front().c_str());
    const int status = waitFor(process);
    return {status, read(out), read(err)};
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
