// Alerts by e-mail: OEM commands (docs/oem-commands.md, "Mail").
#include "hooks/oem.h"
#include "ipmi/oem_commands.h"

#include <algorithm>
#include <arpa/inet.h>
#include <cstring>
#include <endian.h>

namespace {

using hooks::Session;
namespace oem = ipmi::oem;

enum Server : std::uint8_t { primary, secondary };

// `text` holds the text's size, and one byte more unless `isTerminated` is false.
void readText(Session& bmc, oem::MailText which, std::uint8_t owner, std::uint8_t part, char* text,
              bool isTerminated = true) {
    const std::size_t size = oem::mailTextSizes[which];
    std::fill_n(text, size + (isTerminated ? 1 : 0), '\0');
    for (std::size_t start = 0; start < size; start += oem::mailBlockSize) {
        const auto answer =
            hooks::runOem(bmc, oem::getMailText,
                          {which, owner, part, static_cast<std::uint8_t>(start / oem::mailBlockSize)});
        auto reader = answer.reader();
        const auto block = reader.bytes(oem::mailBlockSize);
        answer.verify(reader);
        const auto end = std::ranges::find(block, 0);
        std::copy_n(block.begin(), std::min<std::size_t>(end - block.begin(), size - start), text + start);
        if (end != block.end())
            return;
    }
}

// The BMC takes the text once the block with its end has arrived.
void writeText(Session& bmc, oem::MailText which, std::uint8_t owner, std::uint8_t part, const char* text) {
    const std::size_t size = oem::mailTextSizes[which];
    const std::size_t length = strnlen(text, size);
    for (std::size_t start = 0; start < size && start <= length; start += oem::mailBlockSize) {
        std::uint8_t request[4 + oem::mailBlockSize] = {
            which, owner, part, static_cast<std::uint8_t>(start / oem::mailBlockSize)};
        std::memcpy(request + 4, text + start, std::min(length - start, oem::mailBlockSize));
        hooks::runOem(bmc, oem::setMailText, request);
    }
}

struct ServerSettings {
    std::uint8_t isEnabled, security;
    std::uint16_t port;
    std::uint8_t ipv4[4], ipv6[16];
};

ServerSettings readServer(Session& bmc, std::uint8_t channel, Server server) {
    const auto answer = hooks::runOem(bmc, oem::getMailServer, {channel, server});
    auto reader = answer.reader();
    ServerSettings settings{};
    settings.isEnabled = reader.u8() & 1;
    settings.security = reader.u8() & (CIM_SMTP_AUTHENTICATE | CIM_SMTP_STARTTLS);
    settings.port = reader.u16();
    std::ranges::copy(reader.bytes(sizeof settings.ipv4), settings.ipv4);
    std::ranges::copy(reader.bytes(sizeof settings.ipv6), settings.ipv6);
    answer.verify(reader);
    return settings;
}

// On failure no part of the record stays with the caller.
void readInfo(Session& bmc, std::uint8_t channel, Server server, CIM_SMTPInfo& info) {
    struct Record : CIM_SMTPInfo {
        ~Record() { explicit_bzero(static_cast<CIM_SMTPInfo*>(this), sizeof(CIM_SMTPInfo)); }
    } record{};
    const ServerSettings settings = readServer(bmc, channel, server);
    record.isEnabled = settings.isEnabled;
    record.security = settings.security;
    record.port = htole16(settings.port);
    readText(bmc, oem::serverUserName, channel, server, record.userName);
    readText(bmc, oem::serverPassword, channel, server, record.password);
    readText(bmc, oem::serverSender, channel, server, record.sender, false);
    readText(bmc, oem::serverHostName, channel, server, record.hostName, false);
    info = record;
}

int getInfo(const char* hook, const IPMI20_SESSION_T* session, CIM_SMTPInfo* info, std::uint8_t channel,
            Server server, int timeout) {
    return hooks::guarded(hook, [&] {
        hooks::require(info != nullptr);
        readInfo(hooks::sessionOf(session, timeout), channel, server, *info);
    });
}

int getIpv4(const char* hook, const IPMI20_SESSION_T* session, char* address, std::uint8_t channel,
            Server server, int timeout) {
    return hooks::guarded(hook, [&] {
        hooks::require(address != nullptr);
        const ServerSettings settings = readServer(hooks::sessionOf(session, timeout), channel, server);
        inet_ntop(AF_INET, settings.ipv4, address, CIM_SMTP_ADDRESS_SIZE);
    });
}

int getIpv6(const char* hook, const IPMI20_SESSION_T* session, std::uint8_t* address, std::uint8_t channel,
            Server server, int timeout) {
    return hooks::guarded(hook, [&] {
        hooks::require(address != nullptr);
        const ServerSettings settings = readServer(hooks::sessionOf(session, timeout), channel, server);
        std::ranges::copy(settings.ipv6, address);
    });
}

} // namespace

int CIM_TRZGetEmailDest(IPMI20_SESSION_T* session, uint8_t selector, uint8_t* userId, char* subject,
                        char* message, uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(userId != nullptr && subject != nullptr && message != nullptr);
        auto& bmc = hooks::sessionOf(session, timeout);
        const auto answer = hooks::runOem(bmc, oem::getMailDestination, {channel, selector});
        auto reader = answer.reader();
        *userId = reader.u8();
        answer.verify(reader);
        readText(bmc, oem::mailSubject, channel, selector, subject);
        readText(bmc, oem::mailMessage, channel, selector, message);
    });
}

int CIM_TRZSetEmailDest(IPMI20_SESSION_T* session, uint8_t selector, uint8_t userId, const char* subject,
                        const char* message, uint8_t channel, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(subject != nullptr && message != nullptr);
        auto& bmc = hooks::sessionOf(session, timeout);
        writeText(bmc, oem::mailSubject, channel, selector, subject);
        writeText(bmc, oem::mailMessage, channel, selector, message);
        hooks::runOem(bmc, oem::setMailDestination, {channel, selector, userId});
    });
}

int CIM_TRZGetUserEmail(IPMI20_SESSION_T* session, uint8_t userId, char* address, int timeout) {
    return hooks::guarded(__func__, [&] {
        hooks::require(address != nullptr);
        readText(hooks::sessionOf(session, timeout), oem::userAddress, userId, 0, address);
    });
}

int CIM_TRZGetSMTPInfo(IPMI20_SESSION_T* session, CIM_SMTPInfo* info, uint8_t channel, int timeout) {
    return getInfo(__func__, session, info, channel, primary, timeout);
}

int CIM_TRZGetSMTPServerInfo(IPMI20_SESSION_T* session, char* address, uint8_t channel, int timeout) {
    return getIpv4(__func__, session, address, channel, primary, timeout);
}

int CIM_TRZGetSMTPServerInfoIPv6(IPMI20_SESSION_T* session, uint8_t* address, uint8_t channel, int timeout) {
    return getIpv6(__func__, session, address, channel, primary, timeout);
}

int CIM_TRZGetSMTP2Info(IPMI20_SESSION_T* session, CIM_SMTPInfo* info, uint8_t channel, int timeout) {
    return getInfo(__func__, session, info, channel, secondary, timeout);
}

int CIM_TRZGetSMTPServer2Info(IPMI20_SESSION_T* session, char* address, uint8_t channel, int timeout) {
    return getIpv4(__func__, session, address, channel, secondary, timeout);
}

int CIM_TRZGetSMTPServer2InfoIPv6(IPMI20_SESSION_T* session, uint8_t* address, uint8_t channel, int timeout) {
    return getIpv6(__func__, session, address, channel, secondary, timeout);
}
