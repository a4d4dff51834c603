// check-platform: calls the functions of the platform's libraries as the library does, and says what each of them is worth.
#include "check_platform/isolation.h"
#include "commands.h"
#include "database.h"
#include "errors.h"
#include "json_text.h"
#include "text_layout.h"

#include <array>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {

namespace check {

const char* nameOf(Outcome outcome) {
    switch (outcome) {
    case Outcome::Works:
        return "works";
    case Outcome::Refused:
        return "refused";
    case Outcome::Missing:
        return "missing";
    case Outcome::BreaksContract:
        return "breaks";
    default:
        return "not called";
    }
}

} // namespace check

namespace {

using check::Outcome;
using check::Report;

struct CheckOptions {
    bool json = false;
    bool change = false;
    bool all = false;
    int timeout = 30;
    std::vector<std::string> only;
};

std::vector<Report> checkRow(const check::Group& group, const check::Row& row, const CheckOptions& options) {
    const bool isCalled = row.check != nullptr && (!row.changes || options.change);
    auto reports =
        check::checkIsolated(group.library, row.function, isCalled ? row.check : nullptr, options.timeout);
    for (Report& report : reports)
        if (report.outcome == Outcome::Missing && row.check != nullptr && row.note != nullptr)
            report.remark = row.note;
    if (reports.empty())
        reports.push_back(
            {group.library,
             row.function,
             {},
             Outcome::NotCalled,
             row.check == nullptr ? row.note : "it changes something: --change calls it and puts that back",
             0});
    return reports;
}

bool isWanted(const check::Row& row, const std::vector<std::string>& only) {
    return only.empty() || std::ranges::find(only, row.function) != only.end();
}

std::vector<Report> checkAll(const CheckOptions& options) {
    std::vector<Report> reports;
    for (const check::Group& group : check::allGroups())
        for (const check::Row& row : group.rows)
            if (isWanted(row, options.only)) {
                const auto ofRow = checkRow(group, row, options);
                reports.insert(reports.end(), ofRow.begin(), ofRow.end());
            }
    if (reports.empty())
        throw UsageError("a platform has no function " + options.only.front());
    return reports;
}

nlohmann::ordered_json reportsJson(const std::vector<Report>& reports) {
    auto list = nlohmann::ordered_json::array();
    for (const Report& report : reports)
        list.push_back({{"library", report.library},
                        {"function", report.function},
                        {"arguments", report.arguments},
                        {"outcome", nameOf(report.outcome)},
                        {"remark", report.remark},
                        {"milliseconds", report.milliseconds}});
    return list;
}

// Calls of a function that came out alike share a line.
bool areAlike(const Report& one, const Report& other) {
    return one.function == other.function && one.outcome == other.outcome && one.remark == other.remark;
}

std::string callsOf(const Report& first, std::size_t count) {
    return count == 1 ? first.arguments : first.arguments + " and " + std::to_string(count - 1) + " more";
}

void print(const std::vector<Report>& reports, bool all) {
    std::array<std::size_t, 5> counts{};
    Table table({"Function", "Outcome", "Calls", "Remark"});
    for (std::size_t i = 0; i < reports.size();) {
        std::size_t alike = 1;
        while (!all && i + alike < reports.size() && areAlike(reports[i], reports[i + alike]))
            ++alike;
        table.add(
            {reports[i].function, nameOf(reports[i].outcome), callsOf(reports[i], alike), reports[i].remark});
        counts[static_cast<std::size_t>(reports[i].outcome)] += alike;
        i += alike;
    }
    table.print(std::cout, layoutOf(STDOUT_FILENO));
    const char* separator = "";
    for (std::size_t outcome = 0; outcome < counts.size(); ++outcome) {
        std::cout << separator << counts[outcome] << ' ' << nameOf(static_cast<Outcome>(outcome));
        separator = ", ";
    }
    std::cout << '\n';
}

int checkPlatform(const CheckOptions& options) {
    const auto reports = checkAll(options);
    if (options.json)
        printJson(std::cout, reportsJson(reports));
    else
        print(reports, options.all);
    return std::ranges::any_of(reports,
                               [](const Report& each) { return each.outcome == Outcome::BreaksContract; })
               ? failed
               : done;
}

void addCheckPlatformOptions(Command command) {
    command.footer("The functions are those of the libraries that libProviderHelper would load "
                   "(LD_LIBRARY_PATH comes first), "
                   "with the BMC and\nthe database that they reach. Each is checked in a process of its "
                   "own. What becomes of a call:\n"
                   "  works       it succeeds as its header says\n"
                   "  refused     it fails, as it may where the BMC cannot do it\n"
                   "  missing     nobody has written it yet: it is not there, or it is a stub\n"
                   "  breaks      it does not keep to its header: a text without an end or not in UTF-8, "
                   "more bytes than documented,\n"
                   "              a value that there is not, more time than it was given, a crash\n"
                   "  not called  the remark says why\n"
                   "The exit status is 1 when anything breaks its contract.\n\nExamples:\n"
                   "  phctl check-platform\n"
                   "  phctl check-platform --only CIM_GetDeviceID --only CIM_GetSensorReading --all\n"
                   "  phctl check-platform --change --json");
    const auto options = std::make_shared<CheckOptions>();
    command.option("--only", options->only, "Check this function only; may be given several times");
    command.flag("--change", options->change,
                 "Also call functions that change the BMC or the database, and put back what they change");
    command.option("--timeout", options->timeout, "Seconds that a call is given; the library gives 30")
        .range(1, 600)
        .showsDefault();
    command.flag("--all", options->all, "Print a line for each call, also where several came out alike");
    command.flag("--json", options->json, "Print the report as JSON, call by call");
    command.action([options] { return checkPlatform(*options); });
}

} // namespace

void addCheckPlatformCommand(Command program) {
    program.subcommand("check-platform", "Call the platform's functions and check what they do",
                       addCheckPlatformOptions);
}

} // namespace phctl
