// sync: fills the SMASH database from the BMC.
#include "bmc_connection.h"
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "json_text.h"
#include "private_root.h"
#include "progress.h"
#include "smash-db/inventory_tables.h"
#include "smash-db/repair.h"
#include "smash-db/sync/sync.h"
#include "text_layout.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

struct SyncOptions {
    BmcConnection connection;
    std::string smbiosFile;
    bool json = false;
};

nlohmann::ordered_json reportJson(const smash::SyncReport& report) {
    auto remarks = nlohmann::ordered_json::array();
    for (const auto& [source, reason, isLoss] : report.remarks)
        remarks.push_back({{"source", source}, {"reason", reason}, {"dropped", isLoss}});
    return {{"records", report.recordsRead},
            {"numericSensors", report.numericSensors},
            {"sensors", report.sensors},
            {"frus", report.frus},
            {"packages", report.packages},
            {"hardwareSource", report.hardwareSource},
            {"processors", report.processors},
            {"memoryModules", report.memoryModules},
            {"connectors", report.connectors},
            {"pciDevices", report.pciDevices},
            {"remarks", remarks}};
}

void print(const smash::SyncReport& report) {
    Table table({"Rows", "Of"});
    table.add({std::to_string(report.numericSensors), "CIM_NumericSensor"});
    table.add({std::to_string(report.sensors), "CIM_Sensor"});
    table.add({std::to_string(report.frus), "FRU inventory"});
    table.add({std::to_string(report.packages), "physical packages"});
    if (!report.hardwareSource.empty()) {
        table.add({std::to_string(report.processors), "CIM_Processor"});
        table.add({std::to_string(report.memoryModules), "memory modules"});
        table.add({std::to_string(report.connectors), "slots, sockets and ports"});
        table.add({std::to_string(report.pciDevices), "CIM_PCIDevice"});
    }
    table.print(std::cout);
    if (!report.hardwareSource.empty())
        std::cout << "from the SMBIOS table of " << printable(report.hardwareSource) << ",\n";
    std::cout << "from " << report.recordsRead << " sensor data records, in " << databaseFile().string()
              << '\n';
    for (const auto& [source, reason, isLoss] : report.remarks)
        std::cout << (isLoss ? "Dropped: " : "Remark: ") << printable(source) << ": " << printable(reason)
                  << '\n';
}

// The database is this program's own: a damaged one is made anew, as long as it is known which BMC it is of.
void repairDatabase(bool isBmcGiven) {
    const auto damage = smash::findDamage(smash::smashSchema);
    if (!damage)
        return;
    const std::string problem = databaseFile().string() + " is damaged (" + *damage + ')';
    if (!isBmcGiven && !smash::holdsRows(smash::smashSchema, smash::sessionTable))
        throw Failure(problem + " and does not say where the BMC is: name it with --virtual, --lan or "
                                "--local, to have a new one");
    warn(problem + ": it is now " + smash::rebuild(smash::smashSchema) +
         ", and a new one has what could be read of it");
}

int synchronise(const SyncOptions& options) {
    if (!options.connection.isGiven())
        repairDatabase(false); // it is to say where the BMC is
    const SessionRow row = options.connection.row();
    const ipmi::SessionSettings settings = options.connection.settings(row);
    requirePrivateRoot(settings);
    requireBmc(settings);
    const bool isForPeople = !options.json || isatty(STDERR_FILENO) != 0;
    if (isForPeople)
        std::cerr << "Reading " << describe(settings) << std::endl;
    const auto bmc = ipmi::openTransport(settings);
    // The session row is stored once the BMC answers, even if what it says is of no use.
    if (options.connection.isGiven()) {
        repairDatabase(true);
        setSessionRow(row);
    }
    smash::SyncReport report;
    {
        StatusLine line(std::cerr, isatty(STDERR_FILENO) != 0);
        Progress progress(line);
        report = smash::sync(
            *bmc,
            [&](std::string_view phase, std::size_t step, std::size_t total) {
                if (isForPeople)
                    progress.show(phase, step, total);
            },
            options.smbiosFile);
    }
    if (options.json)
        printJson(std::cout, reportJson(report));
    else
        print(report);
    const auto dropped = std::ranges::count_if(report.remarks, &smash::SyncRemark::isLoss);
    return dropped == 0 ? done
                        : complain("the database lacks what was dropped: " + std::to_string(dropped) +
                                       (dropped == 1 ? " record" : " records"),
                                   failed);
}

void addSyncOptions(Command command) {
    command.footer(
        "The options that name a BMC are kept in the database, for providers and later calls; without them "
        "the BMC\nthat is known is read. A damaged database is set aside, and made anew with what can be "
        "read of "
        "it.\n\nWhat the host's firmware says of processors, memory and slots comes from its SMBIOS table: "
        "that of the "
        "file, which is\nkept for later calls, else that of the BMC, where it has one, else the file that "
        "was kept. A file "
        "is Linux's\n/sys/firmware/dmi/tables/DMI of that host, or a dump with its entry point.\n\nStatus 1: "
        "the BMC could not be read, or the database lacks records that had to be "
        "dropped.\n\nExamples:\n"
        "  phctl sync\n"
        "  phctl sync --virtual\n"
        "  phctl sync --lan 192.0.2.7 --user admin --password-file bmc.password\n"
        "  phctl sync --lan [2001:db8::7]:6230 --user admin --password-env BMC_PASSWORD "
        "--workaround opensesspriv\n"
        "  phctl sync --smbios DMI");
    const auto options = std::make_shared<SyncOptions>();
    options->connection.addTo(command);
    command.option("--smbios", options->smbiosFile, "The host's SMBIOS table").valueName("FILE");
    command.flag("--json", options->json, "Print the report as JSON");
    command.action([options] { return synchronise(*options); });
}

} // namespace

void addSyncCommand(Command program) {
    program.subcommand("sync", "Read the BMC's inventory and sensors into the database", addSyncOptions);
}

} // namespace phctl
