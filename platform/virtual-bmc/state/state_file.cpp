#include "virtual-bmc/state/state_file.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <new>
#include <sys/file.h>
#include <unistd.h>

namespace vbmc {
namespace {

FileHandle openLock(const std::filesystem::path& stateFile) {
    return openPrivate(stateFile.string() + ".lock", O_RDWR | O_CREAT);
}

// Nobody ever sees half of the file: it is written beside the old one and then takes its name.
FileHandle replace(const std::filesystem::path& path, std::string_view text) {
    const std::string beside = path.string() + ".new";
    FileHandle file = openPrivate(beside, O_RDWR | O_CREAT | O_TRUNC);
    if (!writeAll(file, text) || rename(beside.c_str(), path.c_str()) != 0) {
        const int reason = errno;
        unlink(beside.c_str());
        errno = reason;
        failWithErrno(path);
    }
    return file;
}

bool isSame(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec;
}

// What the last user of a state file in this process has left. To parse the whole text takes longer than most requests do,
// and the next session's differs in a few lines.
std::atomic<State*> leftState{nullptr};

State takeState(const std::filesystem::path& path) {
    const std::unique_ptr<State> left(leftState.exchange(nullptr));
    return left && left->file() == path ? std::move(*left) : State(path);
}

} // namespace

Lock::Lock(const FileHandle& file, const std::filesystem::path& stateFile) : descriptor_(file.get()) {
    while (flock(descriptor_, LOCK_EX) != 0)
        if (errno != EINTR)
            failWithErrno(stateFile);
}

Lock::~Lock() {
    flock(descriptor_, LOCK_UN);
}

StateFile::StateFile(std::filesystem::path path) : path_(std::move(path)), state_(takeState(path_)) {
    // Where there is no state file, no lock file is left either.
    if (access(path_.c_str(), F_OK) != 0)
        failWithErrno(path_);
    lock_ = openLock(path_);
    transact([](State&) {});
}

StateFile::~StateFile() {
    if (!state_.isEdited())
        delete leftState.exchange(new (std::nothrow) State(std::move(state_)));
}

void StateFile::refresh() {
    struct stat status = {};
    if (stat(path_.c_str(), &status) != 0)
        failWithErrno(path_);
    if (loaded_ && isSame(status, loadedStatus_))
        return;
    FileHandle file = openPrivate(path_, O_RDONLY);
    if (fstat(file.get(), &status) != 0)
        failWithErrno(path_);
    const std::string text = readAll(file, path_);
    try {
        state_.load(text);
    } catch (const Error& error) {
        fail(path_, error.what());
    }
    loaded_ = std::move(file);
    loadedStatus_ = status;
}

void StateFile::save() {
    FileHandle file = replace(path_, state_.text());
    struct stat status = {};
    if (fstat(file.get(), &status) != 0)
        failWithErrno(path_);
    state_.keep();
    loaded_ = std::move(file);
    loadedStatus_ = status;
}

void StateFile::create(const std::filesystem::path& path, State& state, Existing existing) {
    std::error_code error;
    if (path.has_parent_path())
        std::filesystem::create_directories(path.parent_path(), error);
    if (error)
        fail(path, error.message());
    const FileHandle lockFile = openLock(path);
    const Lock lock(lockFile, path);
    if (existing == Existing::Refuse && access(path.c_str(), F_OK) == 0)
        fail(path, "it exists already");
    replace(path, state.text());
    for (const char* const suffix : bulkFiles)
        std::filesystem::remove(path.string() + suffix, error);
}

} // namespace vbmc
