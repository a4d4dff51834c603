// bmc: makes the virtual BMC, and operates it from outside.
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "ipmi_commands.h"
#include "json_text.h"
#include "machine.h"
#include "machine_text.h"
#include "names.h"
#include "numbers.h"
#include "private_root.h"
#include "text_layout.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

namespace phctl {
namespace {

namespace fs = std::filesystem;

struct BmcOptions {
    std::string stateFile; // empty: that of the database
    std::string model;
    bool replace = false;
    bool json = false;
    std::vector<std::string> parts;
    std::string sensor;
    std::string value;
    bool isRaw = false;
    std::vector<unsigned> states;
    std::string availability;
    std::string bond;
    std::optional<std::string> watchdogUse, watchdogAction;
    std::optional<double> watchdogSeconds;
    bool isStarted = false, isStopped = false;
    std::vector<std::string> commands;
    std::optional<unsigned> code, shortTo, late;
    bool isSilent = false;
    unsigned skip = 0, calls = 0;
};
using SharedBmcOptions = std::shared_ptr<BmcOptions>;

vbmc::VirtualBmc machine(const SharedBmcOptions& options) {
    return openMachine(options->stateFile);
}

fs::path modelFolder() {
    return (fs::read_symlink("/proc/self/exe").parent_path() / PH_MODEL_DIR).lexically_normal();
}

std::vector<std::string> installedModels() {
    std::vector<std::string> names;
    std::error_code error; // no folder: no models
    for (const fs::directory_entry& entry : fs::directory_iterator(modelFolder(), error))
        if (entry.path().extension() == ".json")
            names.push_back(entry.path().stem());
    std::ranges::sort(names);
    return names;
}

// A file, or the name of a model that is installed.
fs::path modelFile(const std::string& model) {
    if (fs::exists(model))
        return model;
    for (const char* ending : {"", ".json"})
        if (fs::path file = modelFolder() / (model + ending); fs::exists(file))
            return file;
    const auto models = installedModels();
    throw Failure("there is no model " + model + didYouMean(model, models) +
                  (models.empty() ? "" : "; installed are: " + joined(models)) +
                  "; or name a file (docs/virtual-bmc.md describes models)");
}

int create(const SharedBmcOptions& options) {
    const fs::path file = machineFile(options->stateFile);
    ipmi::SessionSettings settings;
    settings.interfaceType = ipmi::SessionSettings::VirtualBmc;
    settings.address = file;
    const bool becomesKnown = !sessionRow();
    if (becomesKnown)
        requirePrivateRoot(settings);
    vbmc::create(file, modelFile(options->model),
                 options->replace ? vbmc::Existing::Replace : vbmc::Existing::Refuse);
    std::cout << "Created the virtual BMC " << file.string() << '\n';
    if (becomesKnown) {
        if (options->stateFile.empty())
            settings.address.clear(); // the default, wherever the root is moved
        setSessionRow(rowOf(settings));
        std::cout << "Requests go to it from now on (" << databaseFile().string() << ").\nNext: phctl sync\n";
    }
    return done;
}

int show(const SharedBmcOptions& options) {
    auto description = machine(options).describe();
    if (!options->parts.empty()) {
        nlohmann::ordered_json wanted;
        for (const std::string& part : options->parts) {
            if (!description.contains(part)) {
                std::ostringstream message;
                message << "the machine has no part " << part << ", only:";
                for (const auto& item : description.items())
                    message << ' ' << item.key();
                throw UsageError(message.str());
            }
            wanted[part] = description[part];
        }
        description = std::move(wanted);
    }
    if (options->json)
        printJson(std::cout, description);
    else
        printMachine(std::cout, description);
    return done;
}

std::uint8_t rawReading(const std::string& text) {
    const auto raw = readInteger<std::uint8_t>(text);
    if (!raw)
        throw UsageError('"' + text + "\" is no raw reading (0 to 255, or 0x00 to 0xFF)");
    return *raw;
}

int setReading(const SharedBmcOptions& options) {
    auto bmc = machine(options);
    const std::string& text = options->value;
    // Raw readings are hexadecimal here as in models.
    if (options->isRaw || isHexadecimal(text)) {
        bmc.setRawReading(options->sensor, rawReading(text));
        return done;
    }
    const auto value = readNumber<double>(text);
    if (!value)
        throw UsageError('"' + text +
                         "\" is no number in the sensor's unit, and no raw reading such as 0x20");
    bmc.setReading(options->sensor, *value);
    return done;
}

int setStates(const SharedBmcOptions& options) {
    std::uint16_t bits = 0;
    for (const unsigned state : options->states)
        bits = static_cast<std::uint16_t>(bits | 1U << state);
    machine(options).setStates(options->sensor, bits);
    return done;
}

constexpr std::pair<const char*, vbmc::Availability> availabilities[] = {
    {"available", vbmc::Availability::Available},
    {"unavailable", vbmc::Availability::Unavailable},
    {"unreadable", vbmc::Availability::Unreadable},
};

int setAvailability(const SharedBmcOptions& options) {
    for (const auto& [name, availability] : availabilities)
        if (options->availability == name)
            machine(options).setAvailability(options->sensor, availability);
    return done;
}

int setBond(const SharedBmcOptions& options) {
    machine(options).setBond(options->bond == "on");
    return done;
}

int setWatchdog(const SharedBmcOptions& options) {
    nlohmann::ordered_json changes = nlohmann::ordered_json::object();
    if (options->watchdogUse)
        changes["use"] = *options->watchdogUse;
    if (options->watchdogAction)
        changes["action"] = *options->watchdogAction;
    if (options->watchdogSeconds)
        changes["interval"] = static_cast<unsigned>(*options->watchdogSeconds * 10);
    auto bmc = machine(options);
    if (!changes.empty())
        bmc.setWatchdog(changes);
    if (options->isStarted)
        bmc.startWatchdog();
    else if (options->isStopped)
        bmc.stopWatchdog();
    return done;
}

int restartHost(const SharedBmcOptions& options) {
    machine(options).restartHost();
    return done;
}

int addFaults(const SharedBmcOptions& options) {
    vbmc::Fault fault{.kind = vbmc::Fault::Silent, .skip = options->skip, .calls = options->calls};
    for (const auto& [value, kind] : {std::pair{options->code, vbmc::Fault::CompletionCode},
                                      {options->shortTo, vbmc::Fault::ShortAnswer},
                                      {options->late, vbmc::Fault::Late}})
        if (value) {
            fault.kind = kind;
            fault.value = *value;
        }
    std::vector<ipmi::CommandCode> commands;
    for (const std::string& text : options->commands)
        commands.push_back(parseIpmiCommand(text));
    auto bmc = machine(options);
    for (const ipmi::CommandCode command : commands) {
        fault.netFn = command.netFn;
        fault.command = command.number;
        bmc.addFault(fault);
    }
    return done;
}

int listFaults(const SharedBmcOptions& options) {
    Table table({"Command", "Fault", "After", "Calls"});
    auto list = nlohmann::ordered_json::array();
    for (const vbmc::Fault& fault : machine(options).faults()) {
        constexpr const char* kinds[] = {"completion code ",
                                         "answer cut to bytes: ", "answer late by ms: ", "no answer"};
        char code[8];
        std::snprintf(code, sizeof code, "0x%02X", fault.value);
        std::string text = kinds[fault.kind];
        if (fault.kind == vbmc::Fault::CompletionCode)
            text += code;
        else if (fault.kind != vbmc::Fault::Silent)
            text += std::to_string(fault.value);
        table.add({toText(ipmi::CommandCode{fault.netFn, fault.command}), text, std::to_string(fault.skip),
                   fault.calls > 0 ? std::to_string(fault.calls) : "all"});
        list.push_back({{"netFn", fault.netFn},
                        {"command", fault.command},
                        {"kind", fault.kind == vbmc::Fault::CompletionCode ? "completionCode"
                                 : fault.kind == vbmc::Fault::ShortAnswer  ? "shortAnswer"
                                 : fault.kind == vbmc::Fault::Late         ? "late"
                                                                           : "silent"},
                        {"value", fault.value},
                        {"skip", fault.skip},
                        {"calls", fault.calls}});
    }
    if (options->json)
        printJson(std::cout, list);
    else if (list.empty())
        std::cout << "No faults\n";
    else
        table.print(std::cout);
    return done;
}

int clearFaults(const SharedBmcOptions& options) {
    machine(options).clearFaults();
    return done;
}

void addBmcOptions(Command bmc) {
    bmc.requireSubcommand();
    bmc.footer("Examples:\n"
               "  phctl bmc create sample-server\n"
               "  phctl bmc show sensors\n"
               "  phctl bmc set-reading 'CPU1 Temp' 98\n"
               "  phctl bmc fault get-sensor-reading --code 0xC3 --calls 1");
    const auto options = std::make_shared<BmcOptions>();
    const auto add = [&](const char* name, const char* description, int (*run)(const SharedBmcOptions&)) {
        Command command = bmc.subcommand(name, description);
        addMachineOption(command, options->stateFile);
        command.action([options, run] { return run(options); });
        return command;
    };
    const auto addSensor = [&](Command command) {
        command.option("SENSOR", options->sensor, "Name or number of the sensor").required();
    };

    Command command = add("create", "Make a virtual BMC", create);
    command.option("MODEL", options->model, "Model file, or name of an installed model").required();
    command.flag("--replace", options->replace, "Replace a machine that is there");
    command.footer(
        "Where the database does not say which BMC there is, requests go to the new one.\n\nExamples:\n"
        "  phctl bmc create sample-server\n"
        "  phctl bmc create my-model.json --state /tmp/other.state");

    command = add("show", "Print the machine's state", show);
    command.option("PART", options->parts, "Parts to print, such as device or sensors; else all");
    command.flag("--json", options->json, "Print JSON");
    command.footer("Example:\n  phctl bmc show sensors");

    command = add("set-reading", "Set the reading of a threshold sensor", setReading);
    addSensor(command);
    command.option("VALUE", options->value, "Reading in the sensor's unit, or as its raw byte: 0x20")
        .required();
    command.flag("--raw", options->isRaw, "VALUE is the raw byte");
    command.footer("Examples:\n"
                   "  phctl bmc set-reading 'CPU1 Temp' 98\n"
                   "  phctl bmc set-reading 5 -12.5\n"
                   "  phctl bmc set-reading 3 0x20         # the raw byte\n"
                   "  phctl bmc set-reading 3 32 --raw     # the same");

    command = add("set-states", "Set the states of a discrete sensor", setStates);
    addSensor(command);
    command.option("OFFSET", options->states, "State offsets that are asserted; without any, none is")
        .range(0, 14);
    command.footer("Example:\n  phctl bmc set-states 'PSU1 Status' 0 1");

    std::vector<std::string> names;
    for (const auto& [name, availability] : availabilities)
        names.emplace_back(name);
    command = add("set-availability", "Let a sensor have a reading, or none", setAvailability);
    addSensor(command);
    command.option("HOW", options->availability, "What Get Sensor Reading answers").required().oneOf(names);
    command.footer("Example:\n  phctl bmc set-availability 'CPU1 Temp' unavailable");

    command = add("set-bond", "Bond the LANs that the machine has for it, or use each alone", setBond);
    command.option("HOW", options->bond, "on or off").required().oneOf({"on", "off"});
    command.footer("Example:\n  phctl bmc set-bond on");

    command = add("watchdog", "Do what the host does with its watchdog timer", setWatchdog);
    command.option("--use", options->watchdogUse, "Who is watched over")
        .oneOf({"bios-frb2", "bios-post", "os-load", "os", "oem"});
    command.option("--action", options->watchdogAction, "What happens when it runs out")
        .oneOf({"none", "hard-reset", "power-down", "power-cycle"});
    command.option("--interval", options->watchdogSeconds, "Seconds until then, in steps of 0.1")
        .range(0.0, 6553.5);
    command.flag("--stop", options->isStopped, "Stop it")
        .excludes(command.flag("--start", options->isStarted, "Start it, or start it again"));
    command.footer("Printed by `phctl bmc show watchdog`.\n\nExample:\n"
                   "  phctl bmc watchdog --use os --action hard-reset --interval 30 --start");

    command = add("restart-host", "Let the host restart by itself", restartHost);
    command.footer(
        "What it boots from is printed by `phctl bmc show boot`.\n\nExample:\n  phctl bmc restart-host");

    command = add("fault", "Make commands fail", addFaults);
    command.option("COMMAND", options->commands, "Name of an IPMI command, or NETFN:COMMAND").required();
    const auto kind = command.alternatives("What goes wrong");
    kind.option("--code", options->code, "The answer is this completion code").range(1, 255);
    kind.option("--short", options->shortTo, "The answer is cut to so many bytes, completion code included")
        .range(1, 255);
    kind.option("--late", options->late, "The answer comes after so many milliseconds");
    kind.flag("--silent", options->isSilent, "There is no answer");
    command.option("--skip", options->skip, "So many calls go well first");
    command.option("--calls", options->calls, "So many calls fail; 0: all until `bmc clear`").showsDefault();
    command.footer("Names: " + ipmiCommandNames() +
                   "\n\nExamples:\n"
                   "  phctl bmc fault get-sensor-reading --code 0xC3\n"
                   "  phctl bmc fault 0x0A:0x23 --short 5 --skip 2 --calls 1");

    command = add("faults", "List the faults that are set", listFaults);
    command.flag("--json", options->json, "Print JSON");
    command.footer("`phctl bmc fault` sets them, `phctl bmc clear` removes them.\n\nExamples:\n"
                   "  phctl bmc faults\n"
                   "  phctl bmc faults --json");
    command = add("clear", "Remove all faults", clearFaults);
    command.footer(
        "It takes back what `phctl bmc fault` set; the machine's state stays. The event log is cleared by "
        "`phctl bmc sel\nclear`.\n\nExample:\n  phctl bmc clear");
    addSelCommand(bmc);
    addAlertCommands(bmc);
    addLoginCommand(bmc);
    addEventCommand(bmc);
    addImageCommand(bmc);
}

} // namespace

void addBmcCommand(Command program) {
    program.subcommand("bmc", "Make the virtual BMC, look at it, change it, make its commands fail",
                       addBmcOptions);
}

} // namespace phctl
