// OLE automation dates: days since 1899-12-30 as a double; the fraction is the time of day, also for dates
// before that day, where it counts away from zero. And the forms in which dates are written.
#pragma once

#include <optional>
#include <string>

namespace vellums::text {

// A moment of local time. Months and days count from 1.
struct LocalTime {
    int year = 1899;
    int month = 12;
    int day = 30;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const LocalTime&) const = default;
};

// The date of the fields; they must be in range (year 100 to 9999).
double oleDate(const LocalTime& time);
// The fields of a date, rounded to the nearest second. Empty for NaN and for anything outside the
// years 100 to 9999.
std::optional<LocalTime> localTime(double date);

// yyyy-mm-dd
std::u16string isoDate(const LocalTime& time);
// hh:nn:ss
std::u16string isoTime(const LocalTime& time);
// Both, with a blank between them.
std::u16string isoDateTime(const LocalTime& time);

} // namespace vellums::text
