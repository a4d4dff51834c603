// Users, event filters, services and mail.
#include "check_platform/probe.h"
#include "check_platform/rows.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace phctl::check {
namespace {

constexpr std::uint8_t mostUsers = 63;

std::uint8_t userCount(Probe& probe) {
    std::uint8_t count = 0;
    probe.use<decltype(CIM_GetMaxNumUsers)>("CIM_GetMaxNumUsers", probe.session(), &count, probe.timeout());
    return std::min(count, mostUsers);
}

std::string slotWords(int slot) {
    return "slot " + std::to_string(slot);
}

void countUsers(Probe& probe) {
    Out<std::uint8_t> count("the count");
    if (auto call = probe.call<decltype(CIM_GetMaxNumUsers)>("", probe.session(), count, probe.timeout()))
        call.expect(*count >= 1 && *count <= mostUsers, "there are not 1 to 63 slots");
}

void getUser(Probe& probe) {
    for (std::uint8_t slot = 1; slot <= userCount(probe); ++slot) {
        // A platform hands out the bytes that the BMC keeps, which may be of another code.
        OutArray<char> name("the name", CIM_USER_NAME_SIZE);
        if (auto call = probe.call<decltype(CIM_GetUser)>(slotWords(slot), probe.session(), slot, name,
                                                          probe.timeout()))
            call.expect(std::memchr(&name[0], 0, CIM_USER_NAME_SIZE) != nullptr,
                        "the name does not end within its 17 bytes");
    }
}

bool isPrivilege(std::uint8_t limit) {
    return limit <= 5 || limit == 15;
}

void getUserAccess(Probe& probe) {
    for (std::uint8_t slot = 1; slot <= userCount(probe); ++slot) {
        Out<std::uint8_t> access("the access");
        if (auto call = probe.call<decltype(CIM_GetUserAccess)>(slotWords(slot), probe.session(), slot,
                                                                std::uint8_t{CIM_USER_PRESENT_CHANNEL},
                                                                access, probe.timeout()))
            call.expect(isPrivilege(*access & 0x0F), "the privilege limit is none");
    }
}

void getSessions(Probe& probe) {
    OutArray<CIM_OpenSession> sessions("the sessions", CIM_MAX_OPEN_SESSIONS);
    Out<std::uint8_t> count("the count");
    if (auto call = probe.call<decltype(CIM_GetOpenSessions)>("", probe.session(), sessions, count,
                                                              probe.timeout())) {
        call.expect(*count <= CIM_MAX_OPEN_SESSIONS, "there are more than 63 sessions");
        for (int i = 0; i < std::min<int>(*count, CIM_MAX_OPEN_SESSIONS); ++i)
            call.expect(sessions[i].user <= mostUsers && sessions[i].privilege <= 5 &&
                            sessions[i].channel <= 15,
                        "a session is of no user, level or channel");
    }
}

// The last slot without a name.
std::uint8_t freeSlot(Probe& probe) {
    for (std::uint8_t slot = userCount(probe); slot > 2; --slot) {
        char name[CIM_USER_NAME_SIZE] = "";
        probe.use<decltype(CIM_GetUser)>("CIM_GetUser", probe.session(), slot, name, probe.timeout());
        if (*name == '\0')
            return slot;
    }
    throw NotPossible("no user slot is free");
}

constexpr const char* checkUser = "phctl-check";

std::string nameOf(Probe& probe, std::uint8_t slot) {
    char name[CIM_USER_NAME_SIZE] = "";
    probe.use<decltype(CIM_GetUser)>("CIM_GetUser", probe.session(), slot, name, probe.timeout());
    return {name, strnlen(name, sizeof name)};
}

// The user is never enabled and has no password.
void modifyUser(Probe& probe) {
    const std::uint8_t slot = freeSlot(probe);
    if (auto call = probe.call<decltype(CIM_ModUser)>(
            slotWords(slot) + ", a name", probe.session(), slot, std::uint8_t{CIM_USER_PRESENT_CHANNEL},
            checkUser, static_cast<const char*>(nullptr), std::uint8_t{0}, std::uint8_t{CIM_USER_KEEP},
            std::uint8_t{CIM_USER_KEEP}, std::uint8_t{CIM_USER_KEEP}, std::uint8_t{CIM_USER_KEEP},
            probe.timeout())) {
        call.expect(nameOf(probe, slot) == checkUser, "the name it writes is not read");
        probe.use<decltype(CIM_DelUser)>("CIM_DelUser", probe.session(), slot, probe.timeout());
    }
}

void deleteUser(Probe& probe) {
    const std::uint8_t slot = freeSlot(probe);
    probe.use<decltype(CIM_ModUser)>(
        "CIM_ModUser", probe.session(), slot, std::uint8_t{CIM_USER_PRESENT_CHANNEL}, checkUser,
        static_cast<const char*>(nullptr), std::uint8_t{0}, std::uint8_t{CIM_USER_KEEP},
        std::uint8_t{CIM_USER_KEEP}, std::uint8_t{CIM_USER_KEEP}, std::uint8_t{CIM_USER_KEEP},
        probe.timeout());
    if (auto call =
            probe.call<decltype(CIM_DelUser)>(slotWords(slot), probe.session(), slot, probe.timeout()))
        call.expect(nameOf(probe, slot).empty(), "the slot still has a name");
}

// ---- Event filters

void getPefFilters(Probe& probe) {
    OutArray<CIM_PEFEntry> table("the table", CIM_MAX_PEF_ENTRIES);
    Out<std::uint8_t> count("the count");
    if (auto call = probe.call<decltype(CIM_GetPEFTable)>("", probe.session(), table, count, probe.timeout()))
        call.expect(*count <= 127, "there are more than 127 filters");
}

std::uint8_t filterCount(Probe& probe, std::array<CIM_PEFEntry, CIM_MAX_PEF_ENTRIES>& table) {
    std::uint8_t count = 0;
    probe.use<decltype(CIM_GetPEFTable)>("CIM_GetPEFTable", probe.session(), table.data(), &count,
                                         probe.timeout());
    if (count == 0)
        throw NotPossible("the BMC has no event filters");
    return std::min<std::uint8_t>(count, CIM_MAX_PEF_ENTRIES);
}

void getPefFilter(Probe& probe) {
    std::array<CIM_PEFEntry, CIM_MAX_PEF_ENTRIES> table{};
    for (std::uint8_t number = 1; number <= filterCount(probe, table); ++number) {
        Out<CIM_PEFEntry> entry("the filter");
        if (auto call = probe.call<decltype(CIM_GetPEFEntry)>(
                "filter " + std::to_string(number), probe.session(), number, entry, probe.timeout()))
            call.expect(std::memcmp(&*entry, &table[number - 1U], sizeof(CIM_PEFEntry)) == 0,
                        "it is another one than in the table");
    }
}

// What it writes was there before.
void setPefFilter(Probe& probe) {
    std::array<CIM_PEFEntry, CIM_MAX_PEF_ENTRIES> before{};
    std::array<CIM_PEFEntry, CIM_MAX_PEF_ENTRIES> after{};
    const std::uint8_t number = filterCount(probe, before);
    if (auto call = probe.call<decltype(CIM_SetPEFEntry)>(
            "filter " + std::to_string(number) + ", as it is", probe.session(), number,
            static_cast<const CIM_PEFEntry*>(&before[number - 1U]), probe.timeout())) {
        filterCount(probe, after);
        call.expect(std::memcmp(&before[number - 1U], &after[number - 1U], sizeof(CIM_PEFEntry)) == 0,
                    "writing a filter that is there changes it");
    }
}

// ---- Services

constexpr struct {
    std::uint32_t bit;
    const char* name;
} services[] = {
    {CIM_SERVICE_WEB, "web"},           {CIM_SERVICE_KVM, "kvm"},
    {CIM_SERVICE_CD_MEDIA, "cd-media"}, {CIM_SERVICE_FD_MEDIA, "fd-media"},
    {CIM_SERVICE_HD_MEDIA, "hd-media"}, {CIM_SERVICE_SSH, "ssh"},
    {CIM_SERVICE_TELNET, "telnet"},
};

void getService(Probe& probe) {
    for (const auto& [bit, name] : services) {
        Out<CIM_ServiceConf> service("the service");
        if (auto call = probe.call<decltype(CIM_GetServiceConf)>(name, probe.session(), bit, service,
                                                                 probe.timeout())) {
            call.expectText("name", service->name);
            call.expect(service->currentState <= 1, "currentState is neither 0 nor 1");
            if (std::strncmp(service->name, name, sizeof service->name) != 0)
                call.remark("it is taken for another maker's service, since its name is \"" +
                            std::string(service->name, strnlen(service->name, sizeof service->name)) + '"');
        }
    }
}

// ---- Serial over LAN

void getSolConfig(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<CIM_SOLConfig> config("the configuration");
        if (auto call = probe.call<decltype(CIM_GetSOLConfig)>(lan.words, probe.session(), lan.channel,
                                                               config, probe.timeout())) {
            call.expect(config->isSupported <= 1 && config->isEnabled <= 1 && config->forcesEncryption <= 1 &&
                            config->forcesAuthentication <= 1,
                        "a field is neither 0 nor 1");
            call.expect(config->privilege <= 5, "privilege is above 5");
        }
    }
}

// Writes what it reads.
void setSolEnable(Probe& probe) {
    bool isThere = false;
    for (const auto& lan : probe.lans()) {
        CIM_SOLConfig before{};
        CIM_SOLConfig after{};
        const auto read = [&](CIM_SOLConfig& config) {
            probe.use<decltype(CIM_GetSOLConfig)>("CIM_GetSOLConfig", probe.session(), lan.channel, &config,
                                                  probe.timeout());
        };
        read(before);
        if (before.isSupported == 0)
            continue;
        isThere = true;
        if (auto call = probe.call<decltype(CIM_SetSOLEnable)>(
                lan.words + ", as it is", probe.session(), lan.channel, before.isEnabled, probe.timeout())) {
            read(after);
            call.expect(after.isEnabled == before.isEnabled, "what it writes is not read");
        }
    }
    if (!isThere)
        throw NotPossible("the BMC has no SOL");
}

void getSolActivation(Probe& probe) {
    Out<CIM_SOLActivation> activation("the activation");
    if (auto call =
            probe.call<decltype(CIM_GetSOLActivation)>("", probe.session(), activation, probe.timeout())) {
        call.expect(activation->capacity <= CIM_MAX_SOL_INSTANCES, "capacity is above 15");
        call.expect(activation->isSupported == (activation->capacity > 0), "capacity is 0, or should be");
        call.expect(activation->active >> activation->capacity == 0,
                    "an instance beyond the capacity is active");
    }
}

void getSolInstance(Probe& probe) {
    CIM_SOLActivation activation{};
    probe.use<decltype(CIM_GetSOLActivation)>("CIM_GetSOLActivation", probe.session(), &activation,
                                              probe.timeout());
    if (activation.isSupported == 0)
        throw NotPossible("the BMC does not tell how often SOL can be active");
    Out<CIM_SOLInstance> instance("the instance");
    probe.call<decltype(CIM_GetSOLInstance)>("instance 1", probe.session(), std::uint8_t{1}, instance,
                                             probe.timeout());
}

// ---- Mail

void getMailDestination(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<std::uint8_t> user("the user");
        OutText subject("the subject", CIM_EMAIL_SUBJECT_SIZE + 1);
        OutText message("the message", CIM_EMAIL_MESSAGE_SIZE + 1);
        if (auto call = probe.call<decltype(CIM_TRZGetEmailDest)>(
                lan.words + ", destination 1", probe.session(), std::uint8_t{1}, user, subject, message,
                lan.channel, probe.timeout()))
            call.expect(*user <= mostUsers, "the user is in no slot");
    }
}

void getMailAddress(Probe& probe) {
    for (std::uint8_t slot = 1; slot <= userCount(probe); ++slot) {
        OutText address("the address", CIM_USER_EMAIL_SIZE);
        probe.call<decltype(CIM_TRZGetUserEmail)>(slotWords(slot), probe.session(), slot, address,
                                                  probe.timeout());
    }
}

// These serve the primary server and the secondary.
void getServer(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        Out<CIM_SMTPInfo> info("the server");
        if (auto call = probe.call<decltype(CIM_TRZGetSMTPInfo)>(lan.words, probe.session(), info,
                                                                 lan.channel, probe.timeout())) {
            call.expect(info->isEnabled <= 1, "isEnabled is neither 0 nor 1");
            call.expectText("userName", info->userName);
            call.expectText("password", info->password);
            call.expect((info->security & ~(CIM_SMTP_AUTHENTICATE | CIM_SMTP_STARTTLS)) == 0,
                        "security has bits that are none");
        }
    }
}

void getServerAddress(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        OutText address("the address", CIM_SMTP_ADDRESS_SIZE);
        probe.call<decltype(CIM_TRZGetSMTPServerInfo)>(lan.words, probe.session(), address, lan.channel,
                                                       probe.timeout());
    }
}

void getServerV6Address(Probe& probe) {
    for (const auto& lan : probe.lans()) {
        OutArray<std::uint8_t> address("the address", 16, true);
        probe.call<decltype(CIM_TRZGetSMTPServerInfoIPv6)>(lan.words, probe.session(), address, lan.channel,
                                                           probe.timeout());
    }
}

// ---- Names

// A platform without a name of its own says so by failing.
void getName(Probe& probe) {
    constexpr std::size_t size = 256;
    OutText name("the name", size);
    auto call = probe.call<decltype(OEM_GetHostSystemName)>("", name);
    if (call.isMade() && !call)
        call.expectFailure("a name that there is not");
}

constexpr Row users[] = {
    {"CIM_GetMaxNumUsers", countUsers},
    {"CIM_GetUser", getUser},
    {"CIM_GetUserAccess", getUserAccess},
    {"CIM_GetOpenSessions", getSessions},
    {"CIM_ModUser", modifyUser, true},
    {"CIM_DelUser", deleteUser, true},
    {"CIM_GetPEFTable", getPefFilters},
    {"CIM_GetPEFEntry", getPefFilter},
    {"CIM_SetPEFEntry", setPefFilter, true},
    {"CIM_GetServiceConf", getService},
    {"CIM_SetServiceConf", nullptr, true, "it may end sessions of the service"},
    {"CIM_GetSOLConfig", getSolConfig},
    {"CIM_SetSOLEnable", setSolEnable, true},
    {"CIM_GetSOLActivation", getSolActivation},
    {"CIM_GetSOLInstance", getSolInstance},
};
constexpr Row mail[] = {
    {"CIM_TRZGetEmailDest", getMailDestination},
    {"CIM_TRZSetEmailDest", nullptr, true, "it would mail somebody else"},
    {"CIM_TRZGetUserEmail", getMailAddress},
    {"CIM_TRZGetSMTPInfo", getServer},
    {"CIM_TRZGetSMTPServerInfo", getServerAddress},
    {"CIM_TRZGetSMTPServerInfoIPv6", getServerV6Address},
    {"CIM_TRZGetSMTP2Info", getServer},
    {"CIM_TRZGetSMTPServer2Info", getServerAddress},
    {"CIM_TRZGetSMTPServer2InfoIPv6", getServerV6Address},
};
constexpr Row names[] = {{"OEM_GetHostSystemName", getName}, {"OEM_GetSPSystemName", getName}};

} // namespace

std::span<const Row> userRows() {
    return users;
}

std::span<const Row> mailRows() {
    return mail;
}

std::span<const Row> nameRows() {
    return names;
}

} // namespace phctl::check
