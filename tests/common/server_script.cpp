#include "server_script.h"
#include "paths.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <fstream>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace {

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};

// Starts a program whose output `out` becomes the reading end of.
pid_t start(std::vector<std::string> words, std::unique_ptr<FILE, CloseFile>& out) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe2");
    out.reset(fdopen(ends[0], "r"));
    std::vector<char*> argv(words.size() + 1, nullptr);
    std::transform(words.begin(), words.end(), argv.begin(), [](std::string& word) { return word.data(); });
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    pid_t process = -1;
    const int error = posix_spawnp(&process, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (error != 0)
        throw std::system_error(error, std::generic_category(), words.front());
    return process;
}

} // namespace

ServerScript::ServerScript(const std::string& script, std::filesystem::path record,
                           std::vector<std::string> arguments)
    : record_(std::move(record)) {
    std::vector<std::string> words{std::string(paths::scripts) + "/" + script, "--record", record_.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::unique_ptr<FILE, CloseFile> out;
    process_ = start(std::move(words), out);
    unsigned port = 0;
    if (std::fscanf(out.get(), "port %u", &port) != 1) {
        stop();
        throw std::runtime_error(script + " does not listen");
    }
    port_ = static_cast<std::uint16_t>(port);
}

ServerScript::~ServerScript() {
    stop();
}

void ServerScript::stop() {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
}

std::vector<nlohmann::json> ServerScript::records() const {
    std::vector<nlohmann::json> all;
    std::ifstream file(record_);
    // A line without an end is still being written.
    for (std::string line; std::getline(file, line) && !file.eof();)
        all.push_back(nlohmann::json::parse(line));
    return all;
}

std::vector<nlohmann::json> ServerScript::records(std::size_t count, std::chrono::seconds patience) const {
    const auto end = std::chrono::steady_clock::now() + patience;
    auto all = records();
    while (all.size() < count && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        all = records();
    }
    return all;
}
