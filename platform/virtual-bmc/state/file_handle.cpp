#include "virtual-bmc/state/file_handle.h"

#include "virtual-bmc/virtual_bmc.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vbmc {
namespace {

constexpr mode_t privateMode = S_IRUSR | S_IWUSR; // the state has users and what proves who they are

} // namespace

FileHandle::~FileHandle() {
    if (descriptor_ >= 0)
        close(descriptor_);
}

void fail(const std::filesystem::path& path, const std::string& reason) {
    throw Error(path.string() + ": " + reason);
}

void failWithErrno(const std::filesystem::path& path) {
    fail(path, std::strerror(errno));
}

FileHandle openPrivate(const std::filesystem::path& path, int flags) {
    FileHandle file(::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, privateMode));
    if (!file)
        failWithErrno(path);
    return file;
}

std::string readAll(const FileHandle& file, const std::filesystem::path& path) {
    std::string text;
    char buffer[64 * 1024];
    for (;;) {
        const ssize_t count = ::read(file.get(), buffer, sizeof buffer);
        if (count == 0)
            return text;
        if (count > 0)
            text.append(buffer, static_cast<std::size_t>(count));
        else if (errno != EINTR)
            failWithErrno(path);
    }
}

bool writeAll(const FileHandle& file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = ::write(file.get(), text.data(), text.size());
        if (count >= 0)
            text.remove_prefix(static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return false;
    }
    return true;
}

} // namespace vbmc
