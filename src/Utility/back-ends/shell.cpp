#include "Utility/back-ends/shell.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace ph {
namespace {

std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return result + "'";
}

// Finds where a word of the command begins with an absolute path.
bool beginsPath(std::string_view command, std::size_t position) {
    return command[position] == '/' && (position == 0 || command[position - 1] == ' ');
}

// Takes the command's absolute words below the root.
std::string belowSysroot(std::string_view command, std::string_view root) {
    const std::string place = quoted(root);
    std::string result;
    for (std::size_t i = 0; i < command.size(); ++i) {
        if (beginsPath(command, i))
            result += place;
        result += command[i];
    }
    return result;
}

std::string searchPath(const std::string& root) {
    std::string path = "PATH=";
    for (const char* folder : {"/usr/sbin:", "/usr/bin:", "/sbin:", "/bin:"})
        path += root + folder;
    return path + "/usr/bin:/bin";
}

// The command and its environment. The search path is no part of the command: a process list shows that.
class ShellCommand {
public:
    explicit ShellCommand(const char* command) : text_(command) {
        const char* root = secure_getenv("PH_SYSROOT");
        const bool isBelowRoot = root != nullptr && *root != '\0';
        if (isBelowRoot) {
            text_ = belowSysroot(command, root);
            path_ = searchPath(root);
        }
        for (char** entry = environ; *entry != nullptr; ++entry)
            if (!isBelowRoot || !std::string_view(*entry).starts_with("PATH="))
                environment_.push_back(*entry);
        if (isBelowRoot)
            environment_.push_back(path_.data());
        environment_.push_back(nullptr);
    }
    std::string& text() { return text_; }
    char** environment() { return environment_.data(); }

private:
    std::string text_;
    std::string path_;
    std::vector<char*> environment_;
};

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// A running shell, whose descriptor `descriptor` can be read here.
class Shell {
public:
    Shell(ShellCommand& command, int descriptor) {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], descriptor);
        char name[] = "sh", option[] = "-c";
        char* const arguments[] = {name, option, command.text().data(), nullptr};
        if (posix_spawn(&process_, "/bin/sh", &actions, nullptr, arguments, command.environment()) != 0)
            process_ = -1;
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        output_.reset(fdopen(ends[0], "r"));
        if (output_ == nullptr)
            close(ends[0]);
    }
    // A child that somebody else has waited for, or that SIGCHLD ignored reaps, is gone already.
    ~Shell() {
        output_.reset();
        while (process_ != -1 && waitpid(process_, nullptr, 0) == -1 && errno == EINTR)
            continue;
    }
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    bool isRunning() const { return process_ != -1 && output_ != nullptr; }
    std::FILE* output() const { return output_.get(); }

private:
    pid_t process_ = -1;
    File output_{nullptr, std::fclose};
};

} // namespace

// The shell reports the status itself: where the process ignores SIGCHLD, waiting for a child gives none.
// What the command leaves running must not hold the report's end open.
int runCommand(const char* command) {
    constexpr int report = 3;
    ShellCommand reporting(command);
    reporting.text() = "{ " + reporting.text() + "; } 3>&-; echo $? >&3";
    const Shell shell(reporting, report);
    int status = -1;
    return shell.isRunning() && std::fscanf(shell.output(), "%d", &status) == 1 ? status : -1;
}

int readCommand(const char* command, std::size_t lineSize,
                const std::function<bool(std::string_view)>& visit) {
    ShellCommand reading(command);
    const Shell shell(reading, STDOUT_FILENO);
    if (!shell.isRunning())
        return -1;
    std::vector<char> line(lineSize);
    while (std::fgets(line.data(), static_cast<int>(line.size()), shell.output()) != nullptr)
        if (!visit(line.data()))
            break;
    return 0;
}

} // namespace ph
