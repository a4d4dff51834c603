// A test with a PH_SYSROOT of its own, removed afterwards.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

class Sysroot {
public:
    Sysroot() {
        std::string name = (std::filesystem::temp_directory_path() / "ph-test-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary directory");
        root_ = name;
        for (const char* folder : {"conf", "tmp", "usr/local/lib", "var/lib", "var/log"})
            std::filesystem::create_directories(root_ / folder);
        setenv("PH_SYSROOT", root_.c_str(), 1);
    }
    ~Sysroot() {
        unsetenv("PH_SYSROOT");
        std::error_code ignored;
        std::filesystem::remove_all(root_, ignored);
    }
    Sysroot(const Sysroot&) = delete;
    Sysroot& operator=(const Sysroot&) = delete;

    // The place of an absolute path.
    std::filesystem::path place(std::string_view absolutePath) const {
        return root_ / std::filesystem::path(absolutePath).relative_path();
    }
    // A command that notes in /commands how it was called, and does what `script` says.
    void standIn(std::string_view absolutePath, std::string_view script = "") const {
        const auto file = place(absolutePath);
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << "#!/bin/sh\necho \"${0##*/}${*:+ $*}\" >>\"$PH_SYSROOT/commands\"\n"
                            << script << '\n';
        std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    }
    // The commands that the library runs and that a test must not: nothing may reach the machine's own.
    void standInForCommands() const {
        for (const char* command : {"/usr/sbin/reboot", "/usr/bin/killall"})
            standIn(command);
        standIn("/usr/bin/ps", "cat \"$PH_SYSROOT/processes\" 2>/dev/null");
        standIn("/usr/local/bin/smashclpd", "echo ' 100 ?   S  0:00 smashclpd' >\"$PH_SYSROOT/processes\"");
    }

private:
    std::filesystem::path root_;
};

class SysrootFixture : public ::testing::Test {
protected:
    void write(std::string_view absolutePath, std::string_view text) const {
        std::ofstream(sysroot.place(absolutePath)) << text;
    }
    std::string contents(std::string_view absolutePath) const {
        std::ifstream file(sysroot.place(absolutePath), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    Sysroot sysroot;
};
