#include "virtual-bmc/pef/mail.h"

#include "virtual-bmc/state/json_fields.h"
#include "virtual-bmc/state/state.h"

#include <algorithm>

namespace vbmc {
namespace {

namespace completion = ipmi::completion;
namespace oem = ipmi::oem;

constexpr std::uint8_t authenticate = 0x01, startTls = 0x02; // bits of a server's security

constexpr std::string AlertDestination::*destinationTexts[] = {&AlertDestination::subject,
                                                               &AlertDestination::message};
constexpr std::string MailServer::*serverTexts[] = {&MailServer::userName, &MailServer::password,
                                                    &MailServer::sender, &MailServer::hostName};

auto isServer(std::uint8_t channel, bool isSecondary) {
    return [=](const MailServer& each) { return each.channel == channel && each.isSecondary == isSecondary; };
}

bool hasDestination(const State& state, std::uint8_t channel, std::uint8_t selector) {
    return state.get<Lans>().find(channel) != nullptr && selector >= 1 &&
           selector <= AlertDestinations::slots;
}

bool hasServer(const State& state, std::uint8_t channel, std::uint8_t server) {
    return state.get<Lans>().find(channel) != nullptr && server <= 1;
}

// ---- Destinations

std::uint8_t getDestination(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const std::uint8_t channel = request.u8();
    const std::uint8_t selector = request.u8();
    if (!hasDestination(state, channel, selector))
        return completion::parameterOutOfRange;
    answer.u8(state.get<AlertDestinations>().get(channel, selector).userId);
    return completion::success;
}

std::uint8_t setDestination(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t channel = request.u8();
    const std::uint8_t selector = request.u8();
    if (!hasDestination(state, channel, selector))
        return completion::parameterOutOfRange;
    state.edit<AlertDestinations>().edit(channel, selector).userId = request.u8();
    return completion::success;
}

// ---- Texts

struct TextName {
    std::uint8_t which;
    std::uint8_t owner; // a channel or a user
    std::uint8_t part;

    explicit TextName(ipmi::Reader& request) : which(request.u8()), owner(request.u8()), part(request.u8()) {}

    bool exists(const State& state) const {
        if (which <= oem::mailMessage)
            return hasDestination(state, owner, part);
        if (which == oem::userAddress)
            return state.get<Users>().find(owner) != nullptr && part == 0;
        return which <= oem::serverHostName && hasServer(state, owner, part);
    }
    std::string read(const State& state) const {
        if (which <= oem::mailMessage)
            return state.get<AlertDestinations>().get(owner, part).*destinationTexts[which];
        if (which == oem::userAddress)
            return state.get<Users>().find(owner)->email;
        return state.get<Mail>().get(owner, part != 0).*serverTexts[which - oem::serverUserName];
    }
    std::string& edit(State& state) const {
        if (which <= oem::mailMessage)
            return state.edit<AlertDestinations>().edit(owner, part).*destinationTexts[which];
        if (which == oem::userAddress)
            return state.edit<Users>().slot(owner).email;
        return state.edit<Mail>().edit(owner, part != 0).*serverTexts[which - oem::serverUserName];
    }
    std::size_t size() const { return oem::mailTextSizes[which]; }
};

std::uint8_t getText(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const TextName name(request);
    const std::size_t start = request.u8() * oem::mailBlockSize;
    if (!name.exists(state) || start >= name.size())
        return completion::parameterOutOfRange;
    const std::string text = name.read(state);
    const auto block = std::string_view(text).substr(std::min(start, text.size()), oem::mailBlockSize);
    answer.bytes({reinterpret_cast<const std::uint8_t*>(block.data()), block.size()})
        .fill(oem::mailBlockSize - block.size(), 0);
    return completion::success;
}

std::uint8_t setText(State& state, ipmi::Reader request, ipmi::Writer&) {
    ipmi::Reader key = request;
    const TextName name(request);
    const std::size_t start = request.u8() * oem::mailBlockSize;
    if (!name.exists(state) || start >= name.size())
        return completion::parameterOutOfRange;
    PendingBlocks& pending = state.edit<Mail>().pending;
    const auto block = request.bytes(oem::mailBlockSize);
    const auto end = std::ranges::find(block, 0);
    if (!pending.add(key.bytes(sizeof name), start, {block.begin(), end}))
        return completion::invalidDataField;
    const bool isComplete = end != block.end() || start + block.size() >= name.size();
    if (!isComplete)
        return completion::success;
    std::string text(pending.bytes.begin(), pending.bytes.end());
    pending = {};
    if (!isMailText(text, name.which) || !isUtf8(text))
        return completion::invalidDataField;
    name.edit(state) = std::move(text);
    return completion::success;
}

// ---- Servers

std::uint8_t getServer(State& state, ipmi::Reader request, ipmi::Writer& answer) {
    const std::uint8_t channel = request.u8();
    const std::uint8_t which = request.u8();
    if (!hasServer(state, channel, which))
        return completion::parameterOutOfRange;
    const MailServer server = state.get<Mail>().get(channel, which != 0);
    answer.u8(server.isEnabled)
        .u8(static_cast<std::uint8_t>((server.authenticates ? authenticate : 0) |
                                      (server.startsTls ? startTls : 0)))
        .u16(server.port)
        .bytes(server.ipv4.bytes)
        .bytes(server.ipv6.bytes);
    return completion::success;
}

std::uint8_t setServer(State& state, ipmi::Reader request, ipmi::Writer&) {
    const std::uint8_t channel = request.u8();
    const std::uint8_t which = request.u8();
    const std::uint8_t isEnabled = request.u8();
    const std::uint8_t security = request.u8();
    if (!hasServer(state, channel, which))
        return completion::parameterOutOfRange;
    if (isEnabled > 1 || (security & ~(authenticate | startTls)) != 0)
        return completion::invalidDataField;
    MailServer& server = state.edit<Mail>().edit(channel, which != 0);
    server.isEnabled = isEnabled != 0;
    server.authenticates = (security & authenticate) != 0;
    server.startsTls = (security & startTls) != 0;
    server.port = request.u16();
    std::ranges::copy(request.bytes(server.ipv4.bytes.size()), server.ipv4.bytes.begin());
    std::ranges::copy(request.bytes(server.ipv6.bytes.size()), server.ipv6.bytes.begin());
    return completion::success;
}

constexpr std::size_t serverSize = 24;

} // namespace

void MailServer::fields(Fields& fields) {
    fields.required("channel", channel);
    fields("secondary", isSecondary);
    fields("enabled", isEnabled);
    fields("ipv4", ipv4);
    fields("ipv6", ipv6);
    fields("port", port);
    fields("authenticate", authenticates);
    fields("startTls", startsTls);
    fields("userName", userName);
    fields("password", password);
    fields("sender", sender);
    fields("hostName", hostName);
}

void MailServer::check(const Place& place) const {
    checkMailText(Place{&place, "userName"}, userName, oem::serverUserName);
    checkMailText(Place{&place, "password"}, password, oem::serverPassword);
    checkMailText(Place{&place, "sender"}, sender, oem::serverSender);
    checkMailText(Place{&place, "hostName"}, hostName, oem::serverHostName);
}

std::span<const Command> Mail::commands() {
    static constexpr Command table[] = {
        {oem::getMailDestination, 2, getDestination},
        {oem::setMailDestination, 3, setDestination, administratorLevel},
        {oem::getMailText, 4, getText, administratorLevel},
        {oem::setMailText, 4 + oem::mailBlockSize, setText, administratorLevel},
        {oem::getMailServer, 2, getServer},
        {oem::setMailServer, 2 + serverSize, setServer, administratorLevel},
    };
    return table;
}

void Mail::fields(Fields& fields) {
    fields("servers", servers);
    fields("pending", pending);
}

void Mail::check(const Place& place) const {
    const Place list{&place, "servers"};
    for (std::size_t i = 0; i < servers.size(); ++i)
        if (std::ranges::count_if(servers, isServer(servers[i].channel, servers[i].isSecondary)) > 1)
            fail(Place{&list, nullptr, i}, "this server stands there twice");
}

MailServer Mail::get(std::uint8_t channel, bool isSecondary) const {
    const auto found = std::ranges::find_if(servers, isServer(channel, isSecondary));
    if (found != servers.end())
        return *found;
    MailServer none;
    none.channel = channel;
    none.isSecondary = isSecondary;
    return none;
}

MailServer& Mail::edit(std::uint8_t channel, bool isSecondary) {
    const auto found = std::ranges::find_if(servers, isServer(channel, isSecondary));
    return found != servers.end() ? *found : servers.emplace_back(get(channel, isSecondary));
}

Json Mail::describe(const State&) const {
    Json json = Json::array();
    for (const MailServer& server : servers) {
        Json row = Json::object();
        row["channel"] = server.channel;
        row["server"] = server.isSecondary ? "secondary" : "primary";
        row["enabled"] = server.isEnabled;
        row["ipv4"] = server.ipv4.toJson();
        row["ipv6"] = server.ipv6.toJson();
        row["port"] = server.port;
        row["sender"] = server.sender;
        row["hostName"] = server.hostName;
        row["startTls"] = server.startsTls;
        row["authenticate"] = server.authenticates;
        row["userName"] = server.userName;
        row["hasPassword"] = !server.password.empty();
        json.push_back(std::move(row));
    }
    return json;
}

bool isMailText(std::string_view text, std::size_t which) {
    const auto isAllowed = [&](unsigned char c) {
        return (c >= ' ' && c != 0x7F) || (which == oem::mailMessage && (c == '\n' || c == '\t'));
    };
    return text.size() <= oem::mailTextSizes[which] && std::ranges::all_of(text, isAllowed);
}

void checkMailText(const Place& place, const std::string& text, oem::MailText which) {
    if (!isMailText(text, which))
        fail(place, "it has at most " + std::to_string(oem::mailTextSizes[which]) +
                        " bytes, and no control characters");
}

} // namespace vbmc
