#include "jet/sql/dateForm.h"

#include "platform/clock.h"
#include "platform/text.h"

namespace vellums::jet::sql {

bool isDateInRange(double days)
{
    return platform::localTime(days).has_value();
}

std::u16string dateToText(Date date)
{
    using platform::decimal;
    const std::optional<platform::LocalTime> t = platform::localTime(date.days);
    if (!t)
        return {};
    std::u16string text = decimal(t->year, 4) + u"-" + decimal(t->month, 2) + u"-" + decimal(t->day, 2);
    if (t->hour != 0 || t->minute != 0 || t->second != 0)
        text += u" " + decimal(t->hour, 2) + u":" + decimal(t->minute, 2) + u":" + decimal(t->second, 2);
    return text;
}

} // namespace vellums::jet::sql
