// sel: the event log of a BMC, read and cleared over IPMI.
#include "bmc_connection.h"
#include "commands.h"
#include "errors.h"
#include "event_log_output.h"
#include "event_text.h"
#include "ipmi-view/sel_info.h"
#include "ipmi/command.h"
#include "json_text.h"
#include "log_progress.h"
#include "numbers.h"
#include "sensor_labels.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

using nlohmann::ordered_json;

struct LogOptions {
    BmcConnection connection;
    bool json = false;
    unsigned last = 0; // 0: all
    std::vector<std::string> ids;
};

int list(const LogOptions& options) {
    const auto line = std::make_shared<StatusLine>(std::cerr, isatty(STDERR_FILENO) != 0);
    ipmi::observeExchanges(
        [line, progress = LogProgress(*line)](auto netFn, auto command, auto sent, auto answer) mutable {
            progress.exchanged(netFn, command, sent, answer);
        });
    const auto bmc = options.connection.open();
    const auto records = view::readEventLog(*bmc);
    // The database may be that of another BMC.
    const SensorLabels sensors = records.empty()                ? SensorLabels()
                                 : options.connection.isGiven() ? sensorLabels(*bmc)
                                                                : sensorLabels();
    line->clear();
    printEventLog(records, sensors, options.last, options.json);
    return done;
}

std::string versionText(std::uint8_t version) {
    return std::to_string(version & 0x0F) + '.' + std::to_string(version >> 4);
}

ordered_json selInfoJson(const view::SelInfo& info) {
    ordered_json json = {{"version", versionText(info.version)},
                         {"entries", info.entries},
                         {"freeBytes", info.freeBytes},
                         {"percentUsed", nullptr},
                         {"lastAddition", view::logTimeText(info.lastAddition)},
                         {"lastErasure", view::logTimeText(info.lastErasure)},
                         {"hasDropped", info.hasDropped},
                         {"canDelete", info.canDelete}};
    if (const auto percent = info.percentUsed())
        json["percentUsed"] = *percent;
    if (info.allocation)
        json["allocation"] = {{"units", info.allocation->units},
                              {"unitSize", info.allocation->unitSize},
                              {"freeUnits", info.allocation->freeUnits}};
    return json;
}

int tell(const LogOptions& options) {
    const view::SelInfo info = view::readSelInfo(*options.connection.open());
    if (options.json) {
        printJson(std::cout, selInfoJson(info));
        return done;
    }
    std::cout << "Version: " << versionText(info.version) << "\nEntries: " << info.entries
              << "\nFree: " << info.freeBytes << (info.freeBytes == 0xFFFF ? " bytes or more" : " bytes");
    if (const auto percent = info.percentUsed())
        std::cout << " (" << *percent << "% used)";
    std::cout << "\nLast addition: " << view::logTimeText(info.lastAddition)
              << "\nLast erasure: " << view::logTimeText(info.lastErasure)
              << "\nEvents were lost: " << (info.hasDropped ? "yes, as the log was full" : "no") << '\n';
    return done;
}

int clear(const LogOptions& options) {
    const auto bmc = options.connection.open();
    view::clearEventLog(*bmc);
    const unsigned entries = view::readSelInfo(*bmc).entries;
    if (options.json)
        printJson(std::cout, {{"entries", entries}});
    else
        std::cout << "The event log was cleared; it has " << entries << " records now\n";
    return done;
}

std::uint16_t recordId(const std::string& text) {
    const auto id = readId(text);
    if (!id || *id == 0 || *id >= 0xFFFF)
        throw UsageError('"' + text + "\" is no ID of a record (1 to 65534, or 0x1 to 0xFFFE)");
    return static_cast<std::uint16_t>(*id);
}

int remove(const LogOptions& options) {
    std::vector<std::uint16_t> ids;
    for (const std::string& text : options.ids)
        ids.push_back(recordId(text));
    const auto bmc = options.connection.open();
    for (const std::uint16_t id : ids) {
        try {
            view::deleteRecord(*bmc, id);
        } catch (const ipmi::CompletionCodeError& error) {
            throw Failure(error.code == ipmi::completion::notPresent
                              ? "the event log has no record " + std::to_string(id)
                              : "record " + std::to_string(id) + " cannot be deleted: " + error.what());
        }
        if (!options.json)
            std::cout << "Deleted record " << id << '\n';
    }
    if (options.json)
        printJson(std::cout, {{"deleted", ids}});
    return done;
}

void addEventLogOptions(Command sel) {
    sel.requireSubcommand();
    sel.footer("It asks the BMC that `phctl sync` knows, or the one that the options of its commands name. "
               "Nothing is asked\nbefore records are removed.\n\nExamples:\n"
               "  phctl sel list --last 20\n"
               "  phctl sel info\n"
               "  phctl sel clear");
    const auto command = [&](const char* name, const char* description, int (*run)(const LogOptions&),
                             const char* examples) {
        const auto options = std::make_shared<LogOptions>();
        Command added = sel.subcommand(name, description);
        added.flag("--json", options->json, "Print JSON");
        options->connection.addTo(added);
        added.footer(std::string("Examples:\n") + examples);
        added.action([options, run] { return run(*options); });
        return std::pair(added, options);
    };

    auto [lister, listed] =
        command("list", "Print the records: time, sensor, event", list,
                "  phctl sel list --last 20\n"
                "  phctl sel list --json\n"
                "  phctl sel list --lan 192.0.2.7 --user admin --password-file bmc.password");
    lister.option("--last", listed->last, "Only so many of the latest").range(1, 0xFFFF);
    command("info", "Tell how full the log is, and when it changed", tell, "  phctl sel info");
    command("clear", "Remove all records", clear, "  phctl sel clear");
    auto [remover, removed] = command("delete", "Remove some records", remove, "  phctl sel delete 17 0x12");
    remover.option("ID", removed->ids, "ID of a record, as `phctl sel list` prints it").required();
}

} // namespace

void addEventLogCommand(Command program) {
    program.subcommand("sel", "List, count, clear or delete events of the BMC's log, over IPMI",
                       addEventLogOptions);
}

} // namespace phctl
