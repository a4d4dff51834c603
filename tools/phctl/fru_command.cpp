// fru: what the FRU devices of a BMC say of board, product and chassis, over IPMI.
#include "bmc_connection.h"
#include "commands.h"
#include "errors.h"
#include "ipmi-view/fru.h"
#include "json_text.h"
#include "numbers.h"
#include "text_layout.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <unistd.h>

namespace phctl {
namespace {

using nlohmann::ordered_json;
using view::FruDevice;

struct FruOptions {
    BmcConnection connection;
    bool json = false;
    std::vector<std::string> ids; // none: all
};

constexpr const char* listOnly = "list";

std::string titleOf(const FruDevice& device) {
    const std::string id = "FRU device " + std::to_string(device.id);
    return device.name.empty() ? id : id + ": " + device.name;
}

ordered_json deviceJson(const FruDevice& device) {
    ordered_json json = {{"id", device.id}, {"name", device.name}, {"fields", ordered_json::array()}};
    if (device.contents)
        for (const view::FruField& field : view::fieldsOf(*device.contents))
            json["fields"].push_back({{"area", field.area}, {"name", field.name}, {"value", field.value}});
    json["problems"] = device.problems;
    return json;
}

void printFields(const FruDevice& device) {
    std::cout << printable(titleOf(device)) << '\n';
    if (device.contents)
        for (const view::FruField& field : view::fieldsOf(*device.contents))
            std::cout << "  " << field.area << ' ' << field.name << ": " << printable(field.value) << '\n';
    for (const std::string& problem : device.problems)
        std::cout << "  Problem: " << printable(problem) << '\n';
}

// A line for each device: of its product, or else of its board.
void printList(const std::vector<FruDevice>& devices) {
    Table table({"ID", "Name", "Manufacturer", "Product", "Part number", "Serial number", "Problem"});
    for (const FruDevice& device : devices) {
        std::vector<std::string> row = {std::to_string(device.id), device.name};
        const auto add = [&row](const auto& area) {
            row.insert(row.end(), {area.manufacturer, area.product, area.partNumber, area.serialNumber});
        };
        if (device.contents && device.contents->product)
            add(*device.contents->product);
        else if (device.contents && device.contents->board)
            add(*device.contents->board);
        else
            row.resize(row.size() + 4);
        row.push_back(device.problems.empty() ? "" : device.problems.front());
        table.add(std::move(row));
    }
    table.print(std::cout, layoutOf(STDOUT_FILENO));
}

std::uint8_t deviceId(const std::string& text) {
    const auto id = readId(text);
    if (!id || *id > 0xFE)
        throw UsageError('"' + text + "\" is neither `list` nor the ID of a FRU device (0 to 254)");
    return static_cast<std::uint8_t>(*id);
}

int run(const FruOptions& options) {
    const bool isList = options.ids == std::vector<std::string>{listOnly};
    std::vector<FruDevice> devices;
    if (!isList)
        for (const std::string& id : options.ids)
            devices.push_back({.id = deviceId(id), .name = {}, .contents = {}, .problems = {}});
    const auto bmc = options.connection.open();
    if (devices.empty())
        devices = view::findFruDevices(*bmc);
    for (FruDevice& device : devices)
        view::readFru(*bmc, device);
    if (options.json) {
        auto json = ordered_json::array();
        for (const FruDevice& device : devices)
            json.push_back(deviceJson(device));
        printJson(std::cout, json);
    } else if (isList) {
        printList(devices);
    } else {
        for (const FruDevice& device : devices)
            printFields(device);
    }
    // A device that was asked for by its ID is to be there.
    const bool isAsked = !isList && !options.ids.empty();
    return isAsked && std::ranges::any_of(devices, [](const auto& each) { return !each.contents; }) ? failed
                                                                                                    : done;
}

void addFruOptions(Command command) {
    const auto options = std::make_shared<FruOptions>();
    command.option("ID", options->ids,
                   "IDs of FRU devices, or list for a line each; without any, everything of all of them");
    command.flag("--json", options->json, "Print JSON");
    options->connection.addTo(command);
    command.footer(
        "It asks the BMC that `phctl sync` knows, or the one that the options name. Status 1: a device "
        "that was asked for\nby its ID cannot be read.\n\nExamples:\n"
        "  phctl fru\n"
        "  phctl fru list\n"
        "  phctl fru 0 --json");
    command.action([options] { return run(*options); });
}

} // namespace

void addFruCommand(Command program) {
    program.subcommand("fru", "Print what FRU devices say of board, product and chassis, over IPMI",
                       addFruOptions);
}

} // namespace phctl
