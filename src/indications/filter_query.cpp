// The query of a filter and the event severity, sensor type and sensor number that it stands for.
#include "provider_helper/indications.h"
#include "Utility/engine/guard.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <strings.h>
#include <utility>

namespace {

constexpr std::string_view matchAll = "select * from CIM_AlertIndication";
constexpr std::string_view severityProperty = "PerceivedSeverity";
constexpr std::string_view elementProperty = "AlertingManagedElement";
constexpr std::uint8_t any = 0xFF;

constexpr std::size_t querySize = 256;
constexpr std::size_t clauseSize = 64;

struct Severity {
    std::uint8_t bits; // of a platform event filter
    int perceived;     // DMTF PerceivedSeverity
};
// OK is 4, which DMTF calls "minor": clients of this interface rely on it.
constexpr Severity severities[] = {{0x01, 1}, {0x02, 2}, {0x04, 4}, {0x08, 3}, {0x10, 6}, {0x20, 7}};

int perceivedSeverity(std::uint8_t bits) {
    const auto* const found = std::ranges::find(severities, bits, &Severity::bits);
    return found != std::end(severities) ? found->perceived : 0;
}

std::uint8_t severityBits(long perceived) {
    const auto* const found = std::ranges::find(severities, perceived, &Severity::perceived);
    return found != std::end(severities) ? found->bits : 0;
}

bool isWord(const std::string& token, const char* word) {
    return strcasecmp(token.c_str(), word) == 0;
}

// The conditions of a query, word by word.
class Compiler {
public:
    explicit Compiler(CIM_PEFEntry& entry) : entry_(entry) {}

    bool take(const std::string& token) {
        if (isWord(token, "where"))
            return !std::exchange(hasWhere_, true);
        if (isWord(token, "and"))
            return ++ands_ == conditions_;
        return hasWhere_ && takeCondition(token);
    }
    bool isComplete() const { return ands_ == conditions_ - 1; }

private:
    bool takeCondition(const std::string& token) {
        const auto equals = token.find('=');
        if (equals == std::string::npos || conditions_++ != ands_)
            return false;
        const char* const value = token.c_str() + equals + 1;
        if (token.back() == '=')
            return true; // a condition without a value selects nothing
        if (token.starts_with(severityProperty)) {
            entry_.eventSeverity = severityBits(std::strtol(value, nullptr, 10));
            return true;
        }
        return token.starts_with(elementProperty) && takeElement(value);
    }

    bool takeElement(const char* value) {
        unsigned type = 0;
        unsigned number = 0;
        (void)std::sscanf(value, "%2x:%2x", &type, &number); // what is missing is 0
        if (type == 0 && number == 0)
            return false;
        entry_.sensorType = static_cast<std::uint8_t>(type);
        entry_.sensorNumber = static_cast<std::uint8_t>(number);
        return true;
    }

    CIM_PEFEntry& entry_;
    bool hasWhere_ = false;
    int ands_ = 0;
    int conditions_ = 0;
};

bool compile(std::string_view text, CIM_PEFEntry& entry) {
    constexpr const char* blanks = " \t\r";
    Compiler compiler(entry);
    for (std::size_t start; (start = text.find_first_not_of(blanks)) != std::string_view::npos;) {
        text.remove_prefix(start);
        const auto token = text.substr(0, text.find_first_of(blanks));
        if (!compiler.take(std::string(token)))
            return false;
        text.remove_prefix(token.size());
    }
    return compiler.isComplete();
}

} // namespace

void ConstructFilterQuery(char* query, const CIM_PEFEntry* entry) {
    const bool isAnySensor = entry->sensorType == any && entry->sensorNumber == any;
    char severity[clauseSize] = "";
    char element[clauseSize] = "";
    if (entry->eventSeverity != 0)
        std::snprintf(severity, sizeof(severity), " %s=%d", severityProperty.data(),
                      perceivedSeverity(entry->eventSeverity));
    if (!isAnySensor)
        std::snprintf(element, sizeof(element), " %s=%02x:%02x", elementProperty.data(), entry->sensorType,
                      entry->sensorNumber);
    const bool hasBoth = severity[0] != '\0' && element[0] != '\0';
    const bool hasNone = severity[0] == '\0' && element[0] == '\0';
    std::snprintf(query, querySize, "%s%s%s%s%s", matchAll.data(), hasNone ? "" : " where", severity,
                  hasBoth ? " and" : "", element);
}

int CompileQueryAndSeverity(const char* query, CIM_PEFEntry* entry) {
    constexpr std::size_t longestCondition = 255;
    if (query == nullptr || entry == nullptr)
        return -1;
    entry->sensorType = entry->sensorNumber = any;
    entry->eventSeverity = 0;
    if (strncasecmp(query, matchAll.data(), matchAll.size()) != 0)
        return -1;
    const char* const rest = query + matchAll.size();
    if (*rest == '\0')
        return 0;
    return ph::guarded(false,
                       [&] {
                           return compile({rest, strnlen(rest, longestCondition)}, *entry);
                       })
               ? 0
               : -1;
}
