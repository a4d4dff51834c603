// bmc alert-destination, alert-policy, mail-server, user-email: where the virtual BMC's alerts go.
#include "commands.h"
#include "errors.h"
#include "ipmi/pef_configuration.h"
#include "machine.h"
#include "secrets.h"

#include <arpa/inet.h>
#include <memory>
#include <nlohmann/json.hpp>

namespace phctl {
namespace {

using nlohmann::ordered_json;

struct AlertOptions {
    std::string stateFile;
    std::uint8_t channel = 0, selector = 0, number = 0, user = 0;
    std::optional<std::uint8_t> mailedUser;
    std::string trapAddress;
    bool isListener = false, isOff = false;
    std::uint8_t policy = 0, rule = 0;
    bool isSecondary = false;
    std::optional<bool> isEnabled, authenticates, startsTls;
    std::optional<std::uint16_t> port;
    std::optional<std::string> address, sender, hostName, userName;
    std::string passwordFile;
    std::string email;
};

bool isAddress(int family, const std::string& text) {
    in6_addr address; // has room for IPv4 too
    return inet_pton(family, text.c_str(), &address) == 1;
}

// Sets the one of a destination's or a server's two addresses that the text is; the other one is cleared.
ordered_json addresses(const std::string& text) {
    if (isAddress(AF_INET, text))
        return {{"ipv4", text}, {"ipv6", "::"}};
    if (isAddress(AF_INET6, text))
        return {{"ipv4", "0.0.0.0"}, {"ipv6", text}};
    throw UsageError('"' + text + "\" is neither an IPv4 nor an IPv6 address");
}

int setDestination(const AlertOptions& options) {
    ordered_json changes{
        {"kind", "trap"}, {"user", 0}, {"isIpv6", false}, {"ipv4", "0.0.0.0"}, {"ipv6", "::"}};
    if (options.mailedUser)
        changes.update({{"kind", "e-mail"}, {"user", *options.mailedUser}});
    else if (options.isListener)
        changes["kind"] = "listener";
    else if (!options.isOff) {
        changes.update(addresses(options.trapAddress));
        changes["isIpv6"] = isAddress(AF_INET6, options.trapAddress);
    }
    openMachine(options.stateFile).setAlertDestination(options.channel, options.selector, changes);
    return done;
}

int setPolicy(const AlertOptions& options) {
    if (!options.isOff && (options.policy == 0 || options.channel == 0 || options.selector == 0))
        throw UsageError("name --policy, --channel and --selector, or --off");
    const std::uint8_t entry[] = {static_cast<std::uint8_t>(options.policy << 4 |
                                                            (options.isOff ? 0 : ipmi::pef::policyEnabled) |
                                                            options.rule),
                                  static_cast<std::uint8_t>(options.channel << 4 | options.selector), 0};
    openMachine(options.stateFile).setAlertPolicy(options.number, entry);
    return done;
}

int setServer(const AlertOptions& options) {
    auto changes = ordered_json::object();
    const auto add = [&](const char* name, const auto& value) {
        if (value)
            changes[name] = *value;
    };
    if (options.address)
        changes.update(addresses(*options.address));
    add("enabled", options.isEnabled);
    add("port", options.port);
    add("sender", options.sender);
    add("hostName", options.hostName);
    add("userName", options.userName);
    add("authenticate", options.authenticates);
    add("startTls", options.startsTls);
    if (!options.passwordFile.empty())
        changes["password"] = readSecret("--password-file", options.passwordFile);
    openMachine(options.stateFile).setMailServer(options.channel, options.isSecondary, changes);
    return done;
}

int setEmail(const AlertOptions& options) {
    openMachine(options.stateFile).setUserEmail(options.user, options.email);
    return done;
}

} // namespace

void addAlertCommands(Command bmc) {
    const auto options = std::make_shared<AlertOptions>();
    const auto add = [&](const char* name, const char* description, int (*run)(const AlertOptions&),
                         const char* footer) {
        Command command = bmc.subcommand(name, description);
        addMachineOption(command, options->stateFile);
        command.footer(footer);
        command.action([options, run] { return run(*options); });
        return command;
    };
    const auto addChannel = [&](Command command, const char* name) {
        return command.option(name, options->channel, "Channel of a LAN").required().range(1, 11);
    };
    const auto addSelector = [&](Command command, const char* name) {
        command.option(name, options->selector, "Destination of the channel").required().range(1, 15);
    };

    Command command = add("alert-destination", "Set an alert destination of a LAN", setDestination,
                          "Printed by `phctl bmc show alertDestinations`.\n\nExamples:\n"
                          "  phctl bmc alert-destination 1 3 --mail 2\n"
                          "  phctl bmc alert-destination 1 7 --listener\n"
                          "  phctl bmc alert-destination 1 2 --trap 192.0.2.9");
    addChannel(command, "CHANNEL");
    addSelector(command, "SELECTOR");
    const auto kind = command.alternatives("What it is");
    kind.option("--mail", options->mailedUser, "It mails this user of the BMC (0: nobody)").range(0, 63);
    kind.flag("--listener", options->isListener, "It posts to CIM_ListenerDestinationCIMXML CIMXML-SELECTOR");
    kind.option("--trap", options->trapAddress, "It sends traps to this address");
    kind.flag("--off", options->isOff, "It has no address");

    command = add("alert-policy", "Set an entry of the alert policy table", setPolicy,
                  "Printed by `phctl bmc show pef`.\n\nExamples:\n"
                  "  phctl bmc alert-policy 2 --policy 1 --channel 1 --selector 3\n"
                  "  phctl bmc alert-policy 2 --off");
    command.option("NUMBER", options->number, "The entry's place in the table").required().range(1, 127);
    const auto off = command.flag("--off", options->isOff, "The entry is not used");
    for (const Option option :
         {command.option("--policy", options->policy, "Alert policy number of filters").range(1, 15),
          command.option("--channel", options->channel, "Channel of the destination").range(1, 11),
          command.option("--selector", options->selector, "Selector of the destination").range(1, 15),
          command
              .option("--rule", options->rule,
                      "When an earlier entry was sent: 0 send too, 1 do not, 2 stop here, 3 go "
                      "on with another channel, 4 with another kind")
              .range(0, 4)})
        option.excludes(off);

    command =
        add("mail-server", "Set a mail server of a LAN", setServer,
            "What is not named stays. Printed, without the password, by `phctl bmc show mail`.\n\nExamples:\n"
            "  phctl bmc mail-server 1 --enable --address 192.0.2.25 --sender bmc@example.com\n"
            "  phctl bmc mail-server 1 --secondary --port 587 --starttls --auth --user bmc --password-file "
            "secret");
    addChannel(command, "CHANNEL");
    command.flag("--secondary", options->isSecondary, "The one that is tried when the first fails");
    command.flags("--enable", "--disable", options->isEnabled, "It is used");
    command.option("--address", options->address, "IPv4 or IPv6 address");
    command.option("--port", options->port, "TCP port");
    command.option("--sender", options->sender, "Mail address that mails come from");
    command.option("--host-name", options->hostName, "Name of the BMC in its greeting");
    command.flags("--auth", "--no-auth", options->authenticates, "It wants a user name and a password");
    command.option("--user", options->userName, "The user name");
    command.option("--password-file", options->passwordFile,
                   "File whose first line is the password; - is standard input");
    command.flags("--starttls", "--no-starttls", options->startsTls, "Mail goes encrypted, or not at all");

    command =
        add("user-email", "Set the mail address of a user of the BMC", setEmail,
            "Printed by `phctl bmc show users`.\n\nExamples:\n  phctl bmc user-email 2 root@example.com\n"
            "  phctl bmc user-email 2 ''");
    command.option("USER", options->user, "User ID").required().range(1, 63);
    command.option("ADDRESS", options->email, "The address; empty: none").required();
}

} // namespace phctl
