// Files of the machine: private to their user, descriptors with one owner.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

namespace vbmc {

class FileHandle {
public:
    FileHandle() = default;
    explicit FileHandle(int descriptor) : descriptor_(descriptor) {}
    FileHandle(FileHandle&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~FileHandle();

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

private:
    int descriptor_ = -1;
};

// Throw Error, which names the path and what is wrong with it, or why the last call failed as errno says.
[[noreturn]] void fail(const std::filesystem::path& path, const std::string& reason);
[[noreturn]] void failWithErrno(const std::filesystem::path& path);

// Opens a file; a new one has mode 0600. Does not follow a link. Throws Error.
FileHandle openPrivate(const std::filesystem::path& path, int flags);

std::string readAll(const FileHandle& file, const std::filesystem::path& path); // throws Error
bool writeAll(const FileHandle& file, std::string_view text);                   // false: errno says why

} // namespace vbmc
