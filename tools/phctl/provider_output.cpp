#include "provider_output.h"

#include "errors.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <system_error>
#include <unistd.h>

namespace phctl {

ProviderOutput::Descriptor::~Descriptor() {
    ::close(number_);
}

ProviderOutput::ProviderOutput() : own_(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
    std::cout.flush();
    std::fflush(stdout);
    const char* debug = std::getenv("DEBUG_PROVIDER");
    const bool isWanted = debug != nullptr && std::string_view(debug) == "YES";
    const Descriptor target(isWanted ? dup(STDERR_FILENO) : ::open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (!own_ || !target || dup2(target.get(), STDOUT_FILENO) < 0)
        throw std::system_error(errno, std::generic_category(), "cannot redirect the providers' output");
}

ProviderOutput::~ProviderOutput() {
    std::fflush(stdout);
    dup2(own_.get(), STDOUT_FILENO);
}

void ProviderOutput::write(std::string_view text) const {
    while (!text.empty()) {
        const ssize_t written = ::write(own_.get(), text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            throw Failure("cannot write the output");
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace phctl
