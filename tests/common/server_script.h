// A server of tests/support, running for as long as the object lives. Link with ph_test_server_script.
#pragma once

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <sys/types.h>
#include <vector>

class ServerScript {
public:
    // Returns when it listens. `record` is the file that it appends to: best below the test's sysroot.
    ServerScript(const std::string& script, std::filesystem::path record,
                 std::vector<std::string> arguments = {});
    ~ServerScript();
    ServerScript(const ServerScript&) = delete;
    ServerScript& operator=(const ServerScript&) = delete;

    std::uint16_t port() const { return port_; }
    // What it wrote down so far; the second waits until there are so many.
    std::vector<nlohmann::json> records() const;
    std::vector<nlohmann::json> records(std::size_t count,
                                        std::chrono::seconds patience = std::chrono::seconds(30)) const;

private:
    void stop();

    std::filesystem::path record_;
    pid_t process_ = -1;
    std::uint16_t port_ = 0;
};
