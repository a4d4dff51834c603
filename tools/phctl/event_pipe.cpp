#include "event_pipe.h"

#include "errors.h"

#include <platform/sysroot.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace phctl {
namespace {

struct Pipe {
    std::string path;
    int descriptor;

    explicit Pipe(std::string name)
        : path(std::move(name)),
          descriptor(::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW)) {}
    ~Pipe() {
        if (descriptor >= 0)
            close(descriptor);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    bool isPipe() const {
        struct stat status = {};
        return fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
    }
};

std::string pipePath() {
    char path[4096];
    if (PH_SysrootPath(SEL_EVENT_PIPE, path, sizeof path) != 0)
        throw Failure("PH_SYSROOT is too long");
    return path;
}

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw Failure(path + ": " + reason);
}

[[noreturn]] void refuseSecondReader(const std::string& path) {
    fail(path, "somebody reads from it already: another monitor, or an object manager");
}

} // namespace

void writeToEventPipe(const SelEventMessage& message) {
    const Pipe pipe(pipePath());
    if (pipe.descriptor < 0)
        fail(pipe.path, (errno == ENXIO ? std::string("nobody reads from it") : std::strerror(errno)) +
                            " (is the indication monitor running?)");
    if (!pipe.isPipe())
        fail(pipe.path, "not a pipe");
    std::signal(SIGPIPE, SIG_IGN); // a reader that ends just now is an error like others
    if (write(pipe.descriptor, &message, sizeof message) != sizeof message)
        fail(pipe.path, errno == EAGAIN ? std::string("it is full: the monitor does not keep up")
                                        : std::strerror(errno));
}

EventPipeClaim::EventPipeClaim() : path_(pipePath()) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
    // The process that had the pipe may remove it while it is opened here.
    while (!tryToClaim()) {
    }
}

EventPipeClaim::~EventPipeClaim() {
    if (isThePipe())
        unlink(path_.c_str());
    close(descriptor_);
}

bool EventPipeClaim::tryToClaim() {
    constexpr mode_t everyoneWrites = 0666; // as the library makes it
    struct stat status = {};
    if (lstat(path_.c_str(), &status) == 0 && !S_ISFIFO(status.st_mode))
        fail(path_, "not a pipe");
    if (mkfifo(path_.c_str(), everyoneWrites) != 0 && errno != EEXIST)
        fail(path_, std::strerror(errno));
    if (const Pipe writer(path_); writer.descriptor >= 0)
        refuseSecondReader(path_);
    else if (errno != ENXIO && errno != ENOENT)
        fail(path_, std::strerror(errno));
    descriptor_ = ::open(path_.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor_ < 0 && errno != ENOENT)
        fail(path_, std::strerror(errno));
    const bool isLocked = descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) == 0;
    if (isLocked && isThePipe())
        return true;
    close(std::exchange(descriptor_, -1));
    if (!isLocked)
        refuseSecondReader(path_);
    return false;
}

bool EventPipeClaim::isThePipe() const {
    struct stat own = {}, named = {};
    return fstat(descriptor_, &own) == 0 && lstat(path_.c_str(), &named) == 0 && own.st_dev == named.st_dev &&
           own.st_ino == named.st_ino && S_ISFIFO(own.st_mode);
}

} // namespace phctl
