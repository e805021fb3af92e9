#include "store/records/sqlText.h"

#include "platform/clock.h"
#include "text/decimal.h"
#include "text/oleDate.h"
#include "text/pieces.h"

namespace vellums {

std::u16string sqlQuoted(std::u16string_view text)
{
    return text::replaceAll(text, u"'", u"''");
}

std::u16string sqlNow()
{
    return sqlDate(platform::oleNow());
}

std::u16string sqlDate(double date)
{
    using text::decimal;
    const std::optional<text::LocalTime> time = text::localTime(date);
    if (!time)
        return {};
    return decimal(time->year) + u"-" + decimal(time->month) + u"-" + decimal(time->day) + u" " +
        decimal(time->hour) + u":" + decimal(time->minute) + u":" + decimal(time->second);
}

} // namespace vellums
