#include "platform/clock.h"

#include "text/oleDate.h"

#include <algorithm>
#include <ctime>

namespace vellums::platform {

text::LocalTime localNow()
{
    const std::time_t now = std::time(nullptr);
    struct tm local { };
    if (::localtime_r(&now, &local) == nullptr)
        return {};
    // A leap second has the number 60, which no date can hold.
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min,
        std::min(local.tm_sec, 59)};
}

} // namespace vellums::platform
