#include "broker/value.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace broker {

namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr std::uint64_t second = 1'000'000;
constexpr std::uint64_t minute = 60 * second;
constexpr std::uint64_t hour = 60 * minute;
constexpr std::uint64_t oneDay = 24 * hour;
constexpr size_t textLength = 25;

// Reads the number that exactly these digits make.
std::optional<unsigned> digits(std::string_view text, size_t position, size_t length) {
    unsigned number = 0;
    const char* begin = text.data() + position;
    const auto [end, error] = std::from_chars(begin, begin + length, number);
    return error == std::errc{} && end == begin + length ? std::optional(number) : std::nullopt;
}

} // namespace

std::string DateTime::text() const {
    std::uint64_t local = microseconds;
    if (!interval)
        local += static_cast<std::uint64_t>(utcOffset) * minute; // wraps as it must for zones west of UTC
    const auto days = local / oneDay;
    const auto hours = static_cast<unsigned>(local % oneDay / hour);
    const auto minutes = static_cast<unsigned>(local % hour / minute);
    const auto seconds = static_cast<unsigned>(local % minute / second);
    const auto fraction = static_cast<unsigned>(local % second);

    std::array<char, 64> text{};
    if (interval) {
        std::snprintf(text.data(), text.size(), "%08llu%02u%02u%02u.%06u:000",
                      static_cast<unsigned long long>(days), hours, minutes, seconds, fraction);
    } else {
        const year_month_day date{sys_days(std::chrono::days(static_cast<int>(days)))};
        std::snprintf(text.data(), text.size(), "%04d%02u%02u%02u%02u%02u.%06u%c%03d",
                      static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                      static_cast<unsigned>(date.day()), hours, minutes, seconds, fraction,
                      utcOffset < 0 ? '-' : '+', std::abs(utcOffset));
    }
    return text.data();
}

std::optional<DateTime> DateTime::parse(std::string_view text) {
    if (text.size() != textLength || text[14] != '.')
        return std::nullopt;
    const bool interval = text[21] == ':';
    const auto hours = digits(text, 8, 2);
    const auto minutes = digits(text, 10, 2);
    const auto seconds = digits(text, 12, 2);
    const auto fraction = digits(text, 15, 6);
    const auto offset = digits(text, 22, 3);
    if (!hours || *hours > 23 || !minutes || *minutes > 59 || !seconds || *seconds > 59 || !fraction ||
        !offset)
        return std::nullopt;
    const std::uint64_t timeOfDay = *hours * hour + *minutes * minute + *seconds * second + *fraction;

    if (interval) {
        const auto days = digits(text, 0, 8);
        if (!days || *offset != 0)
            return std::nullopt;
        return DateTime{*days * oneDay + timeOfDay, true, 0};
    }
    const auto years = digits(text, 0, 4);
    const auto months = digits(text, 4, 2);
    const auto daysOfMonth = digits(text, 6, 2);
    if (!years || !months || !daysOfMonth || (text[21] != '+' && text[21] != '-'))
        return std::nullopt;
    const year_month_day date{year(static_cast<int>(*years)), month(*months), day(*daysOfMonth)};
    const auto utcOffset = static_cast<std::int16_t>(text[21] == '-' ? -static_cast<int>(*offset) : *offset);
    const auto days = date.ok() ? sys_days(date).time_since_epoch().count() : -1;
    if (days < 0) // no such day, or before 1970
        return std::nullopt;
    return DateTime{static_cast<std::uint64_t>(days) * oneDay + timeOfDay -
                        static_cast<std::uint64_t>(utcOffset) * minute,
                    false, utcOffset};
}

} // namespace broker
