#include "ipmi_commands.h"

#include "errors.h"
#include "names.h"
#include "numbers.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace phctl {
namespace {

struct Row {
    const char* name;
    ipmi::CommandCode command;
};

constexpr Row commands[] = {
    {"get-chassis-status", ipmi::command::getChassisStatus},
    {"chassis-control", ipmi::command::chassisControl},
    {"set-system-boot-options", ipmi::command::setSystemBootOptions},
    {"get-system-boot-options", ipmi::command::getSystemBootOptions},
    {"arm-pef-postpone-timer", ipmi::command::armPefPostponeTimer},
    {"set-pef-configuration", ipmi::command::setPefConfiguration},
    {"get-pef-configuration", ipmi::command::getPefConfiguration},
    {"alert-immediate", ipmi::command::alertImmediate},
    {"get-sensor-thresholds", ipmi::command::getSensorThresholds},
    {"get-sensor-reading", ipmi::command::getSensorReading},
    {"get-device-id", ipmi::command::getDeviceId},
    {"get-acpi-power-state", ipmi::command::getAcpiPowerState},
    {"get-device-guid", ipmi::command::getDeviceGuid},
    {"reset-watchdog-timer", ipmi::command::resetWatchdogTimer},
    {"set-watchdog-timer", ipmi::command::setWatchdogTimer},
    {"get-watchdog-timer", ipmi::command::getWatchdogTimer},
    {"get-system-guid", ipmi::command::getSystemGuid},
    {"set-user-access", ipmi::command::setUserAccess},
    {"get-user-access", ipmi::command::getUserAccess},
    {"set-user-name", ipmi::command::setUserName},
    {"get-user-name", ipmi::command::getUserName},
    {"set-user-password", ipmi::command::setUserPassword},
    {"get-payload-activation-status", ipmi::command::getPayloadActivationStatus},
    {"get-payload-instance-info", ipmi::command::getPayloadInstanceInfo},
    {"set-system-info", ipmi::command::setSystemInfo},
    {"get-system-info", ipmi::command::getSystemInfo},
    {"get-fru-inventory-area-info", ipmi::command::getFruInventoryAreaInfo},
    {"read-fru-data", ipmi::command::readFruData},
    {"get-sdr-repository-info", ipmi::command::getSdrRepositoryInfo},
    {"reserve-sdr-repository", ipmi::command::reserveSdrRepository},
    {"get-sdr", ipmi::command::getSdr},
    {"get-sel-info", ipmi::command::getSelInfo},
    {"get-sel-allocation-info", ipmi::command::getSelAllocationInfo},
    {"reserve-sel", ipmi::command::reserveSel},
    {"get-sel-entry", ipmi::command::getSelEntry},
    {"add-sel-entry", ipmi::command::addSelEntry},
    {"delete-sel-entry", ipmi::command::deleteSelEntry},
    {"clear-sel", ipmi::command::clearSel},
    {"get-sel-time", ipmi::command::getSelTime},
    {"set-sel-time", ipmi::command::setSelTime},
    {"get-sel-time-utc-offset", ipmi::command::getSelTimeUtcOffset},
    {"set-sel-time-utc-offset", ipmi::command::setSelTimeUtcOffset},
    {"set-lan-configuration", ipmi::command::setLanConfiguration},
    {"get-lan-configuration", ipmi::command::getLanConfiguration},
    {"set-sol-configuration", ipmi::command::setSolConfiguration},
    {"get-sol-configuration", ipmi::command::getSolConfiguration},
};

std::vector<std::string> names() {
    std::vector<std::string> all;
    for (const Row& row : commands)
        all.emplace_back(row.name);
    return all;
}

} // namespace

ipmi::CommandCode parseIpmiCommand(const std::string& text) {
    for (const Row& row : commands)
        if (text == row.name)
            return row.command;
    if (const std::size_t colon = text.find(':'); colon != std::string::npos) {
        const auto netFn = readInteger<std::uint8_t>(std::string_view(text).substr(0, colon));
        const auto command = readInteger<std::uint8_t>(std::string_view(text).substr(colon + 1));
        if (netFn && command && *netFn <= 0x3F)
            return {*netFn, *command};
    }
    throw UsageError("\"" + text +
                     "\" is neither an IPMI command's name nor NETFN:COMMAND, such as 0x04:0x2D" +
                     didYouMean(text, names()));
}

std::string toText(ipmi::CommandCode command) {
    char code[16];
    std::snprintf(code, sizeof code, "0x%02X:0x%02X", command.netFn, command.number);
    const auto* row = std::find_if(std::begin(commands), std::end(commands),
                                   [&](const Row& each) { return each.command == command; });
    return row != std::end(commands) ? std::string(row->name) + " (" + code + ')' : code;
}

std::string ipmiCommandNames() {
    std::string text;
    for (const std::string& name : names())
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

} // namespace phctl
