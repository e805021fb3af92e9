// Reads a date from a text as liberally as Windows does, for date columns, CDATE, ISDATE and date
// literals.
//
// At most six numbers are collected. Those with time separators between them are the time, the others
// the date; the date is tried in the orders of the locale until one gives a day that exists. English
// and Chinese names of months and days and words for morning and afternoon are known.
#pragma once

#include "jet/table/value.h"

#include <optional>
#include <string_view>

namespace vellums::jet::sql {

// The order in which a locale writes dates. Literal is that of #...#: month-day-year, failing that
// day-month-year; year-month-day when the first number has three or more digits.
enum class DateOrder { MonthDayYear, DayMonthYear, YearMonthDay, Literal };

// The date, or nullopt for a text that is none. Total: any text of any length may be given.
// `currentYear` completes a day and a month without a year; 0 takes that of the clock.
std::optional<Date> readDateText(
    std::u16string_view text, DateOrder order = DateOrder::MonthDayYear, int currentYear = 0);

} // namespace vellums::jet::sql
