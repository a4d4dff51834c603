// power: the host's power, asked of the BMC and changed over IPMI.
#include "bmc_connection.h"
#include "commands.h"
#include "errors.h"
#include "ipmi-view/chassis_status.h"
#include "ipmi/command.h"
#include "json_text.h"

#include <algorithm>
#include <iostream>
#include <nlohmann/json.hpp>
#include <thread>

namespace phctl {
namespace {

using ipmi::ChassisControl;
using nlohmann::ordered_json;

struct Action {
    const char* name;
    ChassisControl control;
    bool endsOn; // the host's power when it is done
};

constexpr Action actions[] = {
    {"on", ChassisControl::PowerUp, true},         {"off", ChassisControl::PowerDown, false},
    {"cycle", ChassisControl::PowerCycle, true},   {"reset", ChassisControl::HardReset, true},
    {"soft", ChassisControl::SoftShutdown, false}, {"diag", ChassisControl::DiagnosticInterrupt, true},
};
constexpr const char* statusOnly = "status";

struct PowerOptions {
    BmcConnection connection;
    std::string action = statusOnly;
    std::optional<unsigned> wait; // seconds
    bool json = false;
};

const char* powerText(const view::ChassisStatus& status) {
    return status.isOn() ? "on" : "off";
}

ordered_json statusJson(const view::ChassisStatus& status) {
    ordered_json json = {{"power", powerText(status)}, {"restorePolicy", status.restorePolicy()}};
    auto conditions = ordered_json::array();
    for (const view::ChassisCondition& condition : view::chassisConditions())
        if (condition.isIn(status))
            conditions.push_back(condition.name);
    json["conditions"] = std::move(conditions);
    json["lastPowerEvent"] = status.lastEvents();
    return json;
}

void print(const view::ChassisStatus& status) {
    std::cout << "Power: " << powerText(status) << '\n';
    for (const view::ChassisCondition& condition : view::chassisConditions())
        if (condition.isIn(status))
            std::cout << condition.name << ": yes\n";
    std::cout << "After a loss of mains power: " << status.restorePolicy() << '\n';
    for (const char* event : status.lastEvents())
        std::cout << "Last power event: " << event << '\n';
}

int showStatus(const PowerOptions& options) {
    const auto bmc = options.connection.open();
    const auto status = view::readChassisStatus(*bmc);
    if (options.json)
        printJson(std::cout, statusJson(status));
    else
        print(status);
    return done;
}

// A BMC that has just switched the host may not tell the power for a moment.
view::ChassisStatus waitForPower(ipmi::Transport& bmc, bool isOn, unsigned seconds) {
    constexpr auto pause = std::chrono::milliseconds(250);
    const auto end = ipmi::Clock::now() + std::chrono::seconds(seconds);
    for (;;) {
        const bool isLast = ipmi::Clock::now() + pause > end;
        try {
            const auto status = view::readChassisStatus(bmc);
            if (isLast || status.isOn() == isOn)
                return status;
        } catch (const ipmi::CompletionCodeError&) {
            if (isLast)
                throw;
        }
        std::this_thread::sleep_for(pause);
    }
}

void control(ipmi::Transport& bmc, const Action& action) {
    try {
        view::controlChassis(bmc, action.control);
    } catch (const ipmi::CompletionCodeError& error) {
        if (error.code == ipmi::completion::notInPresentState && !view::readChassisStatus(bmc).isOn())
            throw Failure(std::string("the BMC refuses \"") + action.name + "\" while the host is off");
        throw;
    }
}

int change(const PowerOptions& options, const Action& action) {
    constexpr unsigned usualWait = 5; // seconds
    const auto bmc = options.connection.open();
    control(*bmc, action);
    const auto status = waitForPower(*bmc, action.endsOn, options.wait.value_or(usualWait));
    const bool isReached = status.isOn() == action.endsOn;
    if (options.json)
        printJson(std::cout, {{"action", action.name}, {"power", powerText(status)}, {"reached", isReached}});
    else
        std::cout << "The BMC took \"" << action.name << "\"\nPower: " << (isReached ? "" : "still ")
                  << powerText(status) << '\n';
    return isReached || !options.wait ? done : failed;
}

int run(const PowerOptions& options) {
    const auto* action = std::ranges::find(actions, options.action, &Action::name);
    return action == std::end(actions) ? showStatus(options) : change(options, *action);
}

void addPowerOptions(Command command) {
    const auto options = std::make_shared<PowerOptions>();
    std::vector<std::string> names = {statusOnly};
    for (const Action& action : actions)
        names.emplace_back(action.name);
    command
        .option("ACTION", options->action,
                "status; on, off, cycle (off, then on), reset, soft (the operating system shuts down), "
                "diag (diagnostic interrupt)")
        .oneOf(names)
        .showsDefault();
    command
        .option("--wait", options->wait,
                "Seconds in which the change has to be done; status 1 when it is not. Without, the "
                "power is told after 5 seconds at most")
        .range(0, 3600);
    command.flag("--json", options->json, "Print JSON");
    options->connection.addTo(command);
    command.footer("It asks the BMC that `phctl sync` knows, or the one that the options name. Changes are "
                   "made at once, without a question.\n\nExamples:\n"
                   "  phctl power\n"
                   "  phctl power soft --wait 120\n"
                   "  phctl power cycle --lan 192.0.2.7 --user admin --password-file bmc.password");
    command.action([options] { return run(*options); });
}

} // namespace

void addPowerCommand(Command program) {
    program.subcommand("power", "Show the host's power, or change it, over IPMI", addPowerOptions);
}

} // namespace phctl
