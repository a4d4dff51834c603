// A test with a PH_SYSROOT of its own, removed afterwards.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
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

private:
    std::filesystem::path root_;
};

class SysrootFixture : public ::testing::Test {
protected:
    void write(std::string_view absolutePath, std::string_view text) const {
        std::ofstream(sysroot.place(absolutePath)) << text;
    }

    Sysroot sysroot;
};
