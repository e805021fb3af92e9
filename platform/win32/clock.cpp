#include "platform/clock.h"

#include "text/oleDate.h"

#include <windows.h>

namespace vellums::platform {

text::LocalTime localNow()
{
    SYSTEMTIME now{};
    GetLocalTime(&now);
    return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

} // namespace vellums::platform
