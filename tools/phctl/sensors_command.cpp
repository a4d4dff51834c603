// sensors: all sensors of the BMC with reading, state and thresholds, read over IPMI.
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "ipmi/sensor_types.h"
#include "json_text.h"
#include "names.h"
#include "sensor_table.h"
#include "stale_warning.h"
#include "text_layout.h"

#include <algorithm>
#include <fnmatch.h>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <thread>
#include <unistd.h>

namespace phctl {
namespace {

constexpr const char* usualPause = "5"; // seconds

struct SensorsOptions {
    std::vector<std::string> names, types, states;
    bool json = false, wide = false;
    int timeout = 30;
    Option watch;
    double pause = 0;   // seconds
    unsigned count = 0; // 0: until it is interrupted
};
using SharedSensorsOptions = std::shared_ptr<SensorsOptions>;

// Names of types are taken in any case, with "-" for blanks.
std::string plainName(std::string name) {
    for (char& character : name)
        character = character == '-' || character == '_'
                        ? ' '
                        : static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return name;
}

std::vector<std::string> knownTypes() {
    std::vector<std::string> names;
    for (unsigned type = 1; type <= 0xFF; ++type)
        if (const std::string name = ipmi::sensorTypeName(static_cast<std::uint8_t>(type));
            name != "Reserved" && std::ranges::find(names, name) == names.end())
            names.push_back(name);
    return names;
}

void require(const std::string& option, const std::string& value, const std::vector<std::string>& known) {
    if (std::ranges::any_of(known,
                            [&](const std::string& each) { return plainName(each) == plainName(value); }))
        return;
    throw UsageError(option + ": there is no " + value + didYouMean(value, known) + "; known are " +
                     joined(known));
}

void check(const SensorsOptions& options) {
    for (const std::string& type : options.types)
        require("--type", type, knownTypes());
    for (const std::string& state : options.states)
        require("--state", state, {std::begin(view::severityNames), std::end(view::severityNames)});
}

bool isOneOf(const std::vector<std::string>& wanted, const std::string& name) {
    return wanted.empty() || std::ranges::any_of(wanted, [&](const std::string& each) {
               return plainName(each) == plainName(name);
           });
}

// Throws UsageError for a name that no sensor has.
std::vector<view::SensorRow> chosenSensors(const SensorsOptions& options) {
    std::vector<view::SensorRow> all = view::readSensorRows();
    const auto matches = [](const std::string& pattern, const view::SensorRow& sensor) {
        return fnmatch(pattern.c_str(), sensor.name.c_str(), FNM_CASEFOLD) == 0;
    };
    for (const std::string& pattern : options.names)
        if (std::ranges::none_of(all, [&](const auto& sensor) { return matches(pattern, sensor); })) {
            std::vector<std::string> names;
            names.reserve(all.size());
            for (const view::SensorRow& sensor : all)
                names.push_back(sensor.name);
            throw UsageError("there is no sensor " + pattern + didYouMean(pattern, names));
        }
    std::erase_if(all, [&](const view::SensorRow& sensor) {
        return !isOneOf(options.types, ipmi::sensorTypeName(sensor.type)) ||
               (!options.names.empty() &&
                std::ranges::none_of(options.names,
                                     [&](const std::string& pattern) { return matches(pattern, sensor); }));
    });
    return all;
}

std::vector<SensorLine> read(ipmi::Transport& bmc, const SensorsOptions& options,
                             const std::vector<view::SensorRow>& sensors) {
    std::vector<SensorLine> lines;
    for (view::SensorRow sensor : sensors) {
        sensor.thresholds = view::readThresholds(bmc, sensor);
        view::Reading reading = view::readSensor(bmc, sensor);
        if (isOneOf(options.states, view::nameOf(reading.severity)))
            lines.push_back({std::move(sensor), std::move(reading)});
    }
    return lines;
}

void print(const SensorsOptions& options, const std::vector<SensorLine>& lines) {
    if (options.json)
        return printJson(std::cout, toJson(lines));
    printSensors(std::cout, lines, layoutOf(STDOUT_FILENO, options.wide));
}

// Goes on over a BMC that does not answer for a while.
int watchSensors(const SensorsOptions& options, const ipmi::SessionSettings& settings,
                 const std::vector<view::SensorRow>& sensors) {
    constexpr const char* home = "\033[H\033[J";
    const bool isTerminal = isatty(STDOUT_FILENO) != 0;
    std::unique_ptr<ipmi::Transport> bmc;
    for (unsigned shown = 0;;) {
        std::string problem;
        std::vector<SensorLine> lines;
        try {
            if (bmc == nullptr)
                bmc = ipmi::openTransport(settings);
            lines = read(*bmc, options, sensors);
        } catch (const ipmi::TransportError& error) {
            bmc.reset();
            problem = error.what();
        }
        if (isTerminal)
            std::cout << home;
        else if (shown > 0 && !options.json)
            std::cout << '\n';
        if (problem.empty())
            print(options, lines);
        else
            complain(problem, failed);
        if (!std::cout.flush())
            return failed; // main says so
        if (++shown == options.count)
            return problem.empty() ? done : failed;
        std::this_thread::sleep_for(std::chrono::duration<double>(options.pause));
    }
}

int showSensors(const SensorsOptions& options) {
    check(options);
    ipmi::SessionSettings settings = knownBmc();
    settings.timeout = options.timeout;
    const auto sensors = chosenSensors(options);
    if (options.watch.isGiven())
        return watchSensors(options, settings, sensors);
    const auto bmc = ipmi::openTransport(settings);
    print(options, read(*bmc, options, sensors));
    warnIfStale(*bmc);
    return done;
}

void addSensorsOptions(Command command) {
    const auto options = std::make_shared<SensorsOptions>();
    command.option("NAME", options->names, "Only sensors of these names; * and ? stand for characters");
    command.option("--type", options->types, "Only these types of sensors, such as temperature,fan")
        .separatedByCommas();
    command
        .option("--state", options->states,
                "Only sensors in these states: nominal, warning, critical, na (not known)")
        .separatedByCommas();
    options->watch = command.option("--watch", options->pause,
                                    "Print them again every so many seconds, until interrupted");
    options->watch.mayLackValue(usualPause).range(0.1, 86400.0);
    command.option("--count", options->count, "End after so many times")
        .needs(options->watch)
        .range(1, 1000000);
    command.option("--timeout", options->timeout, "Seconds that the BMC has for an answer")
        .range(1, 600)
        .showsDefault();
    command.flag("--json", options->json, "Print JSON");
    command.flag("--wide", options->wide, "Make the table as wide as it is, not as the terminal is");
    command.footer(
        "The BMC is the one that `phctl sync` read. A state is computed from the threshold or state bits of "
        "the "
        "reading:\na non-critical threshold is a warning, any other critical. CurrentState of CIM may say "
        "otherwise, as DMTF's\nclass has it. Sensors that cannot be read are counted, with the reason.\n\n"
        "Examples:\n"
        "  phctl sensors\n"
        "  phctl sensors 'CPU*' --type temperature\n"
        "  phctl sensors --state warning,critical --watch 10\n"
        "  phctl sensors --json");
    command.action([options] { return showSensors(*options); });
}

} // namespace

void addSensorsCommand(Command program) {
    program.subcommand("sensors", "Print the sensors with reading, state and thresholds, over IPMI",
                       addSensorsOptions);
}

} // namespace phctl
