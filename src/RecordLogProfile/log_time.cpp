#include "RecordLogProfile/log_time.h"

#include "provider_helper/record_log.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace ph {
namespace {

static_assert(sizeof(std::time_t) == 8, "SEL times end in 2106");

constexpr std::size_t dateTimeSize = 26;

// "%z" of a broken-down time, such as "+0530".
struct Offset {
    explicit Offset(const std::tm& time) { std::strftime(text, sizeof(text), "%z", &time); }

    bool isEast() const { return text[0] == '+'; }
    int minutes() const {
        const int digits = std::atoi(text); // hundreds are hours
        return digits / 100 * 60 + digits % 100;
    }

    char text[8] = "";
};

} // namespace

LogTime::LogTime() : offset_(0) {
    tzset(); // the BMC's time zone may have been changed
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) != nullptr)
        offset_ = Offset(local).minutes() * 60 - 3600 * local.tm_isdst;
}

bool LogTime::write(std::uint32_t seconds, char* text) const {
    const auto time = static_cast<std::time_t>(std::int64_t{seconds} - offset_);
    std::tm local{};
    if (localtime_r(&time, &local) == nullptr)
        return false;
    const Offset offset(local);
    char dateTime[dateTimeSize] = "";
    std::strftime(dateTime, sizeof(dateTime), "%Y%m%d%H%M%S.000000", &local);
    // No time zone is a thousand minutes away from UTC.
    std::snprintf(text, dateTimeSize, "%.21s%c%03u", dateTime, offset.isEast() ? '+' : '-',
                  static_cast<unsigned>(std::abs(offset.minutes())) % 1000U);
    return true;
}

} // namespace ph

int PH_ConvertUnixTimetoDMTFDateTimeFormat(std::uint32_t seconds, char* text) {
    return text != nullptr && ph::LogTime().write(seconds, text) ? 0 : -1;
}
