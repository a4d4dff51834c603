// bmcs: the named configurations of this user.
#include "commands.h"
#include "configurations.h"
#include "database.h"
#include "errors.h"
#include "json_text.h"
#include "text_layout.h"

#include <cstdlib>
#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

// Says which BMC a configuration is of, or why that cannot be told.
std::string bmcOf(const std::filesystem::path& folder) {
    setenv("PH_SYSROOT", folder.c_str(), 1); // the command reads nothing else
    try {
        const auto row = sessionRow();
        return row ? describe(settingsOf(*row)) : "not known yet";
    } catch (const std::exception& error) {
        return error.what();
    }
}

int list(bool asJson) {
    Table table({"Name", "BMC"});
    auto rows = nlohmann::ordered_json::array();
    for (const std::string& name : configurations()) {
        const auto folder = configurationsFolder() / name;
        const std::string bmc = bmcOf(folder);
        table.add({name, bmc});
        rows.push_back({{"name", name}, {"bmc", bmc}, {"folder", folder.string()}});
    }
    if (asJson)
        printJson(std::cout, rows);
    else if (rows.empty())
        std::cout << "There are no configurations in " << configurationsFolder().string() << '\n';
    else
        table.print(std::cout, layoutOf(STDOUT_FILENO));
    return done;
}

void addBmcsOptions(Command command) {
    const auto json = std::make_shared<bool>(false);
    command.flag("--json", *json, "Print JSON");
    command.footer(
        "A configuration is a folder in ${XDG_STATE_HOME:-~/.local/state}/provider-helper that stands for "
        "the root of\nthe BMC's machine: its database, and what the providers write. It is made by the "
        "first command below\nand gone when its folder is removed.\n\nExamples:\n"
        "  phctl --bmc rack1 sync --lan 192.0.2.7 --user admin --password-file bmc.password\n"
        "  phctl --bmc lab bmc create sample-server\n"
        "  phctl ei CIM_NumericSensor --bmc rack1\n"
        "  phctl bmcs");
    command.action([json] { return list(*json); });
}

} // namespace

void addBmcsCommand(Command program) {
    program.subcommand("bmcs", "List the BMCs that have a configuration of their own (--bmc)",
                       addBmcsOptions);
}

} // namespace phctl
