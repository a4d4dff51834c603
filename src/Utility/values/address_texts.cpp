// Addresses and identifiers between text and numbers.
#include "provider_helper/utility.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/time.h>

namespace {

// Reads six numbers in `format`, each cut to 8 bits; when there are fewer, nothing is written.
int scanMac(const char* text, const char* format, uint8_t* mac) {
    unsigned int field[6];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    if (text == nullptr ||
        std::sscanf(text, format, &field[0], &field[1], &field[2], &field[3], &field[4], &field[5]) < 6)
        return -1;
#pragma GCC diagnostic pop
    std::transform(field, field + 6, mac, [](unsigned int number) { return static_cast<uint8_t>(number); });
    return 0;
}

int refuseAddress(const char* message) {
    std::puts(message);
    return -1;
}

// Returns the next colon-separated field and skips colons before it.
std::string_view nextField(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(':'), text.size()));
    const std::string_view field = text.substr(0, text.find(':'));
    text.remove_prefix(field.size());
    return field;
}

} // namespace

unsigned int PH_GetTimeInSeconds(void) {
    timeval now{};
    return gettimeofday(&now, nullptr) == 0 ? static_cast<unsigned int>(now.tv_sec) : ~0U;
}

int ParseDeviceId(const char* deviceId, int* first, int* second) {
    if (deviceId == nullptr)
        return -1;
    char copy[256];
    std::snprintf(copy, sizeof(copy), "%s", deviceId);
    std::string_view rest(copy);
    const std::string_view firstField = nextField(rest);
    if (firstField.empty())
        return -1;
    // A field ends at a colon or at the end of the text, where a number ends too.
    if (first != nullptr)
        *first = static_cast<int>(std::strtol(firstField.data(), nullptr, 10));
    const std::string_view secondField = nextField(rest);
    if (secondField.empty() || second == nullptr)
        return -1;
    *second = static_cast<int>(std::strtol(secondField.data(), nullptr, 10));
    return 0;
}

int PH_ConvertStrToIP(const char* text, uint8_t* address) {
    int field[4];
    if (text == nullptr || std::sscanf(text, "%d.%d.%d.%d", &field[0], &field[1], &field[2], &field[3]) < 4)
        return -1;
    std::transform(field, field + 4, address, [](int number) { return static_cast<uint8_t>(number); });
    return 0;
}

int ConvertStrToMAC(const char* text, uint8_t* mac) {
    return scanMac(text, "%02X:%02X:%02X:%02X:%02X:%02X", mac);
}

void GetMACAddress(const char* text, uint8_t* mac) {
    scanMac(text, "%02x%02x%02x%02x%02x%02x", mac);
}

int ConvertMACNumToMACFormatStr(const uint8_t* mac, char* text) {
    return std::snprintf(text, 18, "%02X:%02X:%02X:%02X:%02X:%02X", mac[0], mac[1], mac[2], mac[3], mac[4],
                         mac[5]);
}

void ConvertIPorMACnumToStr(const uint8_t* bytes, int, char* text, const char* separator) {
    const std::string_view kind = separator != nullptr ? separator : "";
    if (kind == ":")
        std::snprintf(text, 16, "%02X%02X%02X%02X%02X%02X", bytes[0], bytes[1], bytes[2], bytes[3], bytes[4],
                      bytes[5]);
    else if (kind == ".")
        std::snprintf(text, 16, "%d.%d.%d.%d", bytes[0], bytes[1], bytes[2], bytes[3]);
}

int IsValidIP(const char* text) {
    constexpr const char* badForm = "Invalid IP Address. Enter 4 bytes each separated by a dot.";
    constexpr const char* badCount = "Invalid IP address. Too few/ too many bytes";
    constexpr const char* badRange =
        "Invalid IP address. Address must be between 0.0.0.0 and 255.255.255.255";
    const std::string_view address = text != nullptr ? text : "";
    if (address.empty() || address.size() > 15 || address.find("..") != std::string_view::npos ||
        address.back() == '.' || address.find_first_not_of("0123456789.") != std::string_view::npos)
        return refuseAddress(badForm);
    if (std::count(address.begin(), address.end(), '.') != 3 || address.front() == '.')
        return refuseAddress(badCount);
    for (const char* field = text; field != nullptr; field = std::strchr(field, '.')) {
        field += *field == '.';
        if (std::strtol(field, nullptr, 10) > 255)
            return refuseAddress(badRange);
    }
    return 0;
}
