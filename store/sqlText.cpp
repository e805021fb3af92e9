#include "store/sqlText.h"

#include "platform/clock.h"
#include "platform/text.h"

namespace vellums {

std::u16string sqlQuoted(std::u16string_view text)
{
    return platform::replaceAll(text, u"'", u"''");
}

std::u16string sqlNow()
{
    return sqlDate(platform::oleNow());
}

std::u16string sqlDate(double date)
{
    using platform::decimal;
    const std::optional<platform::LocalTime> time = platform::localTime(date);
    if (!time)
        return {};
    return decimal(time->year) + u"-" + decimal(time->month) + u"-" + decimal(time->day) + u" " +
        decimal(time->hour) + u":" + decimal(time->minute) + u":" + decimal(time->second);
}

} // namespace vellums
