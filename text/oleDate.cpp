#include "text/oleDate.h"

#include "text/decimal.h"

#include <chrono>
#include <cmath>

namespace vellums::text {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kFirstDay = -657434; // 0100-01-01
constexpr std::int64_t kLastDay = 2958465;  // 9999-12-31

const std::chrono::sys_days kDayZero =
    std::chrono::year_month_day(std::chrono::year(1899), std::chrono::December, std::chrono::day(30));

} // namespace

double oleDate(const LocalTime& time)
{
    const std::chrono::sys_days day = std::chrono::year_month_day(std::chrono::year(time.year),
        std::chrono::month(static_cast<unsigned>(time.month)),
        std::chrono::day(static_cast<unsigned>(time.day)));
    const auto days = static_cast<double>((day - kDayZero).count());
    const int seconds = time.hour * 3600 + time.minute * 60 + time.second;
    const double fraction = static_cast<double>(seconds) / static_cast<double>(kSecondsPerDay);
    // The time of day counts away from zero, so noon of the day before day zero is -1.5, not -0.5.
    return days < 0 ? days - fraction : days + fraction;
}

std::optional<LocalTime> localTime(double date)
{
    if (!(date > static_cast<double>(kFirstDay) - 1 && date < static_cast<double>(kLastDay) + 1))
        return std::nullopt;
    const double whole = std::trunc(date);
    std::int64_t day = static_cast<std::int64_t>(whole);
    std::int64_t seconds = std::llround(std::fabs(date - whole) * static_cast<double>(kSecondsPerDay));
    // Rounded up to midnight: the next day begins. Before day zero, where the fraction counts away from zero,
    // the next day is still the next whole number.
    if (seconds == kSecondsPerDay) {
        seconds = 0;
        ++day;
    }
    if (day < kFirstDay || day > kLastDay)
        return std::nullopt;
    const std::chrono::year_month_day fields(kDayZero + std::chrono::days(day));
    LocalTime time;
    time.year = static_cast<int>(fields.year());
    time.month = static_cast<int>(static_cast<unsigned>(fields.month()));
    time.day = static_cast<int>(static_cast<unsigned>(fields.day()));
    time.hour = static_cast<int>(seconds / 3600);
    time.minute = static_cast<int>(seconds / 60 % 60);
    time.second = static_cast<int>(seconds % 60);
    return time;
}

std::u16string isoDate(const LocalTime& time)
{
    return decimal(time.year, 4) + u"-" + decimal(time.month, 2) + u"-" + decimal(time.day, 2);
}

std::u16string isoTime(const LocalTime& time)
{
    return decimal(time.hour, 2) + u":" + decimal(time.minute, 2) + u":" + decimal(time.second, 2);
}

std::u16string isoDateTime(const LocalTime& time)
{
    return isoDate(time) + u" " + isoTime(time);
}

} // namespace vellums::text
