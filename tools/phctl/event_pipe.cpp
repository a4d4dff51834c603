#include "event_pipe.h"

#include "errors.h"

#include <platform/sysroot.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace phctl {
namespace {

struct Pipe {
    std::string path;
    int descriptor;

    explicit Pipe(std::string name)
        : path(std::move(name)),
          descriptor(open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW)) {}
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

} // namespace

void writeToEventPipe(const SelEventMessage& message) {
    const Pipe pipe(pipePath());
    if (pipe.descriptor < 0)
        throw Failure(pipe.path + ": " +
                      (errno == ENXIO ? std::string("nobody reads from it") : std::strerror(errno)) +
                      " (is the indication monitor running?)");
    if (!pipe.isPipe())
        throw Failure(pipe.path + ": not a pipe");
    std::signal(SIGPIPE, SIG_IGN); // a reader that ends just now is an error like others
    if (write(pipe.descriptor, &message, sizeof message) != sizeof message)
        throw Failure(pipe.path + ": " +
                      (errno == EAGAIN ? std::string("it is full: the monitor does not keep up")
                                       : std::strerror(errno)));
}

} // namespace phctl
