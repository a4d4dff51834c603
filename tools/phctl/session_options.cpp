#include "session_options.h"

#include "errors.h"
#include "names.h"
#include "numbers.h"
#include "secrets.h"

#include <cstdlib>
#include <filesystem>
#include <freeipmi/api/ipmi-api.h>
#include <freeipmi/spec/ipmi-privilege-level-spec.h>
#include <span>

namespace phctl {
namespace {

using ipmi::SessionSettings;

struct Name {
    const char* name;
    int value;
};

constexpr Name privileges[] = {
    {"user", IPMI_PRIVILEGE_LEVEL_USER},
    {"operator", IPMI_PRIVILEGE_LEVEL_OPERATOR},
    {"administrator", IPMI_PRIVILEGE_LEVEL_ADMIN},
};

// The flags have the names that FreeIPMI's tools give them.
constexpr Name workaroundFlags[] = {
    {"authcap", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_AUTHENTICATION_CAPABILITIES},
    {"intel20", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_INTEL_2_0_SESSION},
    {"supermicro20", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_SUPERMICRO_2_0_SESSION},
    {"sun20", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_SUN_2_0_SESSION},
    {"opensesspriv", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_OPEN_SESSION_PRIVILEGE},
    {"integritycheckvalue", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_NON_EMPTY_INTEGRITY_CHECK_VALUE},
    {"nochecksumcheck", IPMI_WORKAROUND_FLAGS_OUTOFBAND_2_0_NO_CHECKSUM_CHECK},
};

std::string listOf(std::span<const Name> names) {
    std::string text;
    for (const Name& each : names)
        text += (text.empty() ? "" : ", ") + std::string(each.name);
    return text;
}

int numberOf(std::span<const Name> names, const std::string& text, const char* option) {
    std::vector<std::string> known;
    for (const Name& each : names) {
        if (text == each.name)
            return each.value;
        known.emplace_back(each.name);
    }
    if (const auto value = readInteger<int>(text); value && *value >= 0)
        return *value;
    throw UsageError(std::string(option) + ": \"" + text + "\" is neither a number nor one of " +
                     listOf(names) + didYouMean(text, known));
}

int workarounds(const std::string& text) {
    int flags = 0;
    for (const std::string& each : split(text, ','))
        if (!each.empty())
            flags |= numberOf(workaroundFlags, each, "--workaround");
    return flags;
}

// HOST, HOST:PORT, [IPv6], [IPv6]:PORT, or an IPv6 address by itself.
void setHost(SessionSettings& settings, const std::string& text) {
    std::string port;
    const std::size_t colon = text.rfind(':');
    if (text.starts_with('[')) {
        const std::size_t bracket = text.find(']');
        if (bracket == std::string::npos || (bracket + 1 < text.size() && text[bracket + 1] != ':'))
            throw UsageError("--lan: expected [ADDRESS] or [ADDRESS]:PORT instead of " + text);
        settings.address = text.substr(1, bracket - 1);
        port = bracket + 1 < text.size() ? text.substr(bracket + 2) : "623";
    } else if (colon != std::string::npos && text.find(':') == colon) {
        settings.address = text.substr(0, colon);
        port = text.substr(colon + 1);
    } else {
        settings.address = text;
        port = "623";
    }
    const auto value = readInteger<std::uint16_t>(port);
    if (settings.address.empty() || !value || *value == 0)
        throw UsageError("--lan: expected HOST or HOST:PORT with a port of 1 to 65535 instead of " + text);
    settings.port = *value;
}

} // namespace

void SessionOptions::addTo(Command command) {
    virtual_ = command.option("--virtual", stateFile_, "The virtual BMC [of this state file]").mayLackValue();
    const Option local =
        command.flag("--local", isLocal_, "The BMC of this machine, through its local device");
    lan_ = command.option("--lan", host_, "A BMC over IPMI 2.0, as HOST[:PORT]");
    virtual_.excludes(local).excludes(lan_);
    local.excludes(lan_);

    const Option passwords[] = {
        command.option("--password-file", passwordFile_,
                       "File whose first line is the password; - is standard input"),
        command.option("--password-env", passwordVariable_, "Environment variable that holds the password"),
        command.option("--password", password_, "The password; other users see it in the list of processes")};
    passwords[0].excludes(passwords[1]).excludes(passwords[2]);
    passwords[1].excludes(passwords[2]);
    for (const Option option : passwords)
        option.needs(lan_);
    command.option("--user", user_, "User of the BMC").needs(lan_);
    command.option("--cipher-suite", cipherSuite_, "Cipher suite").needs(lan_).showsDefault();
    command.option("--privilege", privilege_, "Privilege level, a number or one of: " + listOf(privileges))
        .needs(lan_)
        .showsDefault();
    command
        .option("--workaround", workarounds_,
                "What the BMC does otherwise than IPMI 2.0; with commas, numbers or: " +
                    listOf(workaroundFlags))
        .needs(lan_);
    command.option("--retransmission", retransmission_, "Milliseconds before a message is repeated")
        .needs(lan_)
        .range(0, 60000);
}

std::string SessionOptions::password() const {
    if (!passwordFile_.empty())
        return readSecret("--password-file", passwordFile_);
    if (!passwordVariable_.empty()) {
        const char* value = std::getenv(passwordVariable_.c_str());
        if (value == nullptr)
            throw UsageError("--password-env: the environment has no variable " + passwordVariable_);
        return value;
    }
    if (!password_.empty())
        warn(
            "other users can see a password in the list of processes; use --password-file or --password-env");
    return password_;
}

std::optional<SessionSettings> SessionOptions::settings() const {
    SessionSettings settings;
    if (virtual_.isGiven()) {
        settings.interfaceType = SessionSettings::VirtualBmc;
        if (!stateFile_.empty())
            settings.address = std::filesystem::absolute(stateFile_);
    } else if (isLocal_) {
        settings.interfaceType = SessionSettings::LocalDevice;
    } else if (lan_.isGiven()) {
        settings.interfaceType = SessionSettings::Lan;
        setHost(settings, host_);
        settings.userName = user_;
        settings.password = password();
        settings.cipherSuite = cipherSuite_;
        settings.workaroundFlags = workarounds(workarounds_);
        settings.retransmission = retransmission_;
        settings.privilegeLevel = numberOf(privileges, privilege_, "--privilege");
    } else {
        return {};
    }
    return settings;
}

} // namespace phctl
