#include "machine_text.h"

#include "json_text.h"
#include "text_layout.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <unistd.h>

namespace phctl {
namespace {

using nlohmann::ordered_json;

std::string plainText(const ordered_json& value) {
    if (value.is_string())
        return value.get<std::string>();
    if (!value.is_array())
        return value.is_null() ? "-" : jsonLine(value);
    std::string text;
    for (const auto& element : value)
        text += (text.empty() ? "" : ", ") + plainText(element);
    return text;
}

bool isTable(const ordered_json& value) {
    return value.is_array() && !value.empty() &&
           std::all_of(value.begin(), value.end(), [](const ordered_json& row) { return row.is_object(); });
}

void printTable(std::ostream& out, const ordered_json& rows) {
    std::vector<std::string> head;
    for (const auto& row : rows)
        for (const auto& cell : row.items())
            if (std::find(head.begin(), head.end(), cell.key()) == head.end())
                head.push_back(cell.key());
    Table table(head);
    for (const auto& row : rows) {
        std::vector<std::string> cells;
        cells.reserve(head.size());
        for (const std::string& name : head)
            cells.push_back(row.contains(name) ? plainText(row[name]) : "");
        table.add(std::move(cells));
    }
    table.print(out, layoutOf(STDOUT_FILENO));
}

void printObject(std::ostream& out, const ordered_json& object) {
    std::size_t width = 0;
    for (const auto& item : object.items())
        if (!isTable(item.value()))
            width = std::max(width, displayWidth(item.key()));
    for (const auto& item : object.items())
        if (!isTable(item.value()))
            out << "  " << item.key() << std::string(width - displayWidth(item.key()), ' ') << " = "
                << printable(plainText(item.value())) << '\n';
    for (const auto& item : object.items())
        if (isTable(item.value())) {
            out << '\n' << item.key() << '\n';
            printTable(out, item.value());
        }
}

} // namespace

void printMachine(std::ostream& out, const ordered_json& machine) {
    for (const char* separator = ""; const auto& part : machine.items()) {
        out << separator << printable(part.key());
        separator = "\n";
        if (part.value().is_object()) {
            out << '\n';
            printObject(out, part.value());
        } else if (isTable(part.value())) {
            out << '\n';
            printTable(out, part.value());
        } else {
            out << " = " << printable(plainText(part.value())) << '\n';
        }
    }
}

} // namespace phctl
