// Time: the local clock, and OLE automation dates (days since 1899-12-30 as a double; the fraction is
// the time of day, also for dates before that day, where it counts away from zero).
#pragma once

#include <cstdint>
#include <optional>

namespace vellums::platform {

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

// Now, in whole seconds.
LocalTime localNow();
// Now as an OLE automation date, in whole seconds.
double oleNow();

// The date of the fields; they must be in range (year 100 to 9999).
double oleDate(const LocalTime& time);
// The fields of a date, rounded to the nearest second. Empty for NaN and for anything outside the
// years 100 to 9999.
std::optional<LocalTime> localTime(double date);

// Milliseconds that only ever grow; for measuring spans.
std::uint64_t steadyMs();

} // namespace vellums::platform
