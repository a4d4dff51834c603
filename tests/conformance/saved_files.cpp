#include "saved_files.h"

#include <ctime>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

namespace fs = std::filesystem;

// File systems take the time of a change from a clock that goes by ticks, of 10 ms at most: two changes of one tick
// leave the same status.
constexpr long long tick = 40'000'000; // nanoseconds, with some to spare

long long nanoseconds(const timespec& time) {
    return time.tv_sec * 1'000'000'000LL + time.tv_nsec;
}

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path).rdbuf();
    return content.str();
}

void write(const std::string& path, const std::string& content) {
    std::ofstream(path) << content;
}

bool isFile(const fs::directory_entry& entry) {
    return entry.is_regular_file() && !entry.is_symlink();
}

bool isFolder(const fs::directory_entry& entry) {
    return entry.is_directory() && !entry.is_symlink();
}

} // namespace

SavedFiles::SavedFiles(const fs::path& folder) {
    save(folder);
}

void SavedFiles::save(const fs::path& folder) {
    folders_[folder.string()] = settledStatusOf(folder.string());
    for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string path = entry.path().string();
        if (isFolder(entry))
            save(entry.path());
        else if (isFile(entry))
            files_[path] = {contentOf(path), statusOf(path).mode, settledStatusOf(path)};
    }
}

void SavedFiles::restore() {
    for (auto& [path, file] : files_) {
        const Status now = statusOf(path);
        if (isSame(now, file.last))
            continue;
        if (!now.isKnown || contentOf(path) != file.content)
            write(path, file.content);
        if (now.mode != file.mode)
            chmod(path.c_str(), file.mode);
        file.last = settledStatusOf(path);
    }
    std::vector<std::string> changed;
    for (const auto& [path, last] : folders_)
        if (!isSame(statusOf(path), last))
            changed.push_back(path);
    for (const std::string& path : changed)
        removeNewFiles(path);
}

void SavedFiles::removeNewFiles(const fs::path& folder) {
    std::error_code gone;
    for (const auto& entry : fs::directory_iterator(folder, gone)) {
        const std::string path = entry.path().string();
        if (isFolder(entry) && !folders_.contains(path))
            removeNewFiles(path);
        else if (isFile(entry) && !files_.contains(path))
            fs::remove(entry.path());
    }
    folders_[folder.string()] = settledStatusOf(folder.string());
}

SavedFiles::Status SavedFiles::statusOf(const std::string& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0)
        return {};
    return {.isKnown = true,
            .number = status.st_ino,
            .size = status.st_size,
            .changed = status.st_ctim,
            .mode = status.st_mode & ALLPERMS};
}

// That of what has changed lately is no status yet: the next change may leave it as it is.
SavedFiles::Status SavedFiles::settledStatusOf(const std::string& path) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const Status status = statusOf(path);
    return nanoseconds(now) - nanoseconds(status.changed) > tick ? status : Status{};
}

bool SavedFiles::isSame(const Status& left, const Status& right) {
    return left.isKnown && right.isKnown && left.number == right.number && left.size == right.size &&
           nanoseconds(left.changed) == nanoseconds(right.changed);
}
