#include "services/ssh_options.h"

#include "Utility/values/dmtf_values.h"
#include "Utility/values/record_fields.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>

namespace ph {
namespace {

struct Cipher {
    const char* name;
    std::uint16_t algorithm;
};
constexpr Cipher ciphers[] = {
    {"des", EncryptionAlgorithm::Des},        {"3des-cbc", EncryptionAlgorithm::TripleDes},
    {"3des", EncryptionAlgorithm::TripleDes}, {"arcfour", EncryptionAlgorithm::Rc4},
    {"arcfour128", EncryptionAlgorithm::Rc4}, {"arcfour256", EncryptionAlgorithm::Rc4},
    {"idea-cbc", EncryptionAlgorithm::Idea},
};

std::uint16_t algorithmOf(std::string_view name) {
    const auto* const known = std::ranges::find(ciphers, name, &Cipher::name);
    return known != std::end(ciphers) ? known->algorithm : std::uint16_t{EncryptionAlgorithm::Other};
}

// Calls take(item) for each item of a list separated by commas. Returns false when one of them does.
template <class Take>
bool forEachItem(std::string_view list, Take take) {
    while (!list.empty()) {
        const std::string_view item = list.substr(0, list.find(','));
        if (!take(item))
            return false;
        list.remove_prefix(std::min(item.size() + 1, list.size()));
    }
    return true;
}

void readVersions(std::string_view list, SSHOptions& options) {
    std::size_t count = 0;
    const bool isUnderstood = forEachItem(list, [&](std::string_view item) {
        if ((item != "1" && item != "2") || count == std::size(options.EnabledSSHVersions) - 1)
            return false;
        options.EnabledSSHVersions[count++] = item == "1" ? SSHVersion::One : SSHVersion::Two;
        return true;
    });
    options.EnabledSSHVersions[isUnderstood ? count : 0] = noSlot;
}

// Names of ciphers (RFC 4250, 4.6.1): a list that changes the server's own begins with another sign.
bool isCipherName(std::string_view name) {
    return !name.empty() &&
           name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-@._") == std::string_view::npos;
}

int readCiphers(std::string_view list, SSHOptions& options) {
    std::size_t count = 0;
    const bool isUnderstood = forEachItem(
        list, [&](std::string_view name) { return ++count <= PH_SSH_MAX_CIPHERS && isCipherName(name); });
    count = 0;
    std::size_t others = 0;
    bool isStored = true;
    if (isUnderstood)
        isStored = forEachItem(list, [&](std::string_view name) {
            const std::uint16_t algorithm = algorithmOf(name);
            options.EnabledEncryptionAlgorithms[count++] = algorithm;
            if (algorithm != EncryptionAlgorithm::Other)
                return true;
            char*& other = options.OtherEnabledEncryptionAlgorithm[others++];
            return (other = strndup(name.data(), name.size())) != nullptr;
        });
    options.EnabledEncryptionAlgorithms[count] = noSlot;
    return isStored ? 0 : -1;
}

std::optional<bool> switchOf(std::string_view word) {
    if (word == "no")
        return false;
    if (word == "yes" || word == "delayed") // after the login
        return true;
    return std::nullopt;
}

} // namespace

int fillSshOptions(const SshdConfig& config, SSHOptions& options) {
    const struct {
        const std::string& word;
        std::uint8_t bit;
        bool& value;
    } switches[] = {
        {config.keepAlive, PH_SSH_TELLS_KEEP_ALIVE, options.KeepAlive},
        {config.forwardX11, PH_SSH_TELLS_FORWARD_X11, options.ForwardX11},
        {config.compression, PH_SSH_TELLS_COMPRESSION, options.Compression},
    };
    for (const auto& [word, bit, value] : switches)
        if (const auto said = switchOf(word)) {
            value = *said;
            options.told |= bit;
        }
    readVersions(config.protocol, options);
    return readCiphers(config.ciphers, options);
}

int readSshOptions(SSHOptions& options) {
    return fillSshOptions(readSshdConfig(), options);
}

} // namespace ph
