// bmc sel: looks at the virtual BMC's event log, adds to it, clears it.
#include "commands.h"
#include "errors.h"
#include "event_log_output.h"
#include "event_options.h"
#include "json_text.h"
#include "machine.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

using nlohmann::ordered_json;

struct SelOptions {
    std::string stateFile;
    bool json = false;
    unsigned last = 0; // 0: all
    EventOptions event;
    unsigned count = 0;
    std::string policy;
};

void report(const SelOptions& options, const ordered_json& json, const std::string& text) {
    if (options.json)
        printJson(std::cout, json);
    else
        std::cout << text << '\n';
}

view::SensorLabels labelsOf(const ordered_json& machine) {
    constexpr std::uint8_t bmc = 0x20; // owner of all its sensors
    view::SensorLabels labels;
    if (machine.contains("sensors"))
        for (const auto& sensor : machine["sensors"])
            labels.emplace(view::SensorKey{bmc, 0, sensor["number"].get<std::uint8_t>()},
                           view::SensorLabel{sensor["name"].get<std::string>(), 0});
    return labels;
}

int list(const SelOptions& options) {
    auto machine = openMachine(options.stateFile);
    const view::SensorLabels sensors = labelsOf(machine.describe());
    printEventLog(machine.selRecords(), sensors, options.last, options.json);
    return done;
}

int add(const SelOptions& options) {
    auto machine = openMachine(options.stateFile);
    const unsigned id = options.event.addEvent(machine);
    report(options, {{"id", id}}, "Added record " + std::to_string(id));
    return done;
}

int fill(const SelOptions& options) {
    const std::size_t added = openMachine(options.stateFile).fillSel(options.count);
    if (added < options.count)
        throw Failure("the event log is full: " + std::to_string(added) + " of " +
                      std::to_string(options.count) + " records were added");
    report(options, {{"added", added}}, "Added " + std::to_string(added) + " records");
    return done;
}

int clear(const SelOptions& options) {
    openMachine(options.stateFile).clearSel();
    return done;
}

int policy(const SelOptions& options) {
    auto machine = openMachine(options.stateFile);
    if (!options.policy.empty()) {
        machine.setSelWraps(options.policy == "wrap");
        return done;
    }
    const auto present = machine.describe()["sel"]["whenFull"].get<std::string>();
    report(options, {{"policy", present}}, present);
    return done;
}

void addSelOptions(Command sel) {
    sel.requireSubcommand();
    sel.footer("Examples:\n"
               "  phctl bmc sel add 'CPU1 Temp' 9\n"
               "  phctl bmc sel list");
    const auto options = std::make_shared<SelOptions>();
    const auto command = [&](const char* name, const char* description, int (*run)(const SelOptions&),
                             const char* examples) {
        Command added = sel.subcommand(name, description);
        addMachineOption(added, options->stateFile);
        added.footer(std::string("Examples:\n") + examples);
        added.action([options, run] { return run(*options); });
        return added;
    };
    const auto withJson = [&](Command each) {
        each.flag("--json", options->json, "Print JSON");
        return each;
    };

    Command each = withJson(command("list", "Print the records: time, sensor, event", list,
                                    "  phctl bmc sel list --last 20\n  phctl bmc sel list --json"));
    each.option("--last", options->last, "Only so many of the latest").range(1, 0xFFFF);

    each = withJson(command("add", "Add an event of a sensor, or any record", add,
                            "  phctl bmc sel add 'CPU1 Temp' 9\n"
                            "  phctl bmc sel add 'PSU1 Status' 3 --deasserted\n"
                            "  phctl bmc sel add --record '02 00000000 2000 04 01 30 01 59 7d 78'"));
    options->event.addTo(each);

    each = withJson(command("fill", "Add events of the machine's sensors, and OEM records", fill,
                            "  phctl bmc sel fill 1000"));
    each.option("COUNT", options->count, "How many").required().range(1, 1000000);

    command("clear", "Remove all records", clear, "  phctl bmc sel clear");

    each = withJson(command("policy", "What a full log does", policy,
                            "  phctl bmc sel policy\n  phctl bmc sel policy wrap"));
    each.option("POLICY", options->policy,
                "stop: it drops new events; wrap: it drops the oldest record; without, print it")
        .oneOf({"stop", "wrap"});
}

} // namespace

void addSelCommand(Command bmc) {
    bmc.subcommand("sel", "List the event log, add to it, fill it, clear it", addSelOptions);
}

} // namespace phctl
