#include "support/loop_process.h"

#include <cstdlib>

namespace bench {
namespace {

constexpr char loop[] = "loop";
constexpr char password[] = "IPMI_PASSWORD"; // that ipmitool -E reads, too

} // namespace

std::string loopCommand(const std::string& program, const ipmi::SessionSettings& settings) {
    setenv(password, settings.password.c_str(), 1);
    return program + ' ' + loop + ' ' + settings.address + ' ' + std::to_string(settings.port) + ' ' +
           settings.userName + ' ' + std::to_string(settings.workaroundFlags);
}

std::unique_ptr<ipmi::Transport> openLoop(int argc, char** argv) {
    if (argc != 6 || std::string(argv[1]) != loop)
        return nullptr;
    const char* given = std::getenv(password);
    return ipmi::openTransport({.address = argv[2],
                                .port = static_cast<std::uint16_t>(std::atoi(argv[3])),
                                .userName = argv[4],
                                .password = given != nullptr ? given : "",
                                .workaroundFlags = std::atoi(argv[5])});
}

} // namespace bench
