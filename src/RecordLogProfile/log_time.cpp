#include "RecordLogProfile/log_time.h"

#include "provider_helper/record_log.h"
#include "Utility/values/text_writer.h"

#include <cstdlib>
#include <ctime>

namespace ph {
namespace {

static_assert(sizeof(std::time_t) == 8, "SEL times end in 2106");

constexpr std::size_t dateTimeSize = 26;

// Minutes that the local time is ahead of UTC.
int offsetOf(const std::tm& local) {
    return static_cast<int>(local.tm_gmtoff / 60);
}

} // namespace

LogTime::LogTime() : offset_(0) {
    tzset(); // the BMC's time zone may have been changed
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    if (localtime_r(&now, &local) != nullptr)
        offset_ = offsetOf(local) * 60 - 3600 * local.tm_isdst;
}

bool LogTime::write(std::uint32_t seconds, char* text) const {
    const auto time = static_cast<std::time_t>(std::int64_t{seconds} - offset_);
    std::tm local{};
    if (localtime_r(&time, &local) == nullptr)
        return false;
    const auto part = [](int value) { return static_cast<unsigned>(value); };
    TextWriter writer(text, dateTimeSize);
    writer.digits(part(local.tm_year + 1900), 4)
        .digits(part(local.tm_mon + 1), 2)
        .digits(part(local.tm_mday), 2);
    writer.digits(part(local.tm_hour), 2).digits(part(local.tm_min), 2).digits(part(local.tm_sec), 2);
    // No time zone is a thousand minutes away from UTC.
    writer.text(local.tm_gmtoff >= 0 ? ".000000+" : ".000000-").digits(part(std::abs(offsetOf(local))), 3);
    return true;
}

} // namespace ph

int PH_ConvertUnixTimetoDMTFDateTimeFormat(std::uint32_t seconds, char* text) {
    return text != nullptr && ph::LogTime().write(seconds, text) ? 0 : -1;
}
