// Dates as text, and which numbers are dates.
#pragma once

#include "jet/table/value.h"

#include <string>

namespace vellums::jet::sql {

// Whether a number of days is a date of the years 100 to 9999.
bool isDateInRange(double days);

// yyyy-mm-dd hh:nn:ss; the time is left out when it is 0. Empty for a date out of range.
std::u16string dateToText(Date date);

} // namespace vellums::jet::sql
