// bmc event: an event of the virtual BMC, and the alerts that it gives rise to.
#include "commands.h"
#include "errors.h"
#include "event_options.h"
#include "event_pipe.h"
#include "ipmi/lan_configuration.h"
#include "json_text.h"
#include "machine.h"
#include "names.h"
#include "numbers.h"

#include <algorithm>
#include <endian.h>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <platform/sel_record.h>

namespace phctl {
namespace {

using nlohmann::ordered_json;
using SelRecord = std::array<std::uint8_t, 16>;

struct EventCommandOptions {
    std::string stateFile;
    bool json = false;
    EventOptions event;
    std::string destination; // empty: those that the machine's filters find
};

// Tells where one message goes.
struct Recipient {
    std::int32_t kind; // SEL_EVENT_TO_…; 0: the BMC delivers itself
    std::int32_t destination;
    std::int32_t channel;
    std::string text;
};

Recipient toMail(std::int32_t channel, std::int32_t selector) {
    return {SEL_EVENT_TO_MAIL, selector, channel,
            "e-mail: destination " + std::to_string(selector) + " of channel " + std::to_string(channel)};
}

Recipient toListener(std::int32_t destination, std::int32_t channel) {
    return {SEL_EVENT_TO_CIMXML, destination, channel, "listener: CIMXML-" + std::to_string(destination)};
}

// mail:CHANNEL:SELECTOR, cimxml:N
Recipient parseRecipient(const std::string& text) {
    constexpr std::uint8_t lastChannel = 0x0F, lastSelector = 0x0F;
    const std::vector<std::string> parts = split(text, ':');
    if (parts.size() == 3 && parts[0] == "mail") {
        const auto channel = readNumber<std::uint8_t>(parts[1]);
        const auto selector = readNumber<std::uint8_t>(parts[2]);
        if (channel && *channel <= lastChannel && selector && *selector <= lastSelector)
            return toMail(*channel, *selector);
    }
    if (parts.size() == 2 && parts[0] == "cimxml")
        if (const auto destination = readNumber<std::int32_t>(parts[1]); destination && *destination >= 0)
            return toListener(*destination, 0);
    throw UsageError("--to: \"" + text + "\" is neither mail:CHANNEL:SELECTOR nor cimxml:N");
}

Recipient recipientOf(const vbmc::Alert& alert) {
    switch (alert.type) {
    case ipmi::lan::email:
        return toMail(alert.channel, alert.selector);
    case ipmi::lan::listener:
        return toListener(alert.selector, alert.channel);
    default:
        return {0, alert.selector, alert.channel,
                std::string(alert.type == ipmi::lan::petTrap ? "trap" : "OEM alert") + ": destination " +
                    std::to_string(alert.selector) + " of channel " + std::to_string(alert.channel)};
    }
}

SelRecord recordOf(vbmc::VirtualBmc& machine, std::uint16_t id) {
    const auto records = machine.selRecords();
    const auto found = std::find_if(records.rbegin(), records.rend(), [&](const SelRecord& record) {
        return PH_SelRecordId(record.data()) == id;
    });
    if (found == records.rend())
        throw Failure("the record is not in the event log any more");
    return *found;
}

void deliver(const SelRecord& record, const Recipient& delivery) {
    SelEventMessage message{};
    std::ranges::copy(record, message.record);
    message.destination =
        static_cast<std::int32_t>(htole32(static_cast<std::uint32_t>(delivery.destination)));
    message.channel = static_cast<std::int32_t>(htole32(static_cast<std::uint32_t>(delivery.channel)));
    message.kind = static_cast<std::int32_t>(htole32(static_cast<std::uint32_t>(delivery.kind)));
    writeToEventPipe(message);
}

void print(const EventCommandOptions& options, std::uint16_t id, const std::vector<std::uint8_t>& filters,
           const std::vector<Recipient>& deliveries) {
    if (options.json) {
        auto rows = ordered_json::array();
        for (const Recipient& delivery : deliveries)
            rows.push_back({{"to", delivery.text},
                            {"kind", delivery.kind},
                            {"destination", delivery.destination},
                            {"channel", delivery.channel}});
        printJson(std::cout, {{"id", id}, {"filters", filters}, {"alerts", std::move(rows)}});
        return;
    }
    std::cout << "Added record " << id << '\n';
    if (options.destination.empty() && filters.empty())
        std::cout << "No filter matches\n";
    for (const unsigned filter : filters)
        std::cout << "Filter " << filter << " matches\n";
    for (const Recipient& delivery : deliveries)
        std::cout << (delivery.kind != 0 ? "Written for " : "Left to the BMC: ") << delivery.text << '\n';
}

int run(const EventCommandOptions& options) {
    std::vector<Recipient> deliveries;
    if (!options.destination.empty())
        deliveries.push_back(parseRecipient(options.destination));
    auto machine = openMachine(options.stateFile);
    const std::uint16_t id = options.event.addEvent(machine);
    const SelRecord record = recordOf(machine, id);
    std::vector<std::uint8_t> filters;
    if (deliveries.empty()) {
        const vbmc::EventMatch match = machine.matchEvent(record);
        filters = match.filters;
        std::ranges::transform(match.alerts, std::back_inserter(deliveries), recipientOf);
    }
    try {
        for (const Recipient& delivery : deliveries)
            if (delivery.kind != 0)
                deliver(record, delivery);
    } catch (const Failure& failure) {
        throw Failure("record " + std::to_string(id) +
                      " is in the event log, but not delivered: " + failure.what());
    }
    print(options, id, filters, deliveries);
    return done;
}

void addEventOptions(Command command) {
    const auto options = std::make_shared<EventCommandOptions>();
    addMachineOption(command, options->stateFile);
    command.flag("--json", options->json, "Print JSON");
    options->event.addTo(command);
    command.option("--to", options->destination,
                   "Deliver to mail:CHANNEL:SELECTOR or cimxml:N, whatever the filters say");
    command.footer("Writes to the indication monitor's pipe, " SEL_EVENT_PIPE
                   ", what the machine's event filters and alert policies\nsend to e-mail destinations and "
                   "listeners.\n\nExamples:\n"
                   "  phctl monitor                   # in another shell\n"
                   "  phctl bmc event 'CPU1 Temp' 9\n"
                   "  phctl bmc event 'PSU1 Status' 3 --deasserted --to mail:1:3\n"
                   "  phctl bmc event --record '02 00000000 2000 04 01 30 01 59 7d 78' --to cimxml:7");
    command.action([options] { return run(*options); });
}

} // namespace

void addEventCommand(Command bmc) {
    bmc.subcommand("event", "Let an event happen: log it, filter it, have alerts delivered", addEventOptions);
}

} // namespace phctl
