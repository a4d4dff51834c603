// The CLP daemon's processes, through the system's commands.
#include "services/clp_daemon.h"

#include "provider_helper/services.h"
#include "Utility/back-ends/shell.h"
#include "Utility/engine/guard.h"
#include "Utility/requests/request_status.h"
#include "Utility/values/dmtf_values.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <unistd.h>

namespace ph {
namespace {

constexpr std::size_t lineSize = 64;     // of a process list
constexpr unsigned int pauseSeconds = 2; // for processes to end

bool holds(std::string_view line, std::string_view word) {
    return line.find(word) != std::string_view::npos;
}

// Visits the lines of a process list that `isOne` accepts; `take` returns false to stop. Returns -1 when there is
// no list.
template <class Take>
int visitProcesses(const char* command, bool (*isOne)(std::string_view line), Take take) {
    return readCommand(command, lineSize, [&](std::string_view line) {
        return !isOne(line) || holds(line, "grep") || take(line);
    });
}

// Returns 0 when there is such a process.
int findProcess(const char* command, bool (*isOne)(std::string_view line)) {
    return guarded(-1, [&] {
        bool isFound = false;
        const int result =
            visitProcesses(command, isOne, [&](std::string_view) { return !(isFound = true); });
        return result == 0 && isFound ? 0 : -1;
    });
}

constexpr const char* listClients = "ps ax | grep smashclp";
bool isClient(std::string_view line) {
    return holds(line, "smashclp") && holds(line, "pts");
}

int runAndPause(const char* command) {
    const int result = runCommand(command);
    sleep(pauseSeconds);
    return result;
}

void endClients() {
    if (PH_IsSmashclpRunning() == 0)
        runAndPause("killall smashclp");
}

int start() {
    const int cleared = runCommand("rm -rf /tmp/smash*");
    return runCommand("/usr/local/bin/smashclpd") == -1 || cleared == -1 ? -1 : 0;
}

int changeDaemon(std::uint16_t requestedState, char* message) {
    const bool isRunning = PH_IsSmashclpdRunning() == 0;
    switch (requestedState) {
    case RequestedState::Enabled:
        if (isRunning)
            return explain(message, PH_SERVICE_MESSAGE_SIZE,
                           "An instance of SMASHCLPD server is already running...!");
        return start() == 0
                   ? 0
                   : explain(message, PH_SERVICE_MESSAGE_SIZE, "Internal Error : Failed to invoke method");
    case RequestedState::Disabled:
        if (!isRunning)
            return explain(message, PH_SERVICE_MESSAGE_SIZE, "SMASHCLPD server is not running currently...!");
        endClients();
        runAndPause("killall -1 smashclpd"); // the daemon ends its sessions in order on a hang-up
        return 0;
    case RequestedState::Reset:
        if (isRunning) {
            endClients();
            runAndPause("killall smashclpd");
        }
        start();
        return 0;
    default:
        return explain(message, PH_SERVICE_MESSAGE_SIZE, "RequestedState value is Invalid");
    }
}

} // namespace

int listClpClients(std::vector<std::uint32_t>& processes) {
    return visitProcesses(listClients, isClient, [&](std::string_view line) {
        line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
        std::uint32_t number = 0;
        if (std::from_chars(line.data(), line.data() + line.size(), number).ec == std::errc())
            processes.push_back(number);
        return true;
    });
}

} // namespace ph

int PH_IsSmashclpdRunning(void) {
    return ph::findProcess("ps ax | grep smashclpd",
                           [](std::string_view line) { return ph::holds(line, "smashclpd"); });
}

int PH_IsSmashclpRunning(void) {
    return ph::findProcess(ph::listClients, ph::isClient);
}

int PH_ChangeState_CLPProtocolService(uint16_t requestedState, char* message) {
    return ph::guarded(-1, [&] { return ph::changeDaemon(requestedState, message); });
}
