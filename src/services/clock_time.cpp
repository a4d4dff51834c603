#include "services/clock_time.h"

#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace ph {
namespace {

namespace chrono = std::chrono;

constexpr int secondsPerDay = 24 * 60 * 60;

// Takes a number of so many digits off the text. Returns -1 when they are none.
int take(std::string_view& text, std::size_t digits) {
    const std::string_view part = text.substr(0, digits);
    int number = -1;
    const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), number);
    const bool isNumber = error == std::errc{} && end == part.data() + digits && part.front() != '-';
    text.remove_prefix(part.size());
    return isNumber ? number : -1;
}

// Takes a character off. Returns it, or NUL when it is none of these.
char takeOneOf(std::string_view& text, std::string_view characters) {
    const char first = text.empty() ? '\0' : text.front();
    text.remove_prefix(text.empty() ? 0 : 1);
    return characters.find(first) != std::string_view::npos ? first : '\0';
}

} // namespace

std::optional<ClockTime> parseClockTime(const char* text) {
    std::string_view rest(text);
    const int year = take(rest, 4), month = take(rest, 2), day = take(rest, 2);
    const int hour = take(rest, 2), minute = take(rest, 2), second = take(rest, 2);
    const bool hasPoint = takeOneOf(rest, ".") != '\0';
    const int microseconds = take(rest, 6);
    const char sign = takeOneOf(rest, "+-");
    const int offset = take(rest, 3);
    const chrono::year_month_day date(chrono::year(year), chrono::month(static_cast<unsigned>(month)),
                                      chrono::day(static_cast<unsigned>(day)));
    if (!hasPoint || microseconds < 0 || sign == '\0' || offset < 0 || !rest.empty() || year < 0 ||
        month < 0 || day < 0 || !date.ok() || hour < 0 || hour > 23 || minute < 0 || minute > 59 ||
        second < 0 || second > 59)
        return std::nullopt;
    const std::int64_t days = chrono::sys_days(date).time_since_epoch().count();
    return ClockTime{days * secondsPerDay + hour * 3600 + minute * 60 + second,
                     sign == '-' ? -offset : offset};
}

void writeClockTime(ClockTime time, char* text) {
    constexpr int mostOffset = 999;
    if (std::abs(time.offset) > mostOffset)
        time = {time.utcSeconds(), 0};
    const auto point = chrono::sys_seconds(chrono::seconds(time.seconds));
    const auto day = chrono::floor<chrono::days>(point);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss clock(point - day);
    std::snprintf(text, clockTextSize, "%04d%02u%02u%02d%02d%02d.000000%c%03d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), time.offset < 0 ? '-' : '+',
                  std::abs(time.offset));
}

} // namespace ph
