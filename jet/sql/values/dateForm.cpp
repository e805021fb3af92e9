#include "jet/sql/values/dateForm.h"

#include "text/oleDate.h"

namespace vellums::jet::sql {

bool isDateInRange(double days)
{
    return text::localTime(days).has_value();
}

std::u16string dateToText(Date date)
{
    const std::optional<text::LocalTime> t = text::localTime(date.days);
    if (!t)
        return {};
    const bool midnight = t->hour == 0 && t->minute == 0 && t->second == 0;
    return midnight ? text::isoDate(*t) : text::isoDateTime(*t);
}

} // namespace vellums::jet::sql
