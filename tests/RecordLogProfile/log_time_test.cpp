// SEL times as DMTF datetimes, in time zones of all kinds and on both sides of their changes.
#include "provider_helper/record_log.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <gtest/gtest.h>

namespace {

std::time_t present = 0;

constexpr std::uint32_t at(int year, unsigned month, unsigned day, int hour, int minute = 0, int second = 0) {
    using namespace std::chrono;
    const sys_days days = std::chrono::year(year) / month / day;
    return static_cast<std::uint32_t>(
        (days.time_since_epoch() + hours(hour) + minutes(minute) + seconds(second)) / seconds(1));
}

constexpr std::uint32_t winter = at(2024, 1, 15, 12);
constexpr std::uint32_t summer = at(2024, 7, 15, 12);

constexpr char centralEurope[] = "CET-1CEST,M3.5.0,M10.5.0/3";
constexpr char lordHowe[] = "<+1030>-10:30<+11>-11,M10.1.0,M4.1.0"; // daylight saving of half an hour
constexpr char ireland[] = "IST-1GMT0,M10.5.0,M3.5.0/1";            // winter time is its daylight saving

struct TimeCase {
    const char* zone;
    std::uint32_t now;
    std::uint32_t seconds;
    const char* text;
};

constexpr TimeCase cases[] = {
    {"UTC0", winter, 0, "19700101000000.000000+000"},
    {"UTC0", winter, 0xFFFFFFFF, "21060207062815.000000+000"},
    {"EST5", winter, winter, "20240115120000.000000-300"},
    {"IST-5:30", winter, winter, "20240115120000.000000+330"},
    {"<-0330>3:30", winter, winter, "20240115120000.000000-210"},
    {"<-0030>0:30", winter, winter, "20240115120000.000000-030"},
    {"<+0545>-5:45", winter, winter, "20240115120000.000000+345"},
    {"<+1245>-12:45", winter, winter, "20240115120000.000000+765"},
    {"<+14>-14", winter, winter, "20240115120000.000000+840"},
    // The offset taken off is that of standard time in every season, so summer times read an hour more.
    {centralEurope, winter, winter, "20240115120000.000000+060"},
    {centralEurope, summer, winter, "20240115120000.000000+060"},
    {centralEurope, winter, summer, "20240715130000.000000+120"},
    {centralEurope, summer, summer, "20240715130000.000000+120"},
    {centralEurope, winter, at(2024, 3, 31, 1, 59, 59), "20240331015959.000000+060"},
    {centralEurope, winter, at(2024, 3, 31, 2), "20240331030000.000000+120"},
    {centralEurope, summer, at(2024, 10, 27, 1, 59, 59), "20241027025959.000000+120"},
    {centralEurope, summer, at(2024, 10, 27, 2), "20241027020000.000000+060"},
    // An hour is taken off for daylight saving whatever it is worth.
    {lordHowe, winter, winter, "20240115130000.000000+660"},
    {lordHowe, summer, winter, "20240115123000.000000+660"},
    {lordHowe, summer, summer, "20240715120000.000000+630"},
    {ireland, winter, winter, "20240115130000.000000+000"},
    {ireland, summer, summer, "20240715120000.000000+060"},
};

TEST(LogTime, isLocalTimeWithItsOffset) {
    for (const TimeCase& item : cases) {
        setenv("TZ", item.zone, 1);
        present = static_cast<std::time_t>(item.now);
        char text[26] = "";
        EXPECT_EQ(PH_ConvertUnixTimetoDMTFDateTimeFormat(item.seconds, text), 0);
        EXPECT_STREQ(text, item.text) << item.zone << ", now " << item.now << ", time " << item.seconds;
    }
    EXPECT_EQ(PH_ConvertUnixTimetoDMTFDateTimeFormat(0, nullptr), -1);
}

} // namespace

extern "C" std::time_t time(std::time_t* result) {
    if (result != nullptr)
        *result = present;
    return present;
}
