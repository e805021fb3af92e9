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
    using platform::decimal;
    const platform::LocalTime now = platform::localNow();
    return decimal(now.year) + u"-" + decimal(now.month) + u"-" + decimal(now.day) + u" " +
        decimal(now.hour) + u":" + decimal(now.minute) + u":" + decimal(now.second);
}

} // namespace vellums
