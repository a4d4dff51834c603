// Alerts by e-mail (docs/oem-commands.md, "Mail"): the mail servers, and the commands for all that mail
// needs.
#pragma once

#include "ipmi/oem_commands.h"
#include "virtual-bmc/lan/lan_addresses.h"
#include "virtual-bmc/state/part.h"
#include "virtual-bmc/state/pending_blocks.h"

#include <string>
#include <vector>

namespace vbmc {

struct MailServer {
    std::uint8_t channel = 0;
    bool isSecondary = false;
    bool isEnabled = false;
    Ipv4Address ipv4;
    Ipv6Address ipv6;
    std::uint16_t port = 25;
    bool authenticates = false;
    bool startsTls = false;
    std::string userName;
    std::string password;
    std::string sender;
    std::string hostName;

    void fields(Fields& fields);
    void check(const Place& place) const;
};

struct Mail {
    std::vector<MailServer> servers;
    PendingBlocks pending; // a text

    static constexpr const char* name = "mail";
    static std::span<const Command> commands();
    void fields(Fields& fields);
    void check(const Place& place) const;
    Json describe(const State& state) const; // without passwords

    MailServer get(std::uint8_t channel, bool isSecondary) const; // as it is or would be
    MailServer& edit(std::uint8_t channel, bool isSecondary);
};

// A text has its size, and no control characters, which would end a line of a mail's head; a message may have
// lines.
bool isMailText(std::string_view text, std::size_t which);
void checkMailText(const Place& place, const std::string& text, ipmi::oem::MailText which);

} // namespace vbmc
