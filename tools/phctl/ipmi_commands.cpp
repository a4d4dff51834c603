#include "ipmi_commands.h"

#include "errors.h"
#include "names.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>

namespace phctl {
namespace {

struct Row {
    const char* name;
    IpmiCommand command;
};

// IPMI 2.0 appendix G.
constexpr Row commands[] = {
    {"get-chassis-status", {0x00, 0x01}},
    {"chassis-control", {0x00, 0x02}},
    {"arm-pef-postpone-timer", {0x04, 0x11}},
    {"set-pef-configuration", {0x04, 0x12}},
    {"get-pef-configuration", {0x04, 0x13}},
    {"alert-immediate", {0x04, 0x16}},
    {"get-sensor-thresholds", {0x04, 0x27}},
    {"get-sensor-reading", {0x04, 0x2D}},
    {"get-device-id", {0x06, 0x01}},
    {"get-device-guid", {0x06, 0x08}},
    {"get-system-guid", {0x06, 0x37}},
    {"set-user-access", {0x06, 0x43}},
    {"get-user-access", {0x06, 0x44}},
    {"set-user-name", {0x06, 0x45}},
    {"get-user-name", {0x06, 0x46}},
    {"set-user-password", {0x06, 0x47}},
    {"get-fru-inventory-area-info", {0x0A, 0x10}},
    {"read-fru-data", {0x0A, 0x11}},
    {"get-sdr-repository-info", {0x0A, 0x20}},
    {"reserve-sdr-repository", {0x0A, 0x22}},
    {"get-sdr", {0x0A, 0x23}},
    {"get-sel-info", {0x0A, 0x40}},
    {"reserve-sel", {0x0A, 0x42}},
    {"get-sel-entry", {0x0A, 0x43}},
    {"add-sel-entry", {0x0A, 0x44}},
    {"clear-sel", {0x0A, 0x47}},
    {"set-lan-configuration", {0x0C, 0x01}},
    {"get-lan-configuration", {0x0C, 0x02}},
};

std::optional<std::uint8_t> byte(std::string_view text) {
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint8_t value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, isHexadecimal ? 16 : 10);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const Row& row : commands)
        all.emplace_back(row.name);
    return all;
}

} // namespace

IpmiCommand parseIpmiCommand(const std::string& text) {
    for (const Row& row : commands)
        if (text == row.name)
            return row.command;
    if (const std::size_t colon = text.find(':'); colon != std::string::npos) {
        const auto netFn = byte(std::string_view(text).substr(0, colon));
        const auto command = byte(std::string_view(text).substr(colon + 1));
        if (netFn && command && *netFn <= 0x3F)
            return {*netFn, *command};
    }
    throw UsageError("\"" + text +
                     "\" is neither an IPMI command's name nor NETFN:COMMAND, such as 0x04:0x2D" +
                     didYouMean(text, names()));
}

std::string toText(const IpmiCommand& command) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%02X:0x%02X", command.netFn, command.command);
    const auto* row = std::find_if(std::begin(commands), std::end(commands), [&](const Row& each) {
        return each.command.netFn == command.netFn && each.command.command == command.command;
    });
    return row != std::end(commands) ? std::string(row->name) + " (" + code + ')' : code;
}

std::string ipmiCommandNames() {
    std::string text;
    for (const std::string& name : names())
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

} // namespace phctl
