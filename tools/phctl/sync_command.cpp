// sync: fills the SMASH database from the BMC.
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "instance_output.h"
#include "private_root.h"
#include "progress.h"
#include "session_options.h"
#include "smash-db/sync/sync.h"
#include "text_layout.h"

#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

struct SyncOptions {
    SessionOptions session;
    bool json = false;
    int timeout = 30;
};

nlohmann::ordered_json toJson(const smash::SyncReport& report) {
    auto remarks = nlohmann::ordered_json::array();
    for (const auto& [source, reason] : report.remarks)
        remarks.push_back({{"source", source}, {"reason", reason}});
    return {{"records", report.recordsRead}, {"numericSensors", report.numericSensors},
            {"sensors", report.sensors},     {"frus", report.frus},
            {"packages", report.packages},   {"remarks", remarks}};
}

void print(const smash::SyncReport& report) {
    Table table({"Rows", "Of"});
    table.add({std::to_string(report.numericSensors), "CIM_NumericSensor"});
    table.add({std::to_string(report.sensors), "CIM_Sensor"});
    table.add({std::to_string(report.frus), "FRU inventory"});
    table.add({std::to_string(report.packages), "physical packages"});
    table.print(std::cout);
    std::cout << "from " << report.recordsRead << " sensor data records, in " << databaseFile().string()
              << '\n';
    for (const auto& [source, reason] : report.remarks)
        std::cout << "Remark: " << printable(source) << ": " << printable(reason) << '\n';
}

ipmi::SessionSettings knownSettings() {
    const auto row = sessionRow();
    if (!row)
        throw Failure(databaseFile().string() +
                      " does not say where the BMC is: name it with --virtual, --lan or --local");
    return settingsOf(*row);
}

int synchronise(const SyncOptions& options) {
    const auto given = options.session.settings();
    ipmi::SessionSettings settings = given ? settingsOf(rowOf(*given)) : knownSettings();
    settings.timeout = options.timeout;
    requirePrivateRoot(settings);
    requireBmc(settings);
    std::cerr << "Reading " << describe(settings) << std::endl;
    const auto bmc = ipmi::openTransport(settings);
    // The session row is stored once the BMC answers, even if what it says is of no use.
    if (given)
        setSessionRow(rowOf(*given));
    smash::SyncReport report;
    {
        Progress progress(std::cerr, isatty(STDERR_FILENO) != 0);
        report = smash::sync(*bmc, [&](std::string_view phase, std::size_t step, std::size_t total) {
            progress.show(phase, step, total);
        });
    }
    if (options.json)
        printJson(std::cout, toJson(report));
    else
        print(report);
    return done;
}

} // namespace

void addSyncCommand(CLI::App& app, Chosen& chosen) {
    CLI::App* command = app.add_subcommand("sync", "Read the BMC's inventory and sensors into the database");
    command->footer(
        "The options that name a BMC are kept in the database, for providers and later calls; without them "
        "the BMC\nthat is known is read.\n\nExamples:\n"
        "  phctl sync\n"
        "  phctl sync --virtual\n"
        "  phctl sync --lan 192.0.2.7 --user admin --password-file bmc.password\n"
        "  phctl sync --lan [2001:db8::7]:6230 --user admin --password-env BMC_PASSWORD "
        "--workaround opensesspriv");
    const auto options = std::make_shared<SyncOptions>();
    options->session.addTo(*command);
    command->add_option("--timeout", options->timeout, "Seconds that the BMC has for an answer")
        ->check(CLI::Range(1, 600))
        ->capture_default_str();
    command->add_flag("--json", options->json, "Print the report as JSON");
    command->callback([&chosen, options] { chosen = [options] { return synchronise(*options); }; });
}

} // namespace phctl
